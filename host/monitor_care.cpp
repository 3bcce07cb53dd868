// Keeps accesses away from monitors that are to be left alone, and sets again what they have forgotten.
#include "host/monitor_care.h"

#include <algorithm>

#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "monitor/vcp_codes.h"

constexpr DWORD LOCK_PAUSE = 50; // ms between two tries to release the button locks
constexpr int DOUBT_LIMIT = 4;   // as many as the looks after an event: a monitor may take its time to answer

static MONITORCARE *From(void *context)
{
    return static_cast<MONITORCARE *>(context);
}

// With the lock; null for an index that there is not.
static CAREDMONITOR *CaredAt(MONITORCARE *care, int monitor)
{
    const bool isThere = monitor >= 0 && static_cast<size_t>(monitor) < care->places.size();
    return isThere ? &care->monitors[care->places[static_cast<size_t>(monitor)]] : nullptr;
}

static bool IsResting(MONITORCARE *care)
{
    std::lock_guard lock(care->mutex);
    return care->rests;
}

// Without patience a monitor is not asked.
static DWORD PatienceNow(MONITORCARE *care, DWORD patience)
{
    return IsResting(care) ? 0 : patience;
}

// ---- The table for the router ---------------------------------------------------------------------------------------

static int Count(void *context)
{
    const MONITORBACKEND &inner = From(context)->inner;
    return inner.count(inner.context);
}

static MONITORRESULT Name(void *context, int monitor, DWORD patience, char text[HOST_NAME_SIZE])
{
    const MONITORBACKEND &inner = From(context)->inner;
    return inner.name(inner.context, monitor, PatienceNow(From(context), patience), text);
}

static MONITORRESULT Capabilities(void *context, int monitor, DWORD patience, char text[HOST_CAPABILITIES_SIZE])
{
    const MONITORBACKEND &inner = From(context)->inner;
    return inner.capabilities(inner.context, monitor, PatienceNow(From(context), patience), text);
}

static MONITORRESULT Edid(void *context, int monitor, BYTE block[HOST_EDID_SIZE])
{
    const MONITORBACKEND &inner = From(context)->inner;
    return inner.edid(inner.context, monitor, block);
}

static MONITORRESULT GetVcp(void *context, int monitor, DWORD patience, BYTE code, WORD *value, WORD *maximum)
{
    MONITORCARE *care = From(context);
    if (IsResting(care))
        return MONITOR_FAILED;
    const MONITORRESULT result = care->inner.getVcp(care->inner.context, monitor, patience, code, value, maximum);
    std::lock_guard lock(care->mutex);
    CAREDMONITOR *cared = CaredAt(care, monitor);
    if (cared && result == MONITOR_OK && cared->doubts == 0)
        NoteRead(&cared->kept, code, *value);
    return result;
}

// Whether nobody will write to the monitor later, and it is there.
static bool IsLastChance(MONITORCARE *care, int monitor)
{
    std::lock_guard lock(care->mutex);
    const CAREDMONITOR *cared = CaredAt(care, monitor);
    return care->isEnding && cared && !cared->isAway;
}

// Until the monitor says that it has the value. One that takes the write and says nothing counts as having it.
static MONITORRESULT WriteForSure(const MONITORBACKEND &inner, int monitor, DWORD patience, BYTE code, WORD value)
{
    const DWORD start = GetTickCount();
    for (;;) {
        WORD read = 0, maximum = 0;
        const MONITORRESULT written = inner.setVcp(inner.context, monitor, patience, code, value);
        const bool isDone = written == MONITOR_OK || written == MONITOR_IGNORED;
        const bool isRead =
            isDone && inner.getVcp(inner.context, monitor, patience, code, &read, &maximum) == MONITOR_OK;
        if ((isRead && read == value) || patience == 0)
            return written;
        if (GetTickCount() - start >= LOCK_PATIENCE)
            return isRead ? MONITOR_FAILED : written;
        Sleep(LOCK_PAUSE);
    }
}

static MONITORRESULT SetVcp(void *context, int monitor, DWORD patience, BYTE code, WORD value)
{
    MONITORCARE *care = From(context);
    const bool rests = IsResting(care);
    MONITORRESULT result = MONITOR_FAILED;
    if (code == VCP_BUTTON_LOCK && IsLastChance(care, monitor))
        result = WriteForSure(care->inner, monitor, patience, code, value);
    else if (!rests)
        result = care->inner.setVcp(care->inner.context, monitor, patience, code, value);
    std::lock_guard lock(care->mutex);
    CAREDMONITOR *cared = CaredAt(care, monitor);
    if (!cared)
        return result;
    const bool isDone = result == MONITOR_OK || result == MONITOR_IGNORED;
    const WRITEFATE missed = rests || cared->isAway ? WRITE_HELD_BACK : WRITE_FAILED;
    NoteWrite(&cared->kept, code, value, isDone ? WRITE_DONE : missed);
    return result;
}

static MONITORRESULT InputList(void *context, int monitor, const DWORD flags[HOST_INPUT_COUNT])
{
    const MONITORBACKEND &inner = From(context)->inner;
    return inner.inputList(inner.context, monitor, flags);
}

static MONITORRESULT DirectLink(void *context, int monitor, bool on)
{
    const MONITORBACKEND &inner = From(context)->inner;
    return inner.directLink(inner.context, monitor, on);
}

