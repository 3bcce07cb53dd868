// What a user does to the controls of a dialog, and sees of them. Texts in UTF-8.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

using Lines = std::vector<std::string>;

// The item and all below it, two blanks a level: {"Lumivane2", "  ネットワーク設定", ...} in UTF-8.
Lines TreeLines(HWND tree);

void Click(HWND dialog, int control);                         // a button or check box, also a disabled one's refusal
void Type(HWND dialog, int control, const std::string &text); // replaces an edit's text and leaves it
void Pick(HWND dialog, int combo, int position);              // chooses an entry of a drop-down list
void PickInList(HWND dialog, int list, int position);         // chooses an entry of a list box
void Slide(HWND dialog, int slider, int position);            // moves a slider's thumb

std::string TextOf(HWND dialog, int control);
bool IsEnabled(HWND dialog, int control);
bool IsChecked(HWND dialog, int control);
bool IsShown(HWND dialog, int control); // by its own state, whether or not the panel's edge covers it
Lines EntriesOf(HWND dialog, int listOrCombo);
bool IsReachedByTab(HWND panel, HWND control);    // from anywhere in the panel
int SelectionOf(HWND dialog, int listOrCombo);    // -1 = none
Lines RowsOf(HWND dialog, int list, int columns); // of a list view: "DATA: text|text|..."

// The tooltip that a control has; empty without one.
std::string TipOf(HWND dialog, int control);

// What a user sees of a dialog and its controls, a line each: number, kind, text or picture or columns, the tip that it
// has. Not the text of what the user can type into or choose from.
Lines SheetOf(HWND dialog);

// Drops files on a control, as the shell does it; the paths as the plug-in gets them.
void DropFiles(HWND dialog, int control, const std::vector<std::string> &paths);
