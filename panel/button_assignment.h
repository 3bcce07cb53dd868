// What the button pages assign to their buttons: the details group of a page, for the selected monitor. Every action is
// stored at once.
//
// Kernel thread.
#pragma once

#include <windows.h>

// A button page: its button, its controls and the bit of the lock mask that goes with its launcher function.
struct BUTTONPAGE {
    int button; // 1 to 6
    int enable; // the launcher check box
    int program, browseProgram, deleteProgram;
    int parameter, browseParameter, deleteParameter;
    BYTE lockBit;
};

// Shows what is assigned. False when the list of candidates could not be filled.
bool FillDetails(HWND hPage, const BUTTONPAGE *lpPage);

// Enables or disables everything but the check boxes; the program's browse button only while no program is assigned.
void EnableDetails(HWND hPage, const BUTTONPAGE *lpPage, BOOL bEnable);

// Result: 0 when the button starts a program, whose browse button is then disabled; otherwise BROWSING_ALLOWED.
int IsProgramAssigned(HWND hPage, const BUTTONPAGE *lpPage);
constexpr int BROWSING_ALLOWED = 5;

// The list of candidates notified of anything: assigns the selected one.
void OnCandidates(HWND hPage, const BUTTONPAGE *lpPage);

// Assigns the selected candidate: a program alone, anything else also as the parameter. Nothing without one.
void AssignCandidate(HWND hPage, const BUTTONPAGE *lpPage);

// The browse and delete buttons.
void BrowseApplication(HWND hPage, const BUTTONPAGE *lpPage);
void DeleteApplication(HWND hPage, const BUTTONPAGE *lpPage);
void BrowseParameter(HWND hPage, const BUTTONPAGE *lpPage);
void DeleteParameter(HWND hPage, const BUTTONPAGE *lpPage);

// Stores the text of the parameter's edit; an empty edit as an empty text.
void SaveParameterText(HWND hPage, const BUTTONPAGE *lpPage);
