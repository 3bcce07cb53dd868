// What the files of the tour's steps share.
#pragma once

#include "host/host_app.h"

enum STEPRESULT {
    STEP_DONE,
    STEP_SKIPPED, // there is nothing to show it with, as the step has said; the tour goes on
    STEP_FAILED,
};

// What a step works on, and what it says: the reason when it failed.
struct TOUR {
    HOSTAPP *app;
    std::string reason;
};

constexpr DWORD TOUR_POLL_TIME = 20; // ms between two looks at something that is waited for

// Notes the reason and gives STEP_FAILED.
STEPRESULT FailStep(TOUR *tour, const std::string &reason);

// ---- tour_server.cpp: the management server ----

STEPRESULT StepServer(TOUR *tour);

// ---- tour_launcher.cpp: front-panel buttons ----

// Switches a launcher function on and locks a button, in the tour's own settings. Before the plug-in starts, which
// looks there only then whether it has to look at the buttons. Without a monitor that reports buttons it does nothing.
// Returns false with a reason when a setting cannot be written.
bool AssignTourButtons(SIMULATION *simulation, std::string *error);

STEPRESULT StepLaunch(TOUR *tour);
STEPRESULT StepLocked(TOUR *tour);
