// The host's end of the packet link: takes requests from the window, works them off on threads, answers through slot 2.
#include "host/router.h"

#include <algorithm>
#include <cstring>

#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "monitor/vcp_codes.h"

// ---- Asking the backend ---------------------------------------------------------------------------------------------

// What a request has come to.
struct ANSWER {
    MONITORRESULT result;
    std::vector<BYTE> payload;
    const char *access; // the kind of access to the monitor, for the log; null: none
    std::string fields; // of the log
};

static std::string CodeFields(BYTE code)
{
    return Format(" code=0x%02X feature=%s", code, VcpShortName(code));
}

static bool IsDone(MONITORRESULT result)
{
    return result == MONITOR_OK || result == MONITOR_IGNORED;
}

// The functions below each work off one kind of request. A failed read answers -1 and -1, a failed write 0, a text or
// block that could not be had zeros.

static std::vector<BYTE> DwordPayload(DWORD value)
{
    std::vector<BYTE> payload;
    AppendDword(&payload, value);
    return payload;
}

static int MonitorOf(const PACKET *request)
{
    return static_cast<int>(PayloadDword(request, 0));
}

static ANSWER AnswerSetVcp(const MONITORBACKEND *backend, const PACKET *request, DWORD patience)
{
    const WORD wide = PacketData(request)->wCode, value = PayloadWord(request, 4);
    const BYTE code = static_cast<BYTE>(wide);
    const MONITORRESULT result =
        wide > 0xFF ? MONITOR_FAILED : backend->setVcp(backend->context, MonitorOf(request), patience, code, value);
    return {result, DwordPayload(IsDone(result)), "write", CodeFields(code) + Format(" value=%u", value)};
}

static ANSWER AnswerGetVcp(const MONITORBACKEND *backend, const PACKET *request, DWORD patience)
{
    const WORD wide = PacketData(request)->wCode;
    const BYTE code = static_cast<BYTE>(wide);
    WORD value = 0, maximum = 0;
    const MONITORRESULT result =
        wide > 0xFF ? MONITOR_FAILED
                    : backend->getVcp(backend->context, MonitorOf(request), patience, code, &value, &maximum);
    std::vector<BYTE> payload = DwordPayload(IsDone(result) ? value : 0xFFFFFFFF);
    AppendDword(&payload, IsDone(result) ? maximum : 0xFFFFFFFF);
    return {result, payload, "read",
            CodeFields(code) + (IsDone(result) ? Format(" value=%u max=%u", value, maximum) : "")};
}

static ANSWER AnswerInputList(const MONITORBACKEND *backend, const PACKET *request, DWORD)
{
    DWORD flags[HOST_INPUT_COUNT];
    for (DWORD n = 0; n < HOST_INPUT_COUNT; n++)
        flags[n] = PayloadDword(request, 4 + 4 * n);
    const MONITORRESULT result = backend->inputList(backend->context, MonitorOf(request), flags);
    return {result, DwordPayload(IsDone(result)), "input-list", ""};
}

static ANSWER AnswerDirectLink(const MONITORBACKEND *backend, const PACKET *request, DWORD)
{
    const bool on = PayloadDword(request, 4) != 0;
    const MONITORRESULT result = backend->directLink(backend->context, MonitorOf(request), on);
    return {result, DwordPayload(IsDone(result)), "directlink", Format(" on=%d", on)};
}

static ANSWER AnswerCount(const MONITORBACKEND *backend, const PACKET *, DWORD)
{
    return {MONITOR_OK, DwordPayload(static_cast<DWORD>(backend->count(backend->context))), nullptr, ""};
}

static ANSWER AnswerName(const MONITORBACKEND *backend, const PACKET *request, DWORD patience)
{
    char text[HOST_NAME_SIZE] = {};
    const MONITORRESULT result = backend->name(backend->context, MonitorOf(request), patience, text);
    return {result, {text, text + sizeof text}, "name", ""};
}

