// The table of settings, and the one place that forms the names of values.
#include "settings/setting_table.h"

constexpr int VALUE_NAME_SIZE = 64;

struct SETTINGROW {
    SETTING setting;
    LPCSTR lpszSubKey;
    LPCSTR lpszName; // "%d": a number
    DWORD dwType;
    LONG nAbsent; // of a 32-bit value: what counts while it is not there
};

// By SETTING. Behind each row, who writes it.
static constexpr SETTINGROW s_Rows[SETTING_COUNT] = {
    {SETTING_INIT_FLAG, SUBKEY_LAUNCHER, "InitFlag", REG_DWORD, 0},                  // start-up
    {SETTING_MAX_MONITOR, SUBKEY_LAUNCHER, "MaxMonitor", REG_DWORD, 0},              // start-up
    {SETTING_END_FLAG, SUBKEY_LAUNCHER, "EndFlag", REG_DWORD, 0},                    // start-up and end
    {SETTING_BUTTON_MODE, SUBKEY_LAUNCHER, "Launcher_%d_Enable_%d", REG_DWORD, 0},   // button and lock pages
    {SETTING_LOCK_STATUS, SUBKEY_LAUNCHER, "ButtonLockStatus_%d", REG_DWORD, 0},     // the same, host
    {SETTING_POWER_SWITCH, SUBKEY_LAUNCHER, "PowerSwitch_%d", REG_DWORD, 0},         // POWER's page
    {SETTING_LAUNCHER_COUNT, SUBKEY_LAUNCHER, "dwLTimer", REG_DWORD, 0},             // button pages
    {SETTING_PROGRAM_NAME, SUBKEY_LAUNCHER, "exe_%d_%d", REG_SZ, 0},                 // button pages
    {SETTING_PROGRAM_PATH, SUBKEY_LAUNCHER, "exe_%d_%d_Path", REG_SZ, 0},            // button pages
    {SETTING_PROGRAM_PARAMETER, SUBKEY_LAUNCHER, "exe_%d_%d_Param", REG_SZ, 0},      // button pages
    {SETTING_CANDIDATE_NAME, SUBKEY_LAUNCHER, "Reservation_%d", REG_SZ, 0},          // launcher page
    {SETTING_CANDIDATE_PATH, SUBKEY_LAUNCHER, "Reservation_%d_Path", REG_SZ, 0},     // launcher page
    {SETTING_IDENTITY_MADE, SUBKEY_GENERAL, "IiF", REG_DWORD, -1},                   // start-up
    {SETTING_USER_NAME, SUBKEY_GENERAL, "LocalUserName", REG_SZ, 0},                 // start-up, network page
    {SETTING_GROUP_NAME, SUBKEY_GENERAL, "LocalGroupName", REG_SZ, 0},               // start-up, network page
    {SETTING_ENABLE_CHANGE_NAME, SUBKEY_GENERAL, "EnableChangeName", REG_DWORD, -1}, // host, server, its page
    {SETTING_RETRY, SUBKEY_GENERAL, "nRetry", REG_DWORD, RETRY_DEFAULT},             // the user by hand
    {SETTING_NO_ASK, SUBKEY_GENERAL, "NoAskDialog", REG_DWORD, 0},                   // the user by hand
    {SETTING_CHANGE_MSG, SUBKEY_GENERAL, "nChangeMsg", REG_DWORD, -1},               // reservation page
    {SETTING_DIRECT_LINK, SUBKEY_GENERAL, "DirectLink", REG_DWORD, -1},              // colour page
    {SETTING_NET_SPEC, SUBKEY_HOST_SETTINGS, "MyNetSpec", REG_BINARY, 0},            // another program
    {SETTING_NO_DISPLAY_CPL, SUBKEY_POLICY_SYSTEM, "NoDispCPL", REG_DWORD, 0},       // host
};

// ---- What holds for every row -------------------------------------------------------------------------------------

