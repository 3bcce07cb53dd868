// What the files of the tour's steps share.
#pragma once

#include "host/host_app.h"

enum STEPRESULT {
    STEP_DONE,
    STEP_ABSENT,  // what the step is about is not offered for these monitors, which was seen in its place
    STEP_SKIPPED, // there is nothing to show it with, as the step has said; the tour goes on
    STEP_FAILED,
};

// What a step works on, and what it says: the reason when it failed or was left out, else what was seen.
struct TOUR {
    HOSTAPP *app;
    std::string folder; // of the pictures and of what else the tour leaves
    std::string reason, seen;
};

constexpr DWORD TOUR_POLL_TIME = 20; // ms between two looks at something that is waited for

// Notes the reason and gives STEP_FAILED.
STEPRESULT FailStep(TOUR *tour, const std::string &reason);

// Says that a step has nothing to be shown with here, and gives STEP_SKIPPED.
STEPRESULT SkipStep(TOUR *tour, const std::string &reason);

// Asks whoever started the tour for a picture of the screen, and waits for it. The name may be followed by a part of
// the screen: "NAME WIDTHxHEIGHT+LEFT+TOP".
void TakePicture(TOUR *tour, const std::string &name);

// Gives the plug-in a command as --command does and prints its answer, which *text gets. Returns false with a reason in
// the tour when the plug-in did not answer.
bool GiveCommand(TOUR *tour, const std::string &line, std::string *text);

// ---- tour_panel.cpp: the panel and its pages ----

STEPRESULT StepOpenPanel(TOUR *tour);
STEPRESULT StepPages(TOUR *tour);
STEPRESULT StepOtherMonitor(TOUR *tour);
STEPRESULT StepReopenPanel(TOUR *tour);

// ---- tour_server.cpp: the management server ----

STEPRESULT StepServer(TOUR *tour);
STEPRESULT StepNames(TOUR *tour);

// ---- tour_color.cpp: the colour page ----

STEPRESULT StepContrast(TOUR *tour);
STEPRESULT StepProfile(TOUR *tour);
STEPRESULT StepEco(TOUR *tour);
STEPRESULT StepDirectLink(TOUR *tour);

// ---- tour_launcher.cpp: front-panel buttons ----

STEPRESULT StepCandidate(TOUR *tour);
STEPRESULT StepAssign(TOUR *tour);
STEPRESULT StepLock(TOUR *tour);

// ---- tour_reservation.cpp: timer reservations ----

STEPRESULT StepReservation(TOUR *tour);
