// What belongs to this process. For "the count after is the count before".
#pragma once

#include "support/handle_count.h"
#include "support/own_objects.h"

#include <array>

int CountWindows(); // windows of all threads, with the windows inside them

// These, kernel handles, and the GDI objects and heap blocks of our own code.
constexpr int RESOURCE_KINDS = 4;
using RESOURCECOUNTS = std::array<int, RESOURCE_KINDS>;
RESOURCECOUNTS CountResources();
RESOURCECOUNTS CountResourcesNow(); // without waiting for the handles to settle: for a quick look that finds nothing
const char *ResourceName(int kind); // "handles" and so on

// Leaks one of each kind on purpose, looks whether its counter moves by it, and releases it again. Result: the name of
// the first counter that does not; null when all do.
const char *FindDeafCounter();
