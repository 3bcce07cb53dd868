// The supervision of a part: its worker is started, read, ended when it hangs, and started again behind a crash.
#pragma once

#include "stress/parts.h"

#include <string>
#include <vector>

struct OUTCOME {
    const PART *part;
    std::vector<std::string> problems;
    std::vector<std::string> figures;
    int steps = 0;
    DWORD seconds = 0;
    bool quiet = false; // problems are kept, not printed
};

// Runs a part to its end, and prints its problems as they come.
OUTCOME Supervise(const PART &part, const WORKOPTIONS &options);

// Has a worker that complains, one that crashes and one that hangs: false unless all three are seen.
bool SupervisionWorks();

// The work of these. Not one of g_Parts.
extern const PART g_FailingPart;
