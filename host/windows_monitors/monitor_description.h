// A monitor in words, for the list of the command line and for bug reports.
#pragma once

#include "host/windows_monitors/windows_monitors.h"

// What a monitor answered when it was asked for all that a description tells.
struct MONITORANSWERS {
    WINDOWSMONITOR monitor;  // as it is known with its string
    DWORD capabilitiesError; // 0: none
    std::string capabilities;
    CAPABILITYSTATE source; // where the string comes from, unless monitors.ini has it
    struct READING {
        BYTE code;
        ACCESSANSWER answer;
    };
    std::vector<READING> readings;
};

// Asks a monitor of the backend for its string and the values of the codes that the product reads. After a request that
// timed out, no more is asked. Any thread.
MONITORANSWERS AskMonitor(WINDOWSMONITORS *monitors, int index);

// Several lines of text. `number` is counted from 1. `isPrivate`: without serial numbers, for a text that is passed on;
// it then has the EDID's bytes.
std::string DescribeMonitor(int number, const MONITORANSWERS &answers, bool isPrivate);
