// The host's end of the packet link: takes requests from the window, works them off on threads, answers through slot 2.
#include "host/router.h"

#include <algorithm>
#include <cstring>

#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "monitor/vcp_codes.h"

// ---- Asking the backend ---------------------------------------------------------------------------------------------

// What an access to a monitor gave, and how long it took, for the log.
static void LogAccess(const char *kind, const PACKET *request, const std::string &fields, MONITORRESULT result,
                      DWORD startTick)
{
    LogLine("host>monitor", kind,
            Format("monitor=%d%s result=%s ms=%lu", static_cast<int>(PayloadDword(request, 0)), fields.c_str(),
                   MonitorResultName(result), GetTickCount() - startTick));
}

static std::string CodeFields(BYTE code)
{
    return Format(" code=0x%02X feature=%s", code, VcpShortName(code));
}

static bool IsDone(MONITORRESULT result)
{
    return result == MONITOR_OK || result == MONITOR_IGNORED;
}

// The functions below each work off one kind of request: they fill the answer's payload, and say how it went. A failed
// read answers -1 and -1, a failed write 0, a text or block that could not be had zeros.

static MONITORRESULT AnswerSetVcp(const MONITORBACKEND *backend, const PACKET *request, DWORD patience,
                                  std::vector<BYTE> *answer)
{
    const WORD wide = PacketData(request)->wCode;
    const BYTE code = static_cast<BYTE>(wide);
    const WORD value = PayloadWord(request, 4);
    const DWORD start = GetTickCount();
    const MONITORRESULT result =
        wide > 0xFF
            ? MONITOR_FAILED
            : backend->setVcp(backend->context, static_cast<int>(PayloadDword(request, 0)), patience, code, value);
    LogAccess("write", request, CodeFields(code) + Format(" value=%u", value), result, start);
    AppendDword(answer, IsDone(result));
    return result;
}

static MONITORRESULT AnswerGetVcp(const MONITORBACKEND *backend, const PACKET *request, DWORD patience,
                                  std::vector<BYTE> *answer)
{
    const WORD wide = PacketData(request)->wCode;
    const BYTE code = static_cast<BYTE>(wide);
    WORD value = 0, maximum = 0;
    const DWORD start = GetTickCount();
    const MONITORRESULT result = wide > 0xFF
                                     ? MONITOR_FAILED
                                     : backend->getVcp(backend->context, static_cast<int>(PayloadDword(request, 0)),
                                                       patience, code, &value, &maximum);
    LogAccess("read", request, CodeFields(code) + (IsDone(result) ? Format(" value=%u max=%u", value, maximum) : ""),
              result, start);
    AppendDword(answer, IsDone(result) ? value : 0xFFFFFFFF);
    AppendDword(answer, IsDone(result) ? maximum : 0xFFFFFFFF);
    return result;
}

static MONITORRESULT AnswerInputList(const MONITORBACKEND *backend, const PACKET *request, DWORD,
                                     std::vector<BYTE> *answer)
{
    DWORD flags[HOST_INPUT_COUNT];
    for (DWORD n = 0; n < HOST_INPUT_COUNT; n++)
        flags[n] = PayloadDword(request, 4 + 4 * n);
    const DWORD start = GetTickCount();
    const MONITORRESULT result =
        backend->inputList(backend->context, static_cast<int>(PayloadDword(request, 0)), flags);
    LogAccess("input-list", request, "", result, start);
    AppendDword(answer, IsDone(result));
    return result;
}

static MONITORRESULT AnswerDirectLink(const MONITORBACKEND *backend, const PACKET *request, DWORD,
                                      std::vector<BYTE> *answer)
{
    const bool on = PayloadDword(request, 4) != 0;
    const DWORD start = GetTickCount();
    const MONITORRESULT result = backend->directLink(backend->context, static_cast<int>(PayloadDword(request, 0)), on);
    LogAccess("directlink", request, Format(" on=%d", on), result, start);
    AppendDword(answer, IsDone(result));
    return result;
}

static MONITORRESULT AnswerCount(const MONITORBACKEND *backend, const PACKET *, DWORD, std::vector<BYTE> *answer)
{
    AppendDword(answer, static_cast<DWORD>(backend->count(backend->context)));
    return MONITOR_OK;
}

static MONITORRESULT AnswerName(const MONITORBACKEND *backend, const PACKET *request, DWORD patience,
                                std::vector<BYTE> *answer)
{
    char text[HOST_NAME_SIZE] = {};
    const DWORD start = GetTickCount();
    const MONITORRESULT result =
        backend->name(backend->context, static_cast<int>(PayloadDword(request, 0)), patience, text);
    LogAccess("name", request, "", result, start);
    answer->assign(text, text + sizeof(text));
    return result;
}

