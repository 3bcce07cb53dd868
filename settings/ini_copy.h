// The copy that stands beside an INI file while the file is written. How it is used is told in settings/ini.h.
// Kernel thread.
#pragma once

#include <windows.h>

// Takes the copy of a file, "NAME.lvkeep", for a write to lpszSection: repairs the file if it has to be, and writes
// down what it holds. Waits for another program's write, half a second at most. Result: the copy, for EndIniCopy, which
// no other program can open meanwhile; INVALID_HANDLE_VALUE when it cannot be had: the write then goes on without one.
HANDLE TakeIniCopy(LPCSTR lpszPath, LPCSTR lpszSection);

// Ends the copy behind a write. bWritten: false when the write failed; what it may have damaged is put back. Does
// nothing for INVALID_HANDLE_VALUE.
void EndIniCopy(HANDLE hCopy, LPCSTR lpszPath, bool bWritten);

// Whether a file is as a finished write to lpszSection leaves it, or as it was before: all lines outside of that
// section are those of the copy, but for blanks and empty lines, and the section has at least as many lines as before,
// or none but its name. Both texts are bytes without a zero at the end.
bool IsIniWhole(const char *lpFile, DWORD cbFile, const char *lpCopy, DWORD cbCopy, LPCSTR lpszSection);

// Drops the system's copy of a file, which may hold our lines as one long value, and on the Windows 95 family brings
// them to the disk.
void FlushIniFile(LPCSTR lpszPath);
