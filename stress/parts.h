// The parts of the stress program, one source each. A part runs in a process of its own and reports through worker.h.
#pragma once

#include "stress/worker.h"

#include <windows.h>

struct PART {
    const char *name;
    const char *what;
    void (*run)(const WORKOPTIONS &options);
    DWORD silenceMs; // longer without a sign of life is a hang; the waits that are part of the product are below it
    bool resumes;    // goes on behind the position of a crash or hang
};

// In the order in which they run.
extern const PART g_Parts[];
extern const size_t g_nParts;

void RunFaults(const WORKOPTIONS &options);   // fault_rounds.cpp
void RunRequests(const WORKOPTIONS &options); // requests.cpp
void RunPanel(const WORKOPTIONS &options);    // panel_rounds.cpp
void RunMonth(const WORKOPTIONS &options);    // month.cpp
void RunRestarts(const WORKOPTIONS &options); // restarts.cpp
void RunKills(const WORKOPTIONS &options);    // kills.cpp

// The process that RunKills kills. `owner`: the process whose settings it works on. Does not return.
void RunVictim(DWORD owner);
