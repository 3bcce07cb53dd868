// A press of a monitor's front-panel button as the command line names it.
#include "host/base/press_text.h"

#include "host/base/text.h"

bool ParsePress(const std::string &text, PRESS *press, std::string *error)
{
    const size_t colon = text.find(':');
    unsigned monitor = 0;
    *press = {text, 0, {}};
    if (colon != std::string::npos && ParseNumber(Trim(text.substr(0, colon)), 10, 1000, &monitor))
        press->button = Trim(text.substr(colon + 1));
    if (monitor == 0 || press->button.empty()) {
        *error = "'" + text +
                 "' is not MONITOR:BUTTON with the number of a monitor, from 1 on, and a number or label " +
                 "of one of its buttons";
        return false;
    }
    press->monitor = static_cast<int>(monitor) - 1;
    return true;
}