static bool Post(void *context, int monitor, const MONITORJOB &job)
{
    const MONITORBACKEND &inner = From(context)->inner;
    return inner.post(inner.context, monitor, job);
}

MONITORBACKEND StartMonitorCare(MONITORCARE *care, const MONITORBACKEND &inner)
{
    care->inner = inner;
    return {care, Count, Name, Capabilities, Edid, GetVcp, SetVcp, InputList, DirectLink, inner.post ? Post : nullptr};
}

// ---- Rest and return ------------------------------------------------------------------------------------------------

void SetCaredMonitors(MONITORCARE *care, const std::vector<MONITORIDENTITY> &inUse)
{
    std::lock_guard lock(care->mutex);
    care->finds++;
    care->isEnding = false;
    care->places.clear();
    for (const MONITORIDENTITY &identity : inUse)
        care->places.push_back(identity.text);
}

void RestMonitors(MONITORCARE *care, bool rests)
{
    std::lock_guard lock(care->mutex);
    care->rests = rests;
}

void EndMonitorCare(MONITORCARE *care)
{
    std::lock_guard lock(care->mutex);
    care->rests = false;
    care->isEnding = true;
}

void DoubtMonitors(MONITORCARE *care)
{
    std::lock_guard lock(care->mutex);
    for (auto &[identity, cared] : care->monitors)
        cared.doubts = DOUBT_LIMIT;
}

// The place that is to be settled, and the find that it belongs to.
struct SETTLING {
    int monitor;
    unsigned find;
};

// What is kept of a code, if that is still wanted: another find may have put other monitors into the places, or the
// monitors may have been told to rest.
static KEPTVALUES::WISH WishNow(MONITORCARE *care, const SETTLING &settling, BYTE code)
{
    std::lock_guard lock(care->mutex);
    const CAREDMONITOR *cared = CaredAt(care, settling.monitor);
    return cared && !care->rests && care->finds == settling.find ? cared->kept.wishes[code] : KEPTVALUES::WISH{};
}

// Whether the monitor has what is kept of the code, or had it set.
static bool SettleCode(MONITORCARE *care, const SETTLING &settling, BYTE code)
{
    const MONITORBACKEND &inner = care->inner;
    const KEPTVALUES::WISH wish = WishNow(care, settling, code);
    WORD value = 0, maximum = 0;
    if (!wish.isThere)
        return true;
    if (inner.getVcp(inner.context, settling.monitor, ACCESS_PATIENCE, code, &value, &maximum) != MONITOR_OK)
        return false;
    if (value == wish.value)
        return true;
    if (!WishNow(care, settling, code).isThere)
        return true;
    const MONITORRESULT result = inner.setVcp(inner.context, settling.monitor, ACCESS_PATIENCE, code, wish.value);
    LogLine("host>monitor", "again",
            Format("monitor=%d code=0x%02X feature=%s value=%u was=%u result=%s", settling.monitor, code,
                   VcpShortName(code), wish.value, value, MonitorResultName(result)));
    return result == MONITOR_OK || result == MONITOR_IGNORED;
}

static void Settle(MONITORCARE *care, const SETTLING &settling)
{
    std::vector<BYTE> codes;
    {
        std::lock_guard lock(care->mutex);
        const CAREDMONITOR *cared = CaredAt(care, settling.monitor);
        if (cared && care->finds == settling.find)
            codes = KeptCodes(cared->kept);
    }
    bool isSettled = true;
    for (const BYTE code : codes) {
        const bool hasIt = SettleCode(care, settling, code);
        isSettled = isSettled && hasIt;
        std::lock_guard lock(care->mutex);
        CAREDMONITOR *cared = CaredAt(care, settling.monitor);
        if (hasIt && cared && !care->rests && care->finds == settling.find)
            NoteSettled(&cared->kept, code);
    }
    std::lock_guard lock(care->mutex);
    CAREDMONITOR *cared = CaredAt(care, settling.monitor);
    if (cared && !care->rests && care->finds == settling.find)
        cared->doubts = isSettled ? 0 : std::max(cared->doubts - 1, 0);
}

// Notes who is there, and which of them are to be settled.
static std::vector<SETTLING> FindDoubtful(MONITORCARE *care, const std::vector<MONITORIDENTITY> &seen)
{
    std::lock_guard lock(care->mutex);
    std::vector<SETTLING> doubtful;
    for (size_t i = 0; i < care->places.size(); i++) {
        CAREDMONITOR *cared = &care->monitors[care->places[i]];
        const bool wasAway = cared->isAway;
        cared->isAway = std::none_of(seen.begin(), seen.end(),
                                     [&](const MONITORIDENTITY &identity) { return identity.text == care->places[i]; });
        if (wasAway)
            cared->doubts = DOUBT_LIMIT;
        if (!care->rests && !cared->isAway && cared->doubts > 0)
            doubtful.push_back({static_cast<int>(i), care->finds});
    }
    return doubtful;
}

void SettleMonitors(MONITORCARE *care, const std::vector<MONITORIDENTITY> &seen)
{
    for (const SETTLING &settling : FindDoubtful(care, seen)) {
        const MONITORJOB job = {[=] { Settle(care, settling); }, [] {}};
        if (!care->inner.post)
            job.run();
        else
            care->inner.post(care->inner.context, settling.monitor, job);
    }
}
