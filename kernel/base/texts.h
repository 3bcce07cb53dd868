// Texts of the string table, and the message boxes that show them.
//
// Any thread. A box runs a message loop of its own: timers tick on behind it, and windows may be gone when it returns.
#pragma once

#include <windows.h>

// Caption of most message boxes. Not the title that slot 1 reports, which has no blank.
#define PRODUCT_TITLE "Lumivane 2"

constexpr int ANSWER_NONE = 0; // nobody has pressed a button

// Loads a text of the string table. lpszBuffer: cbBuffer bytes; empty when there is no such text.
void LoadText(UINT nString, char *lpszBuffer, int cbBuffer);

// Shows a message box. hOwner: null for none. nStyle: that of MessageBox. Result: the identifier of the button that was
// pressed; ANSWER_NONE when the box could not be shown, and when the stop of the plug-in has closed it or came first. A
// stop ends a box by a quit message, and what the system returns then can be any button: taken for an answer, OK for
// instance, it would shut the PC down that the user was only asked about.
int ShowBox(HWND hOwner, LPCSTR lpszText, LPCSTR lpszCaption, UINT nStyle);

// The same with a text of the string table, of at most 511 bytes.
int ShowStringBox(HWND hOwner, UINT nString, LPCSTR lpszCaption, UINT nStyle);
