// How many kernel handles this process has.
#pragma once

int CountHandles();    // once their number has settled: threads that have just ended close theirs a moment later
int CountHandlesNow(); // without waiting for that
