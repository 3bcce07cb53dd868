// The notification area that the test program has in the place of Windows' own: it remembers what it is handed, and
// refuses icons when the test says so.
#pragma once

#include <windows.h>

#include <shellapi.h>

#include <string>

// Has no icon from now on, refuses the next `refusals` icons, and takes none as there already unless `keepsRefused`:
// then it shows an icon that it has refused, as one does that answered too late.
void ResetFakeShell(int refusals, bool keepsRefused);

// Forgets its icon, as Explorer does when it ends.
void RestartFakeShell();

struct SHOWNICON {
    bool isThere;
    int adds; // NIM_ADD so far
    int balloons;
    NOTIFYICONDATAW balloon; // the last one
};
SHOWNICON LookAtIcon();
