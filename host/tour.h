// The headless tour (--tour): goes through what the program does, a step a line, with pictures on the way.
#pragma once

#include "host/host_app.h"

// Runs all steps and ends the host with status 0, or 1 after the step that failed. On a thread of its own, beside the
// message loop.
void RunTour(HOSTAPP *app);