static ANSWER AnswerCapabilities(const MONITORBACKEND *backend, const PACKET *request, DWORD patience)
{
    char text[HOST_CAPABILITIES_SIZE] = {};
    const MONITORRESULT result = backend->capabilities(backend->context, MonitorOf(request), patience, text);
    return {result, {text, text + sizeof text}, "capabilities", ""};
}

static ANSWER AnswerEdid(const MONITORBACKEND *backend, const PACKET *request, DWORD)
{
    BYTE block[HOST_EDID_SIZE] = {};
    const MONITORRESULT result = backend->edid(backend->context, MonitorOf(request), block);
    return {result, {block, block + sizeof block}, "edid", ""};
}

static const struct {
    WORD command;
    ANSWER (*answer)(const MONITORBACKEND *, const PACKET *, DWORD patience);
} s_answerers[] = {
    {HOST_SET_VCP, AnswerSetVcp},
    {HOST_SET_INPUT_LIST, AnswerInputList},
    {HOST_SET_DIRECTLINK, AnswerDirectLink},
    {HOST_GET_VCP, AnswerGetVcp},
    {HOST_GET_MONITOR_COUNT, AnswerCount},
    {HOST_GET_MONITOR_NAME, AnswerName},
    {HOST_GET_CAPABILITIES, AnswerCapabilities},
    {HOST_GET_EDID, AnswerEdid},
};

// ---- What the plug-in knows -----------------------------------------------------------------------------------------

static std::string PayloadText(const PACKET *packet)
{
    const char *text = reinterpret_cast<const char *>(HostPayload(PacketData(packet)));
    return std::string(text, strnlen(text, PayloadSize(packet)));
}

// Notes what a request and the answer to it have told the plug-in.
static void NoteExchange(ROUTER *router, const PACKET *request, const PACKET *answer)
{
    const DWORD index = PayloadDword(request, 0);
    if (PayloadSize(request) < 4 || index >= WIRE_MONITOR_LIMIT)
        return;
    std::lock_guard lock(router->mutex);
    if (router->wire.size() <= index)
        router->wire.resize(index + 1);
    WIREMONITOR *monitor = &router->wire[index];
    switch (request->header.wCommand) {
    case HOST_GET_MONITOR_NAME:
        monitor->hasName = true;
        monitor->name = PayloadText(answer);
        break;
    case HOST_GET_CAPABILITIES:
        monitor->hasCapabilities = true;
        monitor->capabilities = PayloadText(answer);
        break;
    case HOST_SET_INPUT_LIST:
        monitor->hasInputs = true;
        for (DWORD n = 0; n < HOST_INPUT_COUNT; n++)
            monitor->inputs[n] = PayloadDword(request, 4 + 4 * n);
        break;
    case HOST_SET_DIRECTLINK:
        monitor->directLink = PayloadDword(request, 4) != 0;
        break;
    case HOST_GET_VCP:
        monitor->readings[PacketData(request)->wCode & 0xFF] = {true, static_cast<int>(PayloadDword(answer, 0)),
                                                                static_cast<int>(PayloadDword(answer, 4))};
        break;
    default:
        break;
    }
}

// ---- Answering ------------------------------------------------------------------------------------------------------

ENDPOINT HostEndpoint()
{
    return {HOST_ENDPOINT_ID, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_DDCCI};
}

// Hands a packet to a slot. The block is a copy that only has to live until the slot returns.
static int CallSlot(ROUTER *router, int slot, PACKET *packet)
{
    HOSTPACKET header = packet->header;
    header.lpData = PacketData(packet);
    return router->slots[slot](&header);
}

// Stands in for the backend when a request has waited its time out behind others: no monitor is asked any more. The
// count needs none.
static MONITORBACKEND LateBackend(const MONITORBACKEND &backend)
{
    return {backend.context,
            backend.count,
            [](void *, int, DWORD, char *) { return MONITOR_FAILED; },
            [](void *, int, DWORD, char *) { return MONITOR_FAILED; },
            [](void *, int, BYTE *) { return MONITOR_FAILED; },
            [](void *, int, DWORD, BYTE, WORD *, WORD *) { return MONITOR_FAILED; },
            [](void *, int, DWORD, BYTE, WORD) { return MONITOR_FAILED; },
            [](void *, int, const DWORD *) { return MONITOR_FAILED; },
            [](void *, int, bool) { return MONITOR_FAILED; }};
}

