// The small program that the tour has started by the plug-in, and recognises by its window.
#pragma once

#include <windows.h>

#include <string>

#include "tour/tour_steps.h"

// Its file, beside this program.
std::string TourProgramPath();

// Its window; null while it does not run.
HWND FindTourProgram();

// Starts it as a user would from the desktop, and waits for its window. Returns false with a reason in the tour.
bool StartTourProgram(TOUR *tour);

// Waits for its window; null when it does not come.
HWND WaitForTourProgram();

// The command line that it shows.
std::string TourProgramCommandLine(HWND hWnd);

// Returns false with a reason in the tour when it is still there.
bool CloseTourProgram(TOUR *tour);
