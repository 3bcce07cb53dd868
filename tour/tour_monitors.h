// Where the tour looks to see what has become of a value: into the monitors themselves, past the host and the plug-in.
// They are simulated ones, or stand behind the stand-in for dxva2.dll, which lets itself be looked into.
#pragma once

#include "tour/tour_steps.h"

// Returns false with a reason when the monitors of this run cannot be looked into, such as real ones: they are their
// user's, and no tour may play with them.
bool FindTourMonitors(const HOSTAPP *app, std::string *error);

// Whether each monitor has a window, with a front panel to be pressed.
bool HaveMonitorWindows(const TOUR *tour);

int TourMonitorCount(const TOUR *tour);

// What a monitor shows. Of one without a window only the values are known, and what the plug-in said about DirectLink;
// it has no buttons.
MONITORSTATE TourMonitor(const TOUR *tour, int monitor);
