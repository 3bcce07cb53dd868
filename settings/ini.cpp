// INI file paths, and the writing of sections.
#include "settings/ini.h"

#include <cstring>

// Puts the file name behind a directory that ends with a backslash.
static void AppendFileName(char *lpszPath, LPCSTR lpszFileName)
{
    if (lstrlenA(lpszPath) + lstrlenA(lpszFileName) >= MAX_PATH)
        lpszPath[0] = '\0';
    else
        lstrcatA(lpszPath, lpszFileName);
}

char *LastBackslash(char *lpszPath)
{
    char *last = nullptr;
    for (char *p = lpszPath; *p; p = CharNextA(p))
        if (*p == '\\')
            last = p;
    return last;
}

void CutHalfCharacter(char *lpszText)
{
    for (char *p = lpszText; *p; p = CharNextA(p))
        if (IsDBCSLeadByte(static_cast<BYTE>(*p)) && !p[1])
            *p = '\0';
}

void BuildIniPath(char *lpszPath, LPCSTR lpszFileName)
{
    lpszPath[0] = '\0';
    const DWORD length = GetModuleFileNameA(nullptr, lpszPath, MAX_PATH);
    lpszPath[length < MAX_PATH ? length : MAX_PATH - 1] = '\0';
    if (char *backslash = LastBackslash(lpszPath))
        backslash[1] = '\0';
    AppendFileName(lpszPath, lpszFileName);
}

void BuildSystemIniPath(char *lpszPath, LPCSTR lpszFileName)
{
    const UINT length = GetSystemDirectoryA(lpszPath, MAX_PATH);
    if (length == 0 || length >= MAX_PATH - 1) {
        lpszPath[0] = '\0';
        return;
    }
    lstrcatA(lpszPath, "\\");
    AppendFileName(lpszPath, lpszFileName);
}

// ---- Writing ------------------------------------------------------------------------------------------------------

// Names that no user gives to a copy of his own.
#define COPY_SUFFIX ".lvkeep"       // the whole file as it was before the write that is going on
#define UNFINISHED_SUFFIX ".lvcopy" // that copy while it is made

struct COPYPATHS {
    char szCopy[MAX_PATH + sizeof COPY_SUFFIX];
    char szUnfinished[MAX_PATH + sizeof UNFINISHED_SUFFIX];
};

static void FormCopyPaths(COPYPATHS *paths, LPCSTR path)
{
    lstrcpynA(paths->szCopy, path, MAX_PATH);
    lstrcatA(paths->szCopy, COPY_SUFFIX);
    lstrcpynA(paths->szUnfinished, path, MAX_PATH);
    lstrcatA(paths->szUnfinished, UNFINISHED_SUFFIX);
}

// Drops the system's copy of a file, which may hold our lines as one long value, and on the Windows 95 family brings
// them to the disk.
static void FlushIniFile(LPCSTR path)
{
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, path);
}

// A copy that is there is whole: it gets its name when it is finished. Without one the write goes on all the same.
static void KeepCopy(const COPYPATHS *paths, LPCSTR path)
{
    const bool copied = CopyFileA(path, paths->szUnfinished, FALSE) != FALSE;
    SetFileAttributesA(paths->szUnfinished, FILE_ATTRIBUTE_NORMAL); // a write-protected copy could not be dropped
    if (!copied || !MoveFileA(paths->szUnfinished, paths->szCopy))
        DeleteFileA(paths->szUnfinished);
}

static bool PutCopyBack(const COPYPATHS *paths, LPCSTR path)
{
    if (GetFileAttributesA(paths->szCopy) == INVALID_FILE_ATTRIBUTES || !CopyFileA(paths->szCopy, path, FALSE))
        return false;
    FlushIniFile(path);
    return true;
}

// A copy that stayed would bring back old settings one day.
static void DropCopy(const COPYPATHS *paths)
{
    if (!DeleteFileA(paths->szCopy) && GetLastError() != ERROR_FILE_NOT_FOUND)
        MoveFileA(paths->szCopy, paths->szUnfinished);
}

void RepairIniFile(LPCSTR lpszPath)
{
    COPYPATHS paths;
    FormCopyPaths(&paths, lpszPath);
    if (lpszPath[0] && PutCopyBack(&paths, lpszPath))
        DropCopy(&paths);
}

// Writes a section or, with a key, that alone.
static int WriteIni(LPCSTR path, LPCSTR section, LPCSTR key, LPCSTR text)
{
    if (!path[0])
        return 0;
    RepairIniFile(path);
    COPYPATHS paths;
    FormCopyPaths(&paths, path);
    KeepCopy(&paths, path);
    const BOOL written =
        key ? WritePrivateProfileStringA(section, key, text, path) : WritePrivateProfileSectionA(section, text, path);
    FlushIniFile(path);
    if (!written)
        PutCopyBack(&paths, path);
    DropCopy(&paths);
    return written ? 1 : 0;
}

int WriteIniSection(LPCSTR lpszPath, LPCSTR lpszSection, LPCSTR lpszText)
{
    return WriteIni(lpszPath, lpszSection, nullptr, lpszText);
}

int WriteIniKey(LPCSTR lpszPath, LPCSTR lpszSection, LPCSTR lpszKey, LPCSTR lpszValue)
{
    return WriteIni(lpszPath, lpszSection, lpszKey, lpszValue);
}
