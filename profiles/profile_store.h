// Colour profiles and registered applications: two tables in memory, and their file "profile.ini" beside the host's
// executable. A slot's number is that of its section. Every change goes to memory and file together.
//
// Kernel thread. A slot out of range does nothing, and counts as a failure where there is a result.
#pragma once

#include "profiles/profile_file.h"

#include <windows.h>

#define SYS_PROFILE_SECTION "Standard%d"
#define APP_PROFILE_SECTION "User%d"

constexpr int SYS_PROFILE_COUNT = 16;
constexpr int SYS_PROFILE_FIRST_USER = 4; // the slots before it are the system's own and cannot be deleted
constexpr int APP_PROFILE_COUNT = 240;

extern PROFILEENTRY g_SysProfile[SYS_PROFILE_COUNT]; // colour profiles
extern PROFILEENTRY g_AppProfile[APP_PROFILE_COUNT]; // registered applications; szName is the program's path
extern int g_nSysProfile;                            // sections found at the last load, and changes since
extern int g_nAppProfile;                            // registered applications
extern char g_szProfileIni[MAX_PATH];
extern COLORSETTING g_DefSetting[MAX_MONITOR]; // what the monitors get back when no registered program is in front

// Writes a slot to its section. A failure is shown to the user for colour profiles only. Result: 1 or 0.
int WriteAppProfile(int nSlot);
int WriteSysProfile(int nSlot);

// Empties a slot and its section, which counts as absent then, and counts it off.
void DeleteAppProfile(int nSlot);
void DeleteSysProfile(int nSlot);

// Whether the file has the section of a slot.
bool IsSysProfileInFile(int nSlot);
bool IsAppProfileInFile(int nSlot);

// The first "User%d" section that the file does not have, whatever memory holds. Result: its number; -1 when all exist.
int GetFreeAppSection();

// Operations of SetProfileData. The colour settings of a slot are copied from or to a record of the selected monitor.
enum : int {
    PROFILE_APP_CLEAR = 1,
    PROFILE_APP_LOAD = 2,         // from its section; what is not there becomes empty or -1
    PROFILE_APP_SET = 3,          // name and alias from the arguments, values from g_CurSetting
    PROFILE_APP_SET_DEFAULTS = 4, // the same with the values of g_DefSetting
    PROFILE_APP_TAKE = 5,         // its values to g_CurSetting
    PROFILE_SYS_CLEAR = 6,
    PROFILE_SYS_LOAD = 7,
    PROFILE_SYS_SET = 8,
    PROFILE_SYS_TAKE = 9,
};

// Moves values between the tables; memory only. The texts count for PROFILE_..._SET... alone and are cut to 259
// characters; they may be those of the entry itself. Any other mode does nothing.
void SetProfileData(int nMode, int nSlot, LPCSTR lpszName, LPCSTR lpszAlias);

// A profile's values as a record: all but the ECO mode narrowed to 16 bits.
void SettingFromProfile(COLORSETTING *lpSetting, const PROFILEENTRY *lpEntry);
