// INI file paths, and the writing of sections.
#include "settings/ini.h"

#include "settings/ini_copy.h"

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

// Writes a section or, with a key, that alone.
static bool WriteIni(LPCSTR path, LPCSTR section, LPCSTR key, LPCSTR text)
{
    if (!path[0])
        return false;
    const HANDLE hCopy = TakeIniCopy(path, section);
    const BOOL written =
        key ? WritePrivateProfileStringA(section, key, text, path) : WritePrivateProfileSectionA(section, text, path);
    FlushIniFile(path);
    EndIniCopy(hCopy, path, written != FALSE);
    return written != FALSE;
}

bool WriteIniSection(LPCSTR lpszPath, LPCSTR lpszSection, LPCSTR lpszText)
{
    return WriteIni(lpszPath, lpszSection, nullptr, lpszText);
}

bool WriteIniKey(LPCSTR lpszPath, LPCSTR lpszSection, LPCSTR lpszKey, LPCSTR lpszValue)
{
    return WriteIni(lpszPath, lpszSection, lpszKey, lpszValue);
}
