// The registered applications of the colour page: list, alias, "browse", "update", "delete", and dropped files.
//
// Kernel thread. Message boxes and the file dialog run message loops of their own.
#pragma once

#include <windows.h>

#include <shellapi.h>

// Any notification of the list applies the selected application's profile: also the focus that comes or goes.
void OnAppList(HWND hPage);

// Applies the profile of a registered application and shows it. It is the current setting already; a slot out of range
// does nothing.
void SelectAppProfile(HWND hPage, int nSlot);

void OnBrowseApp(HWND hPage); // registers a program that the user picks
void OnUpdateApp(HWND hPage); // gives the selected one the current settings and the alias in the edit, after a question
void OnDeleteApp(HWND hPage); // deletes the selected one, after a question

// Registers the program, or the target of the shortcut, that was dropped on the list.
void OnDropApp(HWND hPage, HDROP hDrop);

// Asks for a program's file. cbBuffer: at least MAX_PATH. Result: nonzero with the path; 0 when none was chosen, or
// when the dialog failed, as CommDlgExtendedError tells.
int BrowseExeFile(HWND hPage, char *lpBuffer, DWORD cbBuffer);

// The DirectLink box can be used while an application is registered.
void EnableDirectLinkBox(HWND hPage);