// Of a request that was well-formed when it came.
static ANSWER Ask(const MONITORBACKEND &backend, const PACKET *request, DWORD patience)
{
    for (const auto &answerer : s_answerers)
        if (answerer.command == request->header.wCommand)
            return answerer.answer(&backend, request, patience);
    return {MONITOR_SILENT, {}, nullptr, ""};
}

// The plug-in gives a request up by the time of its arrival, so what it has waited here is taken off its patience.
static ANSWER AskInTime(const MONITORBACKEND &backend, const PACKET *request, DWORD waited)
{
    if (waited < ACCESS_PATIENCE)
        return Ask(backend, request, ACCESS_PATIENCE - waited);
    LogEvent(
        Format("request %lu has waited %lu ms and is not made any more", PacketData(request)->dwRequestID, waited));
    return Ask(LateBackend(backend), request, 0);
}

static void LogAccess(const PACKET *request, const ANSWER &answer, DWORD startTick)
{
    if (answer.access)
        LogLine("host>monitor", answer.access,
                Format("monitor=%d%s result=%s ms=%lu", MonitorOf(request), answer.fields.c_str(),
                       MonitorResultName(answer.result), GetTickCount() - startTick));
}

static void Reply(ROUTER *router, const PACKET *request, const ANSWER &answer)
{
    if (answer.result == MONITOR_SILENT)
        return;
    PACKET packet = MakePacket(HostEndpoint(), request->header.src, request->header.wCommand,
                               PacketData(request)->wCode, PacketData(request)->dwRequestID, answer.payload);
    // Before the plug-in goes on: who waits for its next step must find all that led to it.
    NoteExchange(router, request, &packet);
    LogLine("host>plugin", "reply", DescribeAnswer(&packet));
    if (CallSlot(router, PLUGIN_SLOT_RECEIVE, &packet) != 1)
        LogLine("host>plugin", "refused", Format("id=%lu", PacketData(&packet)->dwRequestID));
}

static ROUTERLANE *LaneOf(ROUTER *router, const PACKET *request)
{
    const DWORD index = PayloadDword(request, 0);
    const bool isAboutMonitor = PayloadSize(request) >= 4 && index < WIRE_MONITOR_LIMIT;
    return &router->lanes[isAboutMonitor ? index : COMMON_LANE];
}

// The router is still there: it waits for every request that is neither dropped nor over.
static void Finish(ROUTER *router, const std::shared_ptr<ROUTERREQUEST> &request, const ANSWER &answer, DWORD startTick)
{
    LogAccess(&request->packet, answer, startTick);
    Reply(router, &request->packet, answer);
    std::lock_guard lock(router->mutex);
    ROUTERLANE *lane = LaneOf(router, &request->packet);
    lane->requests.erase(std::find(lane->requests.begin(), lane->requests.end(), request));
    router->lastPacketTick = GetTickCount();
    router->settled.notify_all();
}

// ---- Working requests off -------------------------------------------------------------------------------------------

static bool Take(ROUTERREQUEST *request)
{
    REQUESTSTATE state = REQUEST_WAITS;
    return request->state.compare_exchange_strong(state, REQUEST_IN_HAND);
}

// On the thread of the request's monitor. When it comes back from the driver too late, the router may be gone.
static void WorkOff(ROUTER *router, const std::shared_ptr<ROUTERREQUEST> &request)
{
    if (!Take(request.get()))
        return;
    const MONITORBACKEND backend = router->backend;
    const DWORD start = GetTickCount();
    const ANSWER answer = AskInTime(backend, &request->packet, start - request->arrivalTick);
    if (request->state.exchange(REQUEST_IS_OVER) != REQUEST_IS_OVER)
        Finish(router, request, answer, start);
}

