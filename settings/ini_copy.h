// The copy that stands beside an INI file while the file is written.
//
// A write goes into the file where it stands, so a process that ends in the middle of it leaves half a file. Therefore
// a copy stands beside it for the time of each write (settings/ini.h), "NAME.lvkeep": the file as it was, and behind
// that a seal with the name of the section that is being written.
//
// - The writer has the copy open and shares it with nobody. So two programs in one folder write one after the other,
//   and neither takes the other's write for one that was cut off. Whoever cannot get the copy within half a second,
//   because a virus scanner holds it, writes without one.
// - Behind the write the copy is emptied and deleted. Emptying cannot be refused, since nobody else has it open; a copy
//   that cannot be deleted stays empty, and puts nothing back.
// - A sealed copy that can be opened was therefore left by an end in the middle of a write. It is put back when the
//   file shows that it is damaged: it lacks or adds anything outside of that section, or has lost lines in it. A file
//   on which the write was finished, or had not begun, stays as it is; so does one that was written more than a minute
//   after its copy, by a user or a backup program, and one that is gone.
// - The copy stays until the file can be read and is whole. Each write begins with this repair, too.
//
// Not covered: an end while the last section of the file gets its first lines may leave it with some of them, and on a
// machine that loses its power the file system has its say.
//
// Kernel thread.
#pragma once

#include <windows.h>

// Puts the copy back when the file needs it. Call it before a file is read for the first time. Waits for another
// program's write, half a second at most. Kernel thread, like the writes.
void RepairIniFile(LPCSTR lpszPath);

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
