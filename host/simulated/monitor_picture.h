// Draws a simulated monitor: what it shows with its present settings, and its front panel.
#pragma once

#include <windows.h>

#include "host/simulated/simulated_monitor.h"

constexpr int MONITOR_PICTURE_WIDTH = 328;
constexpr int MONITOR_PICTURE_HEIGHT = 220;

// Draws the whole monitor with its upper left corner at 0, 0. `heldButton`: the button (1 to 6) that the mouse holds
// down, 0 for none. Window's thread.
void DrawMonitor(HDC hDC, const MONITORSTATE &state, int heldButton);

// Where a button (1 to 6) that the monitor has stands in the picture.
RECT MonitorButtonPlace(const MONITORSTATE &state, int button);

// The button (1 to 6) at a point of the picture; 0 where there is none.
int MonitorButtonAt(const MONITORSTATE &state, POINT point);
