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

// How often an identity is in a list.
static auto CountOf(const std::vector<MONITORIDENTITY> &list, const MONITORIDENTITY &wanted)
{
    return std::count_if(list.begin(), list.end(),
                         [&](const MONITORIDENTITY &identity) { return identity.text == wanted.text; });
}

// Whether `list` has an identity more often than `other`, and which the function takes.
template <typename FUNCTION>
static bool HasMore(const std::vector<MONITORIDENTITY> &list, const std::vector<MONITORIDENTITY> &other,
                    const FUNCTION &counts)
{
    return std::any_of(list.begin(), list.end(), [&](const MONITORIDENTITY &identity) {
        return counts(identity) && CountOf(list, identity) > CountOf(other, identity);
    });
}

bool IsAnyNew(const std::vector<MONITORIDENTITY> &inUse, const std::vector<MONITORIDENTITY> &seen, bool isLastLook)
{
    const bool isAnyMissing = HasMore(inUse, seen, [](const MONITORIDENTITY &) { return true; });
    const bool mayBeVague = isLastLook && !isAnyMissing;
    return HasMore(seen, inUse, [=](const MONITORIDENTITY &identity) { return mayBeVague || !identity.isVague; });
}
