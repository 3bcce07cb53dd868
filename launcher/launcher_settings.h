// Launcher and button-lock settings. The registry is their only store: nothing is kept in memory between two uses.
//
// Monitor indexes are zero-based, button numbers 1 to 6 (6 = POWER). Kernel thread, unless said otherwise; the
// functions that touch VCP codes wait for the host.
#pragma once

#include "settings/setting_table.h"

#include <windows.h>

constexpr int LAUNCHER_BUTTON_COUNT = 6;
constexpr int LAUNCHER_BUTTON_POWER = 6;

// SETTING_BUTTON_MODE: what a button does. Anything else counts as normal.
enum : DWORD {
    BUTTON_NORMAL = 0,
    BUTTON_LOCKED = 1,
    BUTTON_LAUNCHER = 2,
};

// One 32-bit launcher value; any of them may be 0xFFFFFFFF. nFirst and nSecond: the numbers in its name. Reads give 0
// for an absent value; writes give 1, or 0 on failure. Any thread.
DWORD ReadLauncherValue(SETTING setting, LONG nFirst = 0, LONG nSecond = 0);
int WriteLauncherValue(SETTING setting, DWORD dwValue, LONG nFirst = 0, LONG nSecond = 0);

// One launcher text, in a buffer of SETTING_TEXT_SIZE bytes. False, with an empty text, for an absent value;
// a text to be written may be of any length and is cut.
bool ReadLauncherText(SETTING setting, char *lpszText, LONG nFirst, LONG nSecond = 0);
void WriteLauncherText(SETTING setting, LPCSTR lpszText, LONG nFirst, LONG nSecond = 0);

// What a button does (BUTTON_...), and whether a monitor's POWER button shuts the PC down (1); 0 when absent. False
// for a write that failed.
DWORD ReadButtonMode(LONG nMonitor, int nButton);
bool WriteButtonMode(LONG nMonitor, int nButton, DWORD dwMode);
DWORD ReadPowerSwitch(LONG nMonitor);
bool WritePowerSwitch(LONG nMonitor, DWORD dwSwitch);

// Change a monitor's lock mask by one button's bit. A mask that cannot be read counts as -1.
void SetLockBit(LONG nMonitor, BYTE bBit);
void ToggleLockBit(LONG nMonitor, BYTE bBit);

// ---- Start and end of a run, in the order of the calls ----

// A stop ends what these still have to tell the monitors: at its own end the plug-in releases the locks anyway.

// Reads the lock mask of every monitor and forgets it. Result: 1, also without a monitor.
int ReadButtonLocks();

// Resets the launcher when the last run did not end in order or the number of monitors has changed since. Does nothing
// at a first run.
void CheckLauncherReset();

// Records the number of monitors and that the plug-in runs, and clears the button modes at the first run.
// Result: the stored "InitFlag", or 1 after a first run's initialisation.
LONG InitLauncherSettings();

// Writes the stored lock masks back to the monitors, up to the first monitor without one. Result: the last one written;
// 0 when none was.
LONG RestoreButtonLockStatus();

// Unlocks all buttons of every monitor that lists VCP code 0xF2.
void ReleaseButtonLocks();

// Records an orderly end. Any thread.
void WriteEndFlag();

// ---- What these are made of ----

// Clears all locks, button modes, POWER switches and the active count; assignments and candidates stay. The settings
// are cleared in whole also while the plug-in stops: the next start finds an orderly end and would not do it again.
void ResetLauncherSettings();

// Clears the button modes of all monitors.
void ClearLauncherEnables();

// Stores each monitor's present lock mask; ends at the first one that can't be written.
void SaveButtonLockStatus();

// Stores a monitor's lock mask for the next start, which writes its low 16 bits back. False on failure.
// Any thread.
bool WriteLockStatus(LONG nMonitor, DWORD dwMask);

// In place of the above when the mask can't be read: leaves the stored one alone, and stores 0 where there is none.
// The -1 of a failed read would lock every button at the next start. Result as above. Any thread.
bool KeepLockStatus(LONG nMonitor);

// ---- The active count: launcher functions switched on, over all monitors ----

// Result: the count, 0 when absent. Any thread.
DWORD GetLauncherCount();

// Adds 1 (bUp = 1) or subtracts 1, without bounds: below 0 comes 0xFFFFFFFF. Result: 1 when written, else 0.
int StepLauncherCount(int bUp);

constexpr UINT BUTTON_POLL_PERIOD_MS = 2000;

// The same, and starts the button poll when the count has become 1, ends it when it has become 0. Where the step is not
// written, or the count cannot be read again, the poll goes on or rests as before.
void UpdateLauncherPoll(int bUp);

// ---- Button labels ----

// The size of a label where it is shown on a control; longer ones are cut.
constexpr DWORD BUTTON_LABEL_SIZE = 16;

// Reads the label that a button of the selected monitor's model has in "Launcher.ini", at most cbBuffer - 1 bytes of it
// in whole characters. lpBuffer is empty without one. hDlg is not used. Result: 1 when the model has that button, else
// 0.
int ReadButtonLabel(HWND hDlg, int nButton, char *lpBuffer, DWORD cbBuffer);
