// What runs inside a worker: the process that does a part of the stress program's work under the eyes of its
// supervisor. A worker reports as it goes, so that the supervisor knows where it was when it crashed or hung.
#pragma once

#include "support/resource_counts.h"

#include <string>

struct WORKOPTIONS {
    bool brief = false; // a form of seconds instead of minutes
    std::string from;   // the position behind which to go on; empty = from the beginning
    std::string only;   // a part may restrict itself to what begins with this
};

// The work comes to a position. Also the sign of life that the supervisor waits for.
void Step(const std::string &position);

// Something is wrong, at the position of now.
void Bad(const std::string &what);

// What is worth a column of the table.
void Figure(const std::string &what);

// Says Bad when a condition does not hold. Result: the condition.
bool Expect(bool holds, const std::string &what);

// Counts, and says Bad when there is more than before.
void ExpectNoGrowth(const RESOURCECOUNTS &before);

// What has grown, as text; empty when nothing has.
std::string DescribeGrowth(const RESOURCECOUNTS &before, const RESOURCECOUNTS &after);
