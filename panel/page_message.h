// Message boxes of the pages, with texts of the string table.
//
// Kernel thread. While a box is open the page may be destroyed, or the plug-in stopped: check what is used afterwards.
#pragma once

#include <windows.h>

// Caption of boxes that refuse something.
#define ERROR_CAPTION "Error"

// Shows a text with a stop sign and an OK button.
void ShowPageError(HWND hPage, UINT uString, LPCSTR lpszCaption);

// Asks a question below the product's name. Result: true for Yes, with the page still there; a question that nobody
// answered is no Yes.
bool AskPageQuestion(HWND hPage, UINT uString);
