// What the host tells the user at the tray icon: each matter once, until it changes.
#pragma once

#include "host/tray.h"

enum NOTICEMATTER {
    MATTER_TROUBLE, // why there is no monitor, and what is wrong in monitors.ini
    MATTER_CHANGE,  // the monitors that are there now
    MATTER_COUNT,
};

struct NOTICES {
    std::wstring told[MATTER_COUNT]; // the last text of each matter
    bool hasWaiting;                 // a balloon waits for the icon
    BALLOON waiting;
};

// Notes how a matter stands. Returns true when the user should be told: there is a text, and not the one told last. An
// empty text says that the matter is over.
bool IsNews(NOTICES *notices, NOTICEMATTER matter, const std::wstring &text);

// Shows a balloon, or keeps it until FlushNotices when there is no icon; a newer one takes the place of one that waits.
void TellUser(NOTICES *notices, HWND hWnd, bool hasIcon, const BALLOON &balloon);

// The icon is there: shows what has waited for it.
void FlushNotices(NOTICES *notices, HWND hWnd);
