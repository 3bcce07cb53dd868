// Reports of a worker: a line each on its standard output, which is the supervisor's pipe.
#include "stress/worker.h"

#include <cstdio>

static void Line(const char *kind, const std::string &text)
{
    printf("%s %s\n", kind, text.c_str());
    fflush(stdout);
}

void Step(const std::string &position)
{
    Line("step", position);
}

void Bad(const std::string &what)
{
    Line("bad", what);
}

void Figure(const std::string &what)
{
    Line("figure", what);
}

bool Expect(bool holds, const std::string &what)
{
    if (!holds)
        Bad(what);
    return holds;
}

std::string DescribeGrowth(const RESOURCECOUNTS &before, const RESOURCECOUNTS &after)
{
    std::string text;
    for (int kind = 0; kind < RESOURCE_KINDS; ++kind) {
        const auto index = static_cast<size_t>(kind);
        if (after[index] > before[index])
            text += (text.empty() ? "" : ", ") + std::string(ResourceName(kind)) + " " + std::to_string(before[index]) +
                    " -> " + std::to_string(after[index]);
    }
    return text;
}

void ExpectNoGrowth(const RESOURCECOUNTS &before)
{
    // What the system makes at odd moments, such as the pictures of a theme's part when the mouse is first over one.
    // Hundreds of rounds with a leak make more.
    // Blocks of the heap are counted where our code allocates them, so none comes by chance.
    constexpr RESOURCECOUNTS BY_CHANCE = {3, 3, 16, 0};
    RESOURCECOUNTS expected = before;
    for (size_t kind = 0; kind < expected.size(); ++kind)
        expected[kind] += BY_CHANCE[kind];
    const RESOURCECOUNTS after = CountResources();
    const std::string growth = DescribeGrowth(expected, after);
    Expect(growth.empty(), "leak: " + growth);
    std::string figures;
    for (int kind = 0; kind < RESOURCE_KINDS; ++kind) {
        const auto index = static_cast<size_t>(kind);
        figures += (kind ? ", " : "") + std::string(ResourceName(kind)) + " " + std::to_string(before[index]) + "/" +
                   std::to_string(after[index]);
    }
    Figure("before/after: " + figures);
}