// The thread of the request's monitor has not come so far in time: answers with what is known.
static void GiveUp(ROUTER *router, const std::shared_ptr<ROUTERREQUEST> &request)
{
    const REQUESTSTATE state = request->state.exchange(REQUEST_IS_OVER);
    if (state == REQUEST_IS_OVER)
        return;
    const DWORD waited = GetTickCount() - request->arrivalTick;
    const bool isLate = state == REQUEST_WAITS && waited >= ACCESS_PATIENCE;
    const ANSWER answer =
        isLate ? AskInTime(router->backend, &request->packet, waited) : Ask(router->backend, &request->packet, 0);
    Finish(router, request, answer, request->arrivalTick);
}

// With the lock. The first request of a lane that nobody has in hand; null: none.
static std::shared_ptr<ROUTERREQUEST> NextOf(const ROUTERLANE &lane)
{
    for (const std::shared_ptr<ROUTERREQUEST> &request : lane.requests)
        if (request->state == REQUEST_WAITS)
            return request;
    return nullptr;
}

static void WorkerLoop(ROUTER *router, ROUTERLANE *lane)
{
    std::unique_lock lock(router->mutex);
    for (;;) {
        std::shared_ptr<ROUTERREQUEST> request;
        lane->arrived.wait(lock, [&] { return router->stopping || (request = NextOf(*lane)); });
        if (router->stopping)
            return;
        lock.unlock();
        WorkOff(router, request);
        lock.lock();
    }
}

// Hands a request to the monitor's own thread. Returns false for one that needs a thread of the router's.
static bool Post(ROUTER *router, const std::shared_ptr<ROUTERREQUEST> &request)
{
    const MONITORBACKEND &backend = router->backend;
    return backend.post && LaneOf(router, &request->packet) != &router->lanes[COMMON_LANE] &&
           backend.post(backend.context, MonitorOf(&request->packet),
                        {[=] { WorkOff(router, request); }, [=] { GiveUp(router, request); }});
}

// On the window's thread. What comes after the stop is dropped like what waited then.
static void Enqueue(ROUTER *router, PACKET &&packet)
{
    const auto request = std::make_shared<ROUTERREQUEST>();
    request->packet = std::move(packet);
    request->arrivalTick = GetTickCount();
    ROUTERLANE *lane = LaneOf(router, &request->packet);
    {
        std::lock_guard lock(router->mutex);
        if (router->stopping)
            return;
        lane->requests.push_back(request);
    }
    if (lane->worker.joinable() || !Post(router, request)) {
        if (!lane->worker.joinable())
            lane->worker = std::thread(WorkerLoop, router, lane);
        lane->arrived.notify_one();
    }
}

void StartRouter(ROUTER *router, const PLUGINSLOT *slots, const MONITORBACKEND &backend)
{
    router->slots = slots;
    router->backend = backend;
    std::lock_guard lock(router->mutex);
    router->replies.clear();
    router->wire.clear();
    router->notices.clear();
    router->lastPacketTick = GetTickCount();
    router->stopping = false;
}

// With the lock. Takes what nobody has in hand out of a lane.
static void Drop(ROUTERLANE *lane)
{
    const auto isDropped = [](const std::shared_ptr<ROUTERREQUEST> &request) {
        REQUESTSTATE state = REQUEST_WAITS;
        return request->state.compare_exchange_strong(state, REQUEST_IS_OVER);
    };
    lane->requests.erase(std::remove_if(lane->requests.begin(), lane->requests.end(), isDropped), lane->requests.end());
}

void StopRouter(ROUTER *router)
{
    {
        std::unique_lock lock(router->mutex);
        router->stopping = true;
        for (ROUTERLANE &lane : router->lanes) {
            Drop(&lane);
            lane.arrived.notify_one();
        }
        router->settled.wait(lock, [=] {
            return std::all_of(router->lanes.begin(), router->lanes.end(),
                               [](const ROUTERLANE &lane) { return lane.requests.empty(); });
        });
    }
    for (ROUTERLANE &lane : router->lanes)
        if (lane.worker.joinable())
            lane.worker.join();
}

