// The host's commands on a monitor: colour settings, VCP features, the lock of its front-panel buttons.
#include "kernel/host_monitor_command.h"

#include "kernel/link/host_packet.h"
#include "launcher/launcher_settings.h"
#include "monitor/color_features.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"

#include <cstring>

// The payload lies unaligned in the host's block, so it is worked on in a copy and put back.
template <typename PAYLOAD>
static PAYLOAD TakePayload(const HOSTPACKET *command)
{
    PAYLOAD payload;
    memcpy(&payload, HostPayload(command->lpData), sizeof payload);
    return payload;
}

template <typename PAYLOAD>
static void PutPayload(const HOSTPACKET *command, const PAYLOAD &payload)
{
    memcpy(HostPayload(command->lpData), &payload, sizeof payload);
}

// ---- Colours ------------------------------------------------------------------------------------------------------

// The host's record is the beginning of a monitor's.
static_assert(sizeof(HOSTCOLORS) <= sizeof(COLORSETTING) &&
              offsetof(HOSTCOLORS, wColorPreset) == offsetof(COLORSETTING, wColorTemp));

static COLORSETTING TakeColors(const HOSTPACKET *command)
{
    COLORSETTING colors = {};
    memcpy(&colors, HostPayload(command->lpData), sizeof(HOSTCOLORS));
    return colors;
}

// Whether the host has a value in its record and does not leave it alone, which is all ones in a value of any size.
static bool IsGiven(const COLORSETTING *colors, const COLORFEATURE &feature)
{
    return feature.cbOffset < sizeof(HOSTCOLORS) && GetColorValue(colors, feature) != -1;
}

void ReadColors(const HOSTPACKET *lpCommand)
{
    COLORSETTING colors = TakeColors(lpCommand);
    const LONG monitor = g_nCurMonitor;

    // Decides on the brightness also when its own field is left alone; -1, a failed read, counts as on.
    const DWORD eco = static_cast<DWORD>(GetVCP(monitor, VCP_ECO_MODE, nullptr));
    if (colors.dwEco != HOSTCOLORS_KEEP_ECO)
        colors.dwEco = eco;
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        if (feature.bCode != VCP_ECO_MODE && IsOfEcoState(feature, eco) && IsGiven(&colors, feature))
            SetColorValue(&colors, feature, GetVCP(monitor, feature.bCode, nullptr));
    memcpy(HostPayload(lpCommand->lpData), &colors, sizeof(HOSTCOLORS));

    // The answer is the block above; the reply only says that it is filled.
    const BYTE record[sizeof(HOSTIDENTITY)] = {};
    AnswerCommand(lpCommand, lpCommand->lpData->dwRequestID, PLUGIN_REPLY_RECORD, record, sizeof record);
}

// Writes a value that the selected monitor's maximum limits, also where it goes to all monitors.
static void WriteLimited(LONG monitor, const COLORSETTING *colors, BYTE code)
{
    const COLORFEATURE *feature = FindColorFeature(colors, code);
    if (!IsGiven(colors, *feature))
        return;
    LONG maximum = -1;
    GetVCP(monitor, code, &maximum);
    if (IsMonitorIndex(monitor))
        feature->lpMaxima[monitor] = maximum;
    const WORD value = LOWORD(GetColorValue(colors, *feature));
    // Signed, so that a maximum that could not be read, -1, is the smaller one: 65535 goes out, which names no setting,
    // rather than a value that nobody has compared with the monitor's range.
    SetSelectedOrAll(monitor, code, maximum < value ? maximum : value);
}

void WriteColors(const HOSTPACKET *lpCommand)
{
    const COLORSETTING colors = TakeColors(lpCommand);
    const LONG monitor = g_nCurMonitor; // another may be chosen while the command runs: it stays with this one
    if (colors.dwEco == 0 || colors.dwEco == 1) {
        SetSelectedOrAll(monitor, VCP_ECO_MODE, static_cast<LONG>(colors.dwEco));
        WriteLimited(monitor, &colors, VCP_BRIGHTNESS);
    }
    WriteLimited(monitor, &colors, VCP_CONTRAST);
    // Written also when it is all ones, unlike the other fields: the monitor gets 65535 then, which names no preset.
    SetSelectedOrAll(monitor, VCP_COLOR_PRESET, colors.wColorTemp);

    const WORD result = 0;
    AnswerCommand(lpCommand, lpCommand->lpData->dwRequestID, PLUGIN_REPLY_RESULT, &result, sizeof result);
}

// ---- VCP features -------------------------------------------------------------------------------------------------

static void AnswerFeature(const HOSTPACKET *command, const HOSTVCP &feature)
{
    PutPayload(command, feature);
    AnswerCommand(command, command->lpData->dwRequestID, command->lpData->wCode, &feature, sizeof feature);
}

