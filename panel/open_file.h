// The file dialog in which the user chooses an existing file.
//
// Kernel thread. The dialog runs a message loop of its own: its owner may be gone when it returns.
#pragma once

#include <windows.h>

// The files that it offers.
enum class FILEKIND {
    Program,
    Any,
};

// hOwner: a page. lpszPath: MAX_PATH bytes for the full path. lpszTitle: MAX_PATH bytes for its file-name part; may be
// null. True when a file was chosen; false with empty texts when not, CommDlgExtendedError tells a failure. A dialog
// that the stop of the plug-in has closed has chosen nothing, whatever the system returned.
bool ChooseFile(HWND hOwner, FILEKIND kind, char *lpszPath, char *lpszTitle);
