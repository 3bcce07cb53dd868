// What the user changes directly on the colour page: sliders, edits, ECO mode, colour temperature.
//
// Kernel thread. A change is stored as the selected monitor's current setting and written to that monitor, or to all in
// the all-monitors mode.
#pragma once

#include "panel/color_page_controls.h"

// A slider's notification, whatever it tells. Other windows, and a position that is the stored value, change nothing.
void OnColorSlider(HWND hPage, HWND hSlider);

// A notification of one of the settings' edits. What was typed counts when the edit is left: nothing counts as 0, and a
// number beyond the slider's end is written all the same, as 16 bits.
void OnColorEdit(HWND hPage, const COLORCONTROL *lpControl, WORD wNotification);

// The ECO button was pressed. The monitor has another brightness afterwards, which is read back.
void OnEcoButton(HWND hPage);

// A colour temperature was chosen. The monitor has other gains afterwards, which are read back.
void OnColorTemp(HWND hPage);
