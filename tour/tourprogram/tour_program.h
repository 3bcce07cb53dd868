// How the tour recognises the window of the program that it has started.
#pragma once

#define TOUR_PROGRAM_FILE "tour-program.exe"
#define TOUR_PROGRAM_CLASS L"LumivaneTourProgram"

// Identifiers of tour_program.rc.
#define IDI_TOUR_PROGRAM 1000
#define IDD_TOUR_PROGRAM 100
#define IDC_TOUR_COMMAND_LINE 1001 // an edit: the command line as the program got it
#define IDC_TOUR_REMAINING 1002    // how long it will stay
