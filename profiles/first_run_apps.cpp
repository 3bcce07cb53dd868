// The programs that a first run looks for.
#include "profiles/first_run_apps.h"

#include "profiles/profile_store.h"

// A version of Office and where it is registered.
struct OFFICEVERSION {
    LPCSTR lpszKey;
    LPCSTR lpszDirectory; // value with the directory of its programs
    bool bBackslash;      // the directory stands there without its last backslash
};

static const OFFICEVERSION s_Versions[] = {
    {"SOFTWARE\\Microsoft\\Office\\8.0\\Common\\InstallRoot", "OfficeBin", true},
    {"SOFTWARE\\Microsoft\\Office\\9.0\\Common\\InstallRoot", "Path", false},
    {"SOFTWARE\\Microsoft\\Office\\10.0\\Common\\InstallRoot", "Path", false},
};

static const struct {
    LPCSTR lpszFile;
    LPCSTR lpszAlias;
} s_Programs[] = {
    {"excel.exe", "Microsoft Excel"},
    {"winword.exe", "Microsoft Word"},
    {"msaccess.exe", "Microsoft Access"},
    {"powerpnt.exe", "Microsoft Power Point"},
};

#define MEDIA_PLAYER_KEY "SOFTWARE\\Microsoft\\MediaPlayer"

constexpr DWORD DIRECTORY_SIZE = 260; // longest value that is read

// A path under construction: room for a directory, a backslash and any of the file names above.
typedef char PROGRAMPATH[DIRECTORY_SIZE + 16];

// The directory that a value names; empty without one.
static void ReadDirectory(HKEY hKey, LPCSTR value, PROGRAMPATH &directory)
{
    char text[DIRECTORY_SIZE + 1] = ""; // a stored text need not end with its zero
    DWORD type;
    DWORD size = DIRECTORY_SIZE;
    if (RegQueryValueExA(hKey, value, nullptr, &type, reinterpret_cast<BYTE *>(text), &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ))
        text[0] = '\0';
    lstrcpyA(directory, text);
}

static bool CanBeRead(LPCSTR path)
{
    const HANDLE hFile = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    if (hFile == INVALID_HANDLE_VALUE)
        return false;
    CloseHandle(hFile);
    return true;
}

// A path that no entry has room for is left out.
static void AddProfile(LPCSTR path, LPCSTR alias)
{
    if (g_nAppProfile >= APP_PROFILE_COUNT || lstrlenA(path) >= static_cast<int>(PROFILE_TEXT_SIZE))
        return;
    PROFILEENTRY *entry = &g_AppProfile[g_nAppProfile];
    *entry = {"", 1, 70, 0, 80, 11, 72, 88, 100, "", ""};
    lstrcpyA(entry->szName, path);
    lstrcpyA(entry->szAlias, alias);
    WriteAppProfile(g_nAppProfile);
    ++g_nAppProfile;
}

static void AddOfficePrograms(HKEY hKey, const OFFICEVERSION &version)
{
    PROGRAMPATH path;
    ReadDirectory(hKey, version.lpszDirectory, path);
    if (version.bBackslash)
        lstrcatA(path, "\\");
    const int directory = lstrlenA(path);
    for (const auto &program : s_Programs) {
        lstrcpyA(path + directory, program.lpszFile);
        if (CanBeRead(path))
            AddProfile(path, program.lpszAlias);
    }
}

// Whether or not the program is there: unlike Office it belongs to the system.
static void AddMediaPlayer(HKEY hKey)
{
    PROGRAMPATH path;
    ReadDirectory(hKey, "Installation Directory", path);
    lstrcatA(path, "\\wmplayer.exe");
    AddProfile(path, "Microsoft Windows Media Player");
}

void CreateAppProfiles()
{
    HKEY hKey;
    for (const OFFICEVERSION &version : s_Versions) {
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, version.lpszKey, 0, KEY_READ, &hKey) != ERROR_SUCCESS)
            continue;
        AddOfficePrograms(hKey, version);
        RegCloseKey(hKey);
    }
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, MEDIA_PLAYER_KEY, 0, KEY_READ, &hKey) == ERROR_SUCCESS) {
        AddMediaPlayer(hKey);
        RegCloseKey(hKey);
    }
}
