// What remains of what a test has done.
#include "support/plugin_session.h"

void ExpectNothingLeft(int rounds, const std::function<void()> &round)
{
    round();
    const RESOURCECOUNTS before = CountResources();
    for (int n = 0; n < rounds; ++n)
        round();
    const RESOURCECOUNTS after = CountResources();
    for (int kind = 0; kind < RESOURCE_KINDS; ++kind)
        EXPECT_EQ(after[static_cast<size_t>(kind)], before[static_cast<size_t>(kind)]) << ResourceName(kind);
}
