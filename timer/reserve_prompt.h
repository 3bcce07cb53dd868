// The window that asks at a reservation's start minute whether to switch (dialog 132).
//
// It shows the question with its two buttons; once the end minute has come, the notice that the reservation is deleted,
// with OK. It asks about one reservation at a time and keeps its own copy of what it needs of it: its slot may be freed
// and used again meanwhile, and an answer acts on no other reservation than the one that was asked about. Kernel
// thread.
#pragma once

#include <windows.h>

extern HWND g_hReservePrompt; // null while there is none

// What the question is about.
extern LONG g_nPromptIndex;    // slot
extern LONG g_nPromptCrt;      // monitor
extern LONG g_nPromptChannel;  // index of the TV channel; CHANNEL_NONE when it is not among the monitor's names
extern LONG g_nPromptInput;    // input to switch to, a VCP 0x60 value
extern char g_szPrevInput[32]; // label of the input that was shown when the reservation fell due

// Sets these five together.
void SetPromptReservation(LONG nSlot, LONG nMonitor, LONG nChannel, LONG nInput, LPCSTR lpszLabel);

// Shows the question about the reservation that was set: in the window that is there, or in a new one whose owner is
// hParent (null: none). The question is then open, until it is answered, its end minute comes or the window goes;
// nChangeMsg follows. Result: 1, or 0 when no window could be created.
int ShowReservePrompt(HWND hParent);

// True while the question waits for its answer; false without a prompt and while the notice is shown.
bool IsReserveQuestionOpen();

// Whether the question is about the reservation that slot n now holds.
bool IsPromptAbout(int n);

// Takes the question off the screen when its reservation is gone: deleted, changed in its file, or started already. For
// every second.
void CheckReservePrompt();

// Tells the prompt that its end minute has come: the question becomes the notice.
void CancelReservePrompt();

// Takes the prompt off the screen, with nothing decided. Harmless without one.
void CloseReservePrompt();

// Dialog procedure.
INT_PTR CALLBACK ReservePromptProc(HWND hDlg, UINT message, WPARAM wParam, LPARAM lParam);
