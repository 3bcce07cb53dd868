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

int WriteIniSection(LPCSTR lpszPath, LPCSTR lpszSection, LPCSTR lpszText)
{
    if (!lpszPath[0])
        return 0;
    const BOOL written = WritePrivateProfileSectionA(lpszSection, lpszText, lpszPath);
    // Drops the system's copy of the file, which may hold our lines as one long value.
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, lpszPath);
    return written ? 1 : 0;
}
