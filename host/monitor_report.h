// What --list and --read print and --report writes: every monitor that Windows has, and what the program runs on.
#pragma once

#include "host/options.h"

// All return the exit status: 0, 1 when no monitor was found, 2 when the report cannot be written.
int ListMonitors(const OPTIONS &options);

// One code of all monitors, without asking for anything else. 1 also when none answers.
int ReadMonitors(const OPTIONS &options);

// Nothing that is written tells who the user is: no names of user or computer, no paths, no serial numbers.
int WriteMonitorReport(const OPTIONS &options);
