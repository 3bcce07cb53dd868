// What --list prints and --report writes: every monitor that Windows has, and what the program runs on.
#pragma once

#include "host/options.h"

// Both return the exit status: 0, 1 when no monitor was found, 2 when the report cannot be written.
int ListMonitors(const OPTIONS &options);

// Nothing that is written tells who the user is: no names of user or computer, no paths, no serial numbers.
int WriteMonitorReport(const OPTIONS &options);
