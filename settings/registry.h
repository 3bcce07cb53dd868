// The only way to the registry. Settings stand below the host's key: always written per user, read per user first and
// machine-wide second, so that an installer may place defaults. Nothing is cached and nothing is reported to the user.
//
// All functions may run on any thread. A failed read leaves the caller's buffer as it was. A value that is not there
// and one that could not be read come to the same; who must not take the one for the other asks WasReadError.
#pragma once

#include <windows.h>

// One registry value, filled by the caller on its stack.
struct REGENTRY {
    LPCSTR lpszSubKey; // below the base key
    LPCSTR lpszValueName;
    DWORD dwType; // REG_SZ, REG_BINARY or REG_DWORD; on a read it receives the stored type
    void *lpData; // what to write, or where to read to
    DWORD cbData; // write: bytes to store; read: capacity on entry, stored size on return
};

// Base key paths, by REGBASE.
extern char g_szRegKeyTable[4][64];

enum REGBASE : int {
    REGBASE_HOST = 0,     // the host's key, with all settings of our own
    REGBASE_POLICIES = 2, // the user's Windows policies
};

// Subkeys of REGBASE_HOST, and the one of REGBASE_POLICIES.
#define SUBKEY_GENERAL "Lumivane2"
#define SUBKEY_LAUNCHER "LumvanLauncher"
#define SUBKEY_HOST_SETTINGS "Settings" // the host's own, read only
#define SUBKEY_POLICY_SYSTEM "System"

// Size of the buffers for path and name values, terminator included.
constexpr DWORD SETTING_TEXT_SIZE = 260;

// The three steps that everything below is made of. `access` is a registry access mask. Result: 1, or 0 on any failure.
// A write makes the key when it is missing.
int RegWriteEntry(HKEY hRoot, REGSAM access, LPCSTR lpszBase, const REGENTRY *lpEntry);
int RegReadEntry(HKEY hRoot, REGSAM access, LPCSTR lpszBase, REGENTRY *lpEntry);
int RegDeleteEntry(HKEY hRoot, REGSAM access, LPCSTR lpszBase, const REGENTRY *lpEntry);

// Settings below the host's key. Result: 1 or 0.
int WriteSetting(const REGENTRY *lpEntry);
int ReadSetting(REGENTRY *lpEntry);
void DeleteSetting(const REGENTRY *lpEntry); // the user's value; the machine-wide one only where the user has none

// Directly after a read below the host's key: true when it failed although the value may be there, because the registry
// could not be read; false after any other read.
bool WasReadError();

// Values below the user's Windows policies. Result: 1 or 0.
int WritePolicySetting(const REGENTRY *lpEntry);
int ReadPolicySetting(REGENTRY *lpEntry);

// One 32-bit value. `dwType` is REG_DWORD. The read gives -1 when the value is absent or not four bytes long, so a
// stored 0xFFFFFFFF reads the same as an absent value.
int WriteSettingDword(LPCSTR lpszSubKey, DWORD dwType, LPCSTR lpszName, DWORD dwValue);
LONG ReadSettingDword(LPCSTR lpszSubKey, DWORD dwType, LPCSTR lpszName);

// One text. `cbBuffer` is the size of the buffer in bytes; a write stores all of it, a read always leaves a terminated
// text. A stored text that does not fit, or a value of another type, counts as absent. False for that, and for
// a write that failed.
bool WriteSettingText(LPCSTR lpszSubKey, LPCSTR lpszName, const char *lpszBuffer, DWORD cbBuffer);
bool ReadSettingText(LPCSTR lpszSubKey, LPCSTR lpszName, char *lpszBuffer, DWORD cbBuffer);