static MONITORRESULT AnswerCapabilities(const MONITORBACKEND *backend, const PACKET *request, DWORD patience,
                                        std::vector<BYTE> *answer)
{
    char text[HOST_CAPABILITIES_SIZE] = {};
    const DWORD start = GetTickCount();
    const MONITORRESULT result =
        backend->capabilities(backend->context, static_cast<int>(PayloadDword(request, 0)), patience, text);
    LogAccess("capabilities", request, "", result, start);
    answer->assign(text, text + sizeof(text));
    return result;
}

static MONITORRESULT AnswerEdid(const MONITORBACKEND *backend, const PACKET *request, DWORD, std::vector<BYTE> *answer)
{
    BYTE block[HOST_EDID_SIZE] = {};
    const DWORD start = GetTickCount();
    const MONITORRESULT result = backend->edid(backend->context, static_cast<int>(PayloadDword(request, 0)), block);
    LogAccess("edid", request, "", result, start);
    answer->assign(block, block + sizeof(block));
    return result;
}

static const struct {
    WORD command;
    MONITORRESULT (*answer)(const MONITORBACKEND *, const PACKET *, DWORD patience, std::vector<BYTE> *);
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

// ---- The worker -----------------------------------------------------------------------------------------------------

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

// The plug-in gives a request up by the time of its arrival, so what it has waited here is taken off its patience.
static void WorkOff(ROUTER *router, const PACKET *request, DWORD waited)
{
    const bool isLate = waited >= ACCESS_PATIENCE;
    const MONITORBACKEND backend = isLate ? LateBackend(router->backend) : router->backend;
    if (isLate)
        LogEvent(
            Format("request %lu has waited %lu ms and is not made any more", PacketData(request)->dwRequestID, waited));
    for (const auto &answerer : s_answerers) {
        if (answerer.command != request->header.wCommand)
            continue;
        std::vector<BYTE> payload;
        if (answerer.answer(&backend, request, isLate ? 0 : ACCESS_PATIENCE - waited, &payload) == MONITOR_SILENT)
            return;
        PACKET answer = MakePacket(HostEndpoint(), request->header.src, request->header.wCommand,
                                   PacketData(request)->wCode, PacketData(request)->dwRequestID, payload);
        // Before the plug-in goes on: who waits for its next step must find all that led to it.
        NoteExchange(router, request, &answer);
        LogLine("host>plugin", "reply", DescribeAnswer(&answer));
        if (CallSlot(router, PLUGIN_SLOT_RECEIVE, &answer) != 1)
            LogLine("host>plugin", "refused", Format("id=%lu", PacketData(&answer)->dwRequestID));
        return;
    }
}

static void WorkerLoop(ROUTER *router, ROUTERLANE *lane)
{
    std::unique_lock lock(router->mutex);
    for (;;) {
        lane->arrived.wait(lock, [=] { return router->stopping || !lane->requests.empty(); });
        if (router->stopping)
            return;
        const ROUTERLANE::WAITING request = std::move(lane->requests.front());
        lane->requests.pop_front();
        lane->working = true;
        lock.unlock();
        WorkOff(router, &request.packet, GetTickCount() - request.arrivalTick);
        lock.lock();
        lane->working = false;
        router->lastPacketTick = GetTickCount();
    }
}

static ROUTERLANE *LaneOf(ROUTER *router, const PACKET *request)
{
    const DWORD index = PayloadDword(request, 0);
    const bool isAboutMonitor = PayloadSize(request) >= 4 && index < WIRE_MONITOR_LIMIT;
    return &router->lanes[isAboutMonitor ? index : COMMON_LANE];
}

// With the lock. What comes after the stop is dropped like what waited then.
static void Enqueue(ROUTER *router, PACKET &&request)
{
    if (router->stopping)
        return;
    ROUTERLANE *lane = LaneOf(router, &request);
    lane->requests.push_back({std::move(request), GetTickCount()});
    lane->arrived.notify_one();
    if (!lane->worker.joinable())
        lane->worker = std::thread(WorkerLoop, router, lane);
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

void StopRouter(ROUTER *router)
{
    {
        std::lock_guard lock(router->mutex);
        router->stopping = true;
        for (ROUTERLANE &lane : router->lanes) {
            lane.requests.clear();
            lane.arrived.notify_one();
        }
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
        if (!isNotice)
            Enqueue(router, std::move(packet));
        else if (std::find(router->notices.begin(), router->notices.end(), notice) == router->notices.end())
            router->notices.push_back(notice);
    }
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
        if (lane.working || !lane.requests.empty())
            return false;
    return GetTickCount() - router->lastPacketTick >= milliseconds;
}

std::vector<WIREMONITOR> CopyWireMonitors(ROUTER *router)
{
    std::lock_guard lock(router->mutex);
    return router->wire;
}
