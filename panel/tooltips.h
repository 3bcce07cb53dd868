// The panel's one tooltip window, at which every page registers its controls; with it come the images of controls.
//
// Kernel thread. The window lives as long as the panel.
#pragma once

#include <windows.h>

// A control with its image and its text.
struct TOOLTIPENTRY {
    int control;
    UINT imageMessage; // BM_SETIMAGE or STM_SETIMAGE; counts with an image only
    UINT image;        // bitmap resource; 0 = none
    UINT string;       // string resource; 0 = none
};

// Creates the tooltip window for a dialog. Result: 1, or 0 when it could not be created.
int CreateToolTip(HWND hParent);

// Destroys it.
void DestroyToolTip();

// Gives a control an image and a tooltip. uImageMessage: BM_SETIMAGE or STM_SETIMAGE. uImage: a bitmap resource, 0 =
// none. lpszText: null = no tooltip; it replaces one that the control has. Result: 1; 0 when the image could not be
// loaded, with the control as it was.
int AddToolTip(HWND hDlg, int nControl, UINT uImageMessage, UINT uImage, LPCSTR lpszText);

// The same with a string resource instead of the text; 0 = none.
bool AddStringToolTip(HWND hDlg, int nControl, UINT uImageMessage, UINT uImage, UINT uString);

// A tooltip whose string resource names a front-panel button of the selected monitor by its label ("%s").
void AddLabelToolTip(HWND hDlg, int nControl, int nButton, UINT uString);

// AddStringToolTip for each entry of a table, up to the first image that cannot be loaded: false for that.
bool AddToolTips(HWND hDlg, const TOOLTIPENTRY *lpEntries, int nEntries);

// Takes the tooltips of a dialog's controls away, while these still exist. Without that the tooltip window would go on
// listing the controls of every page that ever was.
void RemoveToolTips(HWND hDlg);

// Creates the tooltip window and sets up the panel's own controls. Result: as AddToolTips.
int InitPanelToolTips(HWND hPanel);
