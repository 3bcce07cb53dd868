// When monitors are looked for again after an event, and what of it counts as a change.
#include "host/redetection.h"

#include <algorithm>
#include <iterator>

static const DWORD s_looks[] = {0, 2000, 5000, 10000}; // ms after the event

void StartLooks(LOOKSERIES *series, DWORD now)
{
    *series = {true, now, 0};
}

DWORD NextLook(const LOOKSERIES &series, DWORD now)
{
    if (!series.isOn)
        return INFINITE;
    const DWORD elapsed = now - series.startTick, due = s_looks[series.done];
    return elapsed >= due ? 0 : due - elapsed;
}

bool TakeLook(LOOKSERIES *series, DWORD now)
{
    const DWORD elapsed = now - series->startTick;
    while (series->done < std::size(s_looks) && s_looks[series->done] <= elapsed)
        series->done++;
    series->isOn = series->done < std::size(s_looks);
    return !series->isOn;
}

bool IsChange(std::vector<std::string> inUse, std::vector<std::string> seen, bool isLastLook)
{
    std::sort(inUse.begin(), inUse.end());
    std::sort(seen.begin(), seen.end());
    if (inUse == seen)
        return false;
    const bool isAnyNew = !std::includes(inUse.begin(), inUse.end(), seen.begin(), seen.end());
    return isAnyNew || isLastLook;
}