// ---- What arrives at the window -------------------------------------------------------------------------------------

static LRESULT RefusePacket(const PACKET *packet, const char *reason)
{
    LogLine("plugin>host", "malformed",
            Format("command=%u size=%lu reason=", packet->header.wCommand, packet->header.dwDataSize) + Quoted(reason));
    return 0;
}

// Why a well-formed packet still cannot be worked off; null when it can.
static const char *FindFault(const PACKET *packet)
{
    const REQUESTKIND *kind = FindRequestKind(packet->header.wCommand);
    if (!kind)
        return "unknown command";
    return PayloadSize(packet) == kind->payload ? nullptr : "the payload has not the size of its command";
}

LRESULT RouterTakePacket(ROUTER *router, const HOSTPACKET *source)
{
    PACKET packet;
    const char *fault = CopyPacket(source, &packet);
    if (!fault)
        fault = FindFault(&packet);
    if (fault)
        return RefusePacket(&packet, fault);

    const bool isNotice = packet.header.wCommand == HOST_NOTICE;
    const WORD notice = PacketData(&packet)->wCode;
    LogLine("plugin>host", isNotice ? "notice" : "request", DescribeRequest(&packet));
    {
        std::lock_guard lock(router->mutex);
        router->lastPacketTick = GetTickCount();
        if (isNotice && std::find(router->notices.begin(), router->notices.end(), notice) == router->notices.end())
            router->notices.push_back(notice);
    }
    if (!isNotice)
        Enqueue(router, std::move(packet));
    if (isNotice && router->noticed)
        router->noticed(router->noticedContext, notice);
    return 1;
}

LRESULT RouterTakeReply(ROUTER *router, const HOSTPACKET *source)
{
    PACKET packet;
    if (const char *fault = CopyPacket(source, &packet))
        return RefusePacket(&packet, fault);
    LogLine("plugin>host", "reply", DescribeCommand(&packet));
    std::lock_guard lock(router->mutex);
    router->replies.push_back(std::move(packet));
    if (router->replies.size() > REPLY_LIMIT)
        router->replies.pop_front();
    return 1;
}

bool TakeReply(ROUTER *router, PACKET *reply)
{
    std::lock_guard lock(router->mutex);
    if (router->replies.empty())
        return false;
    *reply = std::move(router->replies.front());
    router->replies.pop_front();
    return true;
}

void GreetPlugin(ROUTER *router)
{
    PACKET greeting = MakePacket(HostEndpoint(), {PLUGIN_ENDPOINT_ID, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_PLUGIN},
                                 HOST_NOTICE, 0, 0, {});
    const int taken = CallSlot(router, PLUGIN_SLOT_RECEIVE, &greeting);
    LogLine("host>plugin", "slot", Format("slot=%d command=%u result=%d", PLUGIN_SLOT_RECEIVE, HOST_NOTICE, taken));
}

bool HasNotice(ROUTER *router, WORD notice)
{
    std::lock_guard lock(router->mutex);
    return std::find(router->notices.begin(), router->notices.end(), notice) != router->notices.end();
}

DWORD MillisecondsSincePacket(ROUTER *router)
{
    std::lock_guard lock(router->mutex);
    return GetTickCount() - router->lastPacketTick;
}

bool IsLinkQuiet(ROUTER *router, DWORD milliseconds)
{
    std::lock_guard lock(router->mutex);
    for (const ROUTERLANE &lane : router->lanes)
        if (!lane.requests.empty())
            return false;
    return GetTickCount() - router->lastPacketTick >= milliseconds;
}

std::vector<WIREMONITOR> CopyWireMonitors(ROUTER *router)
{
    std::lock_guard lock(router->mutex);
    return router->wire;
}
