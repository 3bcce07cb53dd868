// The hands of the tour. It asks whoever started it to move the mouse and press the keys, so that its input goes the
// way of a person's: through the screen, to whatever window is really there.
//
// Functions that return bool return false with a reason in the tour. The tour's thread.
#pragma once

#include <functional>

#include "tour/tour_steps.h"

constexpr DWORD HANDS_PATIENCE = 10000; // ms for a window to show what the input did

// Looks until something is so. Returns false when it is not so after that many milliseconds.
bool WaitUntil(const std::function<bool()> &isSo, DWORD patience = HANDS_PATIENCE);

// A message that must not hang the tour when the window's thread does. Returns 0 then.
LRESULT Ask(HWND hWnd, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

// A window's own text, or the content of a control.
std::string TextOf(HWND hWnd);

// ---- Mouse and keyboard ----

// At points of the screen.
bool ClickAt(TOUR *tour, POINT point);
bool RightClickAt(TOUR *tour, POINT point);
bool Drag(TOUR *tour, POINT from, POINT to);

// Off everything that would react to the mouse lying there.
bool ParkMouse(TOUR *tour);

// Keys by their X names, such as "Return" or "shift+End", separated by blanks.
bool PressKeys(TOUR *tour, const std::string &keys);

// ASCII text into whatever has the keyboard.
bool TypeKeys(TOUR *tour, const std::string &text);

// ---- Controls ----

// In the middle of a window. Fails when it is not there, not enabled, or something else lies over it.
bool ClickWindow(TOUR *tour, HWND hWnd, const std::string &name);
bool ClickControl(TOUR *tour, HWND dialog, int control, const std::string &name);

// Puts text into an edit in the place of what is there, by the keyboard.
bool TypeInto(TOUR *tour, HWND edit, const std::string &text, const std::string &name);

// The same for text that a keyboard without an input method does not have: by message, as if it had been pasted.
bool PasteInto(TOUR *tour, HWND edit, const std::string &text, const std::string &name);

// Opens a drop-down list and chooses an entry: with the mouse where it is in sight, else with the keys.
bool ChooseInCombo(TOUR *tour, HWND dialog, int control, int index, const std::string &name);

// Chooses an entry of a list box that is in sight.
bool ChooseInList(TOUR *tour, HWND dialog, int control, int index, const std::string &name);

// ---- Boxes ----

// A message box or another dialog of this program that is not the panel; null without one.
HWND FindBox();

// Waits for a message box, takes its text and presses one of its buttons. text may be null.
bool AnswerBox(TOUR *tour, int button, std::string *text);

// Waits for the dialog that opens a file, types a path, takes a picture and then the file.
bool AnswerFileDialog(TOUR *tour, const std::string &path, const std::string &picture);