static constexpr bool FitsItsName(const SETTINGROW &row)
{
    constexpr int DIGITS = 11; // of a number, with its sign
    int length = 0;
    for (LPCSTR p = row.lpszName; *p; ++p)
        length += *p == '%' ? DIGITS : 1;
    return length > 0 && length < VALUE_NAME_SIZE;
}

static constexpr bool IsSameName(LPCSTR a, LPCSTR b)
{
    while (*a && *a == *b)
        ++a, ++b;
    return *a == *b;
}

static constexpr bool IsRowSound(int index)
{
    const SETTINGROW &row = s_Rows[index];
    for (int other = 0; other < index; ++other)
        if (IsSameName(s_Rows[other].lpszName, row.lpszName))
            return false;
    return row.setting == index && FitsItsName(row) && (row.dwType == REG_DWORD || row.nAbsent == 0);
}

static constexpr bool AreRowsSound()
{
    for (int index = 0; index < SETTING_COUNT; ++index)
        if (!IsRowSound(index))
            return false;
    return true;
}

static_assert(AreRowsSound(), "a row is not at its place, has another's name or one that is too long");

// ---- Values -------------------------------------------------------------------------------------------------------

// Result: the name, in `name`.
static LPCSTR FormValueName(char (&name)[VALUE_NAME_SIZE], SETTING setting, LONG first, LONG second)
{
    wsprintfA(name, s_Rows[setting].lpszName, first, second);
    return name;
}

REGENTRY SettingEntry(SETTING setting, void *lpData, DWORD cbData)
{
    const SETTINGROW &row = s_Rows[setting];
    return {row.lpszSubKey, row.lpszName, row.dwType, lpData, cbData};
}

LONG ReadSettingNumber(SETTING setting, LONG nFirst, LONG nSecond)
{
    char name[VALUE_NAME_SIZE];
    const SETTINGROW &row = s_Rows[setting];
    const LONG value = ReadSettingDword(row.lpszSubKey, row.dwType, FormValueName(name, setting, nFirst, nSecond));
    return value == -1 ? row.nAbsent : value;
}

bool TryReadSettingNumber(SETTING setting, DWORD *lpdwValue, LONG nFirst, LONG nSecond)
{
    char name[VALUE_NAME_SIZE];
    DWORD stored = 0;
    REGENTRY entry = SettingEntry(setting, &stored, sizeof stored);
    entry.lpszValueName = FormValueName(name, setting, nFirst, nSecond);
    if (!ReadSetting(&entry) || entry.cbData != sizeof stored)
        return false;
    *lpdwValue = stored;
    return true;
}

bool WriteSettingNumber(SETTING setting, DWORD dwValue, LONG nFirst, LONG nSecond)
{
    char name[VALUE_NAME_SIZE];
    const SETTINGROW &row = s_Rows[setting];
    return WriteSettingDword(row.lpszSubKey, row.dwType, FormValueName(name, setting, nFirst, nSecond), dwValue);
}

bool ReadSettingString(SETTING setting, char *lpszText, DWORD cbText, LONG nFirst, LONG nSecond)
{
    char name[VALUE_NAME_SIZE];
    return ReadSettingText(s_Rows[setting].lpszSubKey, FormValueName(name, setting, nFirst, nSecond), lpszText, cbText);
}

bool WriteSettingString(SETTING setting, const char *lpszText, DWORD cbText, LONG nFirst, LONG nSecond)
{
    char name[VALUE_NAME_SIZE];
    return WriteSettingText(s_Rows[setting].lpszSubKey, FormValueName(name, setting, nFirst, nSecond), lpszText,
                            cbText);
}

void DeleteSettingValue(SETTING setting, LONG nFirst, LONG nSecond)
{
    char name[VALUE_NAME_SIZE];
    REGENTRY entry = SettingEntry(setting, nullptr, 0);
    entry.lpszValueName = FormValueName(name, setting, nFirst, nSecond);
    DeleteSetting(&entry);
}