// Reads a monitor's feature into its answer fields.
static void FillFeature(LONG monitor, HOSTVCP *feature)
{
    feature->nMaximum = -1;
    feature->nValue = GetVCP(monitor, feature->bCode, &feature->nMaximum);
}

void ReadFeature(const HOSTPACKET *lpCommand)
{
    HOSTVCP feature = TakePayload<HOSTVCP>(lpCommand);
    FillFeature(g_nCurMonitor, &feature);
    AnswerFeature(lpCommand, feature);
}

// A feature that cannot be read is not written either.
static void WritePlainFeature(HOSTVCP *feature)
{
    const LONG monitor = g_nCurMonitor;
    const LONG value = feature->nValue;
    FillFeature(monitor, feature);
    if (feature->nValue == -1) {
        feature->nMaximum = -1;
        return;
    }
    SetSelectedOrAll(monitor, feature->bCode, value);
    FillFeature(monitor, feature);
}

// ---- Button lock --------------------------------------------------------------------------------------------------

// Which button modes follow which change of the lock. Other masks change the monitor alone.
struct LOCKRULE {
    LONG nOperation;
    LONG nMask;
    int nFirst; // buttons
    int nLast;
    bool bLock;
};

static const LOCKRULE s_LockRules[] = {
    {HOSTVCP_LOCK, 7, 1, 3, true},
    {HOSTVCP_LOCK, 0x80, LAUNCHER_BUTTON_POWER, LAUNCHER_BUTTON_POWER, true},
    {HOSTVCP_UNLOCK, 7, 1, 3, false},
    {HOSTVCP_UNLOCK, 0x80, LAUNCHER_BUTTON_POWER, LAUNCHER_BUTTON_POWER, false},
    {HOSTVCP_SET, 255, 1, LAUNCHER_BUTTON_COUNT, true},
    {HOSTVCP_SET, 0, 1, LAUNCHER_BUTTON_COUNT, false},
};

// Locking leaves launcher buttons as they are; unlocking makes them normal, too.
static void ChangeButtonMode(LONG monitor, int button, bool lock)
{
    const DWORD mode = ReadButtonMode(monitor, button);
    if (lock && mode == BUTTON_NORMAL)
        WriteButtonMode(monitor, button, BUTTON_LOCKED);
    else if (!lock && (mode == BUTTON_LOCKED || mode == BUTTON_LAUNCHER))
        WriteButtonMode(monitor, button, BUTTON_NORMAL);
}

static void ChangeButtonModes(LONG monitor, const HOSTVCP &lock)
{
    for (const LOCKRULE &rule : s_LockRules)
        if (rule.nOperation == lock.nOperation && rule.nMask == lock.nMask)
            for (int button = rule.nFirst; button <= rule.nLast; ++button)
                ChangeButtonMode(monitor, button, rule.bLock);
}

// False for an operation that does not exist.
static bool ChangeMask(LONG operation, LONG current, LONG mask, LONG *changed)
{
    switch (operation) {
    case HOSTVCP_LOCK:
        *changed = current | mask;
        return true;
    case HOSTVCP_UNLOCK:
        // Toggles, does not clear: a monitor that lost the bit gets it back.
        *changed = current ^ mask;
        return true;
    case HOSTVCP_SET:
        *changed = mask;
        return true;
    }
    return false;
}

static void WriteButtonLock(const HOSTVCP &lock)
{
    const LONG monitor = g_nCurMonitor;
    if (!IsMonitorIndex(monitor))
        return;
    const LONG current = GetVCP(monitor, VCP_BUTTON_LOCK, nullptr);
    LONG mask;
    if (!ChangeMask(lock.nOperation, current, lock.nMask, &mask))
        return;
    // Once per monitor, yet each time for the selected one: so nothing is changed while no monitor is known.
    for (LONG round = 0; round < g_nMonitor; ++round)
        ChangeButtonModes(monitor, lock);
    SetVCP(monitor, VCP_BUTTON_LOCK, static_cast<WORD>(mask));
    if (current == -1 && lock.nOperation != HOSTVCP_SET) // the mask is made of a failed read
        KeepLockStatus(monitor);
    else
        WriteLockStatus(monitor, static_cast<DWORD>(mask));
}

void WriteFeature(const HOSTPACKET *lpCommand)
{
    HOSTVCP feature = TakePayload<HOSTVCP>(lpCommand);
    if (feature.bCode == VCP_BUTTON_LOCK)
        WriteButtonLock(feature);
    else
        WritePlainFeature(&feature);
    AnswerFeature(lpCommand, feature);
}
