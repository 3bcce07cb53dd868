// Where the INI files are, and the few ways in which they are read and written.
#pragma once

#include <windows.h>

// The last backslash of a path that is not the second byte of a double-byte character: in Shift-JIS many characters end
// in 0x5C. Null when there is none. Any thread.
char *LastBackslash(char *lpszPath);

// Takes away the first byte of a double-byte character whose second one was cut off at the text's end. Any thread.
void CutHalfCharacter(char *lpszText);

// Forms the path of a file beside the host's executable (not beside the plug-in).
// lpszPath: MAX_PATH bytes. A name that does not fit gives an empty path. Any thread.
void BuildIniPath(char *lpszPath, LPCSTR lpszFileName);

// Forms the path of a file in the Windows system directory; as BuildIniPath otherwise.
void BuildSystemIniPath(char *lpszPath, LPCSTR lpszFileName);

// A write keeps a copy of the file meanwhile: settings/ini_copy.h tells how, and what a reader does first.

// Writes a whole section. lpszText: its lines, each "key=value" and CR LF, behind the last one two NULs; an empty text
// leaves the section without keys. Later reads see the section as the file has it. False when the file cannot be
// written, or for an empty path.
bool WriteIniSection(LPCSTR lpszPath, LPCSTR lpszSection, LPCSTR lpszText);

// Writes one key of a section. False as above.
bool WriteIniKey(LPCSTR lpszPath, LPCSTR lpszSection, LPCSTR lpszKey, LPCSTR lpszValue);
