// A press of a monitor's front-panel button as the command line names it, such as "1:MENU".
#pragma once

#include <string>

struct PRESS {
    std::string text;   // as it was written
    int monitor;        // zero-based; whether it is there is not known when the command line is read
    std::string button; // its number or its label
};

// Reads "MONITOR:BUTTON". Returns false and says why in *error.
bool ParsePress(const std::string &text, PRESS *press, std::string *error);
