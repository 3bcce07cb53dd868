// Presses of front-panel buttons: each leaves its line in the log; those of the command line are matched with the
// monitors, and made one after the other as a person would make them.
#pragma once

#include <string>
#include <vector>

#include "host/base/press_text.h"
#include "host/simulated/simulated_monitor.h"

// Presses button 1 to 6 and notes it in the log. Returns false for a button that the monitor has not. Any thread.
bool PressAndLog(SIMULATION *simulation, int monitor, int button);

// The button, 1 to 6, that a press means: a number, or a label of that monitor without regard to case. Returns 0 and
// says why in *error when that monitor or button is not there.
int FindPressedButton(SIMULATION *simulation, const PRESS &press, std::string *error);

// ms after which nobody will take a press any more. The plug-in looks at the buttons every two seconds.
constexpr DWORD PRESS_PATIENCE = 8000;

// How far the presses have come. Zeroed at the beginning.
struct PRESSRUN {
    size_t done; // presses that are over
    bool waits;  // the next one was made and is not over
    DWORD tick;  // when
    bool failed; // one was not taken
};

// Makes the next press when the one before it is over, and prints what became of each. Call every now and then, with
// the time in milliseconds, until it returns true: all presses are over. Every press must have passed
// FindPressedButton.
bool StepPresses(PRESSRUN *run, const std::vector<PRESS> &presses, SIMULATION *simulation, DWORD now);
