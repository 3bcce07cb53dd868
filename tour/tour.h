// The tour: goes through what the program does, a step a line, with pictures on the way.
#pragma once

#include "host/host_app.h"

// Makes ready what the plug-in finds when it starts: settings of the tour's own in the place of the user's, and a clock
// that can be set. CloseTourSettings ends the former. Returns false with a reason in *error. Between the loading of the
// plug-in and its start.
bool PrepareTour(HOSTAPP *app, std::string *error);

// Runs all steps and ends the host with status 0, or 1 after the step that failed. Pictures go into the folder, which
// exists. On a thread of its own, beside the message loop.
void RunTour(HOSTAPP *app, const std::string &folder);
