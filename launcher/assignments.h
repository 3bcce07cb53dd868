// What is assigned to the buttons: three texts for each button of each monitor, named by VALUE_PROGRAM_NAME, _PATH and
// _PARAMETER. The registry is their only store.
//
// Kernel thread.
#pragma once

#include <windows.h>

// lpszText: SETTING_TEXT_SIZE bytes. Result: 1; 0 with an empty text when the button has none.
int ReadAssignmentText(LPCSTR lpszFormat, LONG nMonitor, int nButton, char *lpszText);

// lpszText: at most SETTING_TEXT_SIZE bytes.
void WriteAssignmentText(LPCSTR lpszFormat, LONG nMonitor, int nButton, LPCSTR lpszText);

void DeleteAssignmentText(LPCSTR lpszFormat, LONG nMonitor, int nButton);
