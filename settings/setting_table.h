// Every value of the registry that the plug-in uses, a row each: where it stands, its type, and what counts while it is
// not there. Users name the row; settings/registry.h does the work.
//
// Any thread. Some values exist for each monitor, button or slot, and have their numbers in their names: nFirst and
// nSecond, in the order of the name.
#pragma once

#include "settings/registry.h"

enum SETTING : int {
    SETTING_INIT_FLAG,         // 1 once the button modes were cleared for the first time
    SETTING_MAX_MONITOR,       // number of monitors at the last start
    SETTING_END_FLAG,          // 1 while the plug-in runs, 0 after an end in order
    SETTING_BUTTON_MODE,       // monitor, button: what the button does (BUTTON_...)
    SETTING_LOCK_STATUS,       // monitor: its mask of locked buttons (VCP 0xF2)
    SETTING_POWER_SWITCH,      // monitor: 1 = its POWER button shuts the PC down
    SETTING_LAUNCHER_COUNT,    // launcher functions switched on, over all monitors
    SETTING_PROGRAM_NAME,      // monitor, button: name of the program or file, as it is shown
    SETTING_PROGRAM_PATH,      // monitor, button
    SETTING_PROGRAM_PARAMETER, // monitor, button: of a document its path once more
    SETTING_CANDIDATE_NAME,    // slot: name of a program or file that buttons can be given
    SETTING_CANDIDATE_PATH,    // slot
    SETTING_IDENTITY_MADE,     // 1 once the two names below were set up
    SETTING_USER_NAME,         // the names by which a management server knows this PC
    SETTING_GROUP_NAME,
    SETTING_ENABLE_CHANGE_NAME, // whether the user may change them
    SETTING_RETRY,              // a count that the kernel window keeps
    SETTING_NO_ASK,             // not 0 = colours follow the program in front without a question
    SETTING_CHANGE_MSG,         // whether a reservation asks before it starts (CHANGE_...)
    SETTING_DIRECT_LINK,        // 1 = the colours follow the program in front, anything else = they do not
    SETTING_NET_SPEC,           // a block of the host's own
    SETTING_NO_DISPLAY_CPL,     // below the user's Windows policies: 1 hides the Display control panel, 0 allows it
    SETTING_COUNT,
};

constexpr LONG RETRY_DEFAULT = 3; // of SETTING_RETRY, which counts as absent while it is 0

// Describes a setting that has no numbers in its name, for the functions of settings/registry.h. lpData: cbData bytes.
REGENTRY SettingEntry(SETTING setting, void *lpData, DWORD cbData);

// One 32-bit value. The first gives what counts for an absent one also for a stored 0xFFFFFFFF; the second tells them
// apart: false, and the value as it was, when it cannot be read or is not four bytes long. False for a write that
// failed.
LONG ReadSettingNumber(SETTING setting, LONG nFirst = 0, LONG nSecond = 0);
bool TryReadSettingNumber(SETTING setting, DWORD *lpdwValue, LONG nFirst = 0, LONG nSecond = 0);
bool WriteSettingNumber(SETTING setting, DWORD dwValue, LONG nFirst = 0, LONG nSecond = 0);

// One text, as ReadSettingText and WriteSettingText: the buffer stays as it is when there is none.
bool ReadSettingString(SETTING setting, char *lpszText, DWORD cbText, LONG nFirst = 0, LONG nSecond = 0);
bool WriteSettingString(SETTING setting, const char *lpszText, DWORD cbText, LONG nFirst = 0, LONG nSecond = 0);

// Deletes a value, as DeleteSetting.
void DeleteSettingValue(SETTING setting, LONG nFirst = 0, LONG nSecond = 0);
