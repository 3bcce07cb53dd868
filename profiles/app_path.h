// Which program a window belongs to, and which paths can be registered as programs.
//
// Paths are at most MAX_PATH bytes with their zero. Kernel thread.
#pragma once

#include <windows.h>

// The full path of the executable that owns a window. On the Windows 95 family as the system's list of processes has
// it. Result: 1 with the path; 0 when it cannot be had, or with a buffer of less than 2 bytes.
int GetWindowExePath(HWND hWnd, char *lpBuffer, DWORD cbBuffer);

// Whether a path matches a pattern such as "*.lnk", in any letter case. Any thread. False on a system
// without the library that does it.
bool MatchesFileSpec(LPCSTR lpszPath, LPCSTR lpszSpec);

// The target of a shortcut file. lpBuffer may be the link's own path; it stays as it is when the shortcut cannot be
// read, or leads to something that has no path, or to one that does not fit. Result: 1.
int ResolveShortcut(LPCSTR lpszLink, char *lpBuffer, DWORD cbBuffer);

// Replaces the path of a shortcut by that of its target, where it can be resolved. lpszPath: MAX_PATH bytes.
// Result: 1 when it was a shortcut's path, else 0.
int ResolveIfShortcut(char *lpszPath);

// Whether a path ends in ".exe", in any letter case. Result: 1 or 0.
int IsExeFile(LPCSTR lpszPath);

// The registered application with a path, in any letter case. Result: its slot, the first if there are several; -1.
int FindAppProfile(LPCSTR lpszPath);

// Whether there is one. Result: 1 or 0.
int IsRegisteredApp(LPCSTR lpszPath);
