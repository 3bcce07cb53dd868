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

// A write goes into the file where it stands, so a process that ends in the middle of it leaves half a file. Therefore
// a copy stands beside it for the time of each write here, "NAME.lvkeep": the file as it was, and behind that a seal
// with the name of the section that is being written.
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

// Puts the copy back when the file needs it. Call it before a file is read for the first time. Waits for another
// program's write, half a second at most. Kernel thread, like the writes.
void RepairIniFile(LPCSTR lpszPath);

// Writes a whole section. lpszText: its lines, each "key=value" and CR LF, behind the last one two NULs; an empty text
// leaves the section without keys. Later reads see the section as the file has it. Result: 1; 0 when the file cannot be
// written, or for an empty path.
int WriteIniSection(LPCSTR lpszPath, LPCSTR lpszSection, LPCSTR lpszText);

// Writes one key of a section. Result: as WriteIniSection.
int WriteIniKey(LPCSTR lpszPath, LPCSTR lpszSection, LPCSTR lpszKey, LPCSTR lpszValue);
