// Request numbers, reply slots and the routing between them.
#include "kernel/link/host_packet.h"

#include "kernel/base/plugin_state.h"
#include "kernel/link/host_protocol.h"
#include "kernel/link/packet_check.h"

#include <cstring>

ENDPOINT g_MyAddr = {ENDPOINT_ID_UNKNOWN, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_PLUGIN};
SHAREDWORD g_wHostID = ENDPOINT_ID_UNKNOWN;
UNIQUEID g_UniqueID[REQUEST_COUNT];
REPLYSLOT g_ReplySlot[REQUEST_COUNT];

static_assert(PACKET_HEAD_SIZE == sizeof(HOSTDATA));

constexpr int WAIT_ROUNDS = 10;
constexpr DWORD WAIT_ROUND_MS = 1000;
constexpr DWORD WAIT_PAUSE_MS = 10;
constexpr int SLOT_YIELDS = 100;

// ---- Request numbers ----------------------------------------------------------------------------------------------

DWORD NewUniqueID(const ENDPOINT *lpDst)
{
    if (lpDst->wID == ENDPOINT_ID_UNKNOWN)
        return 0;
    for (DWORD id = 1; id < REQUEST_COUNT; ++id) {
        LONG expected = 0;
        if (g_UniqueID[id].bInUse.compare_exchange_strong(expected, 1)) {
            g_UniqueID[id].dst = *lpDst;
            return id;
        }
    }
    return REQUEST_NONE;
}

int DeleteUniqueID(DWORD dwID)
{
    if (dwID >= REQUEST_COUNT || !g_UniqueID[dwID].bInUse)
        return 0;
    char szTrace[64]; // for the eyes of a debugger; it goes nowhere else
    wsprintfA(szTrace, "<LV2C>DeleteUniqueID(): ID=%d\n", dwID);
    g_UniqueID[dwID].dst = ENDPOINT{};
    g_UniqueID[dwID].bInUse = 0;
    return 1;
}

// ---- Blocks and headers -------------------------------------------------------------------------------------------

HOSTDATA *MakeDataBlock(WORD wCode, const void *lpPayload, DWORD dwLength, DWORD dwID)
{
    const DWORD size = static_cast<DWORD>(sizeof(HOSTDATA)) + dwLength;
    HOSTDATA *data = static_cast<HOSTDATA *>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, size));
    if (!data)
        return nullptr;
    data->dwSize = size;
    data->dwRequestID = dwID;
    data->wCode = wCode;
    if (lpPayload)
        memcpy(HostPayload(data), lpPayload, dwLength);
    return data;
}

void FreeDataBlock(HOSTDATA *lpData)
{
    if (lpData)
        HeapFree(GetProcessHeap(), 0, lpData);
}

DWORD BuildRequest(HOSTPACKET *lpPacket, WORD wCommand, WORD wCode, const void *lpPayload, DWORD dwLength)
{
    if (!lpPacket)
        return REQUEST_NONE;
    *lpPacket = HOSTPACKET{};
    lpPacket->wCommand = wCommand;
    lpPacket->src = g_MyAddr;
    lpPacket->dst = {g_wHostID, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_DDCCI};

    const DWORD id = NewUniqueID(&lpPacket->dst);
    if (id == REQUEST_NONE)
        return REQUEST_NONE;
    lpPacket->lpData = MakeDataBlock(wCode, lpPayload, lpPayload ? dwLength : 0, id);
    if (!lpPacket->lpData) {
        DeleteUniqueID(id);
        return REQUEST_NONE;
    }
    lpPacket->dwDataSize = lpPacket->lpData->dwSize;
    return id;
}

HOSTPACKET *BuildReplyPacket(const ENDPOINT *lpDst, WORD wCommand, WORD wFlags, HOSTDATA *lpData, DWORD dwDataSize)
{
    HOSTPACKET *packet = static_cast<HOSTPACKET *>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(HOSTPACKET)));
    if (packet)
        *packet = {g_MyAddr, *lpDst, wFlags, 0, dwDataSize, lpData, wCommand, 0};
    return packet;
}

void FreeReplyPacket(HOSTPACKET *lpPacket)
{
    if (lpPacket)
        HeapFree(GetProcessHeap(), 0, lpPacket);
}

void SendReply(const HOSTPACKET *lpPacket)
{
    SendMessageA(g_hHostWnd, WM_HOST_REPLY, 0, reinterpret_cast<LPARAM>(lpPacket));
}

REPLYRESULT AnswerCommand(const HOSTPACKET *lpCommand, DWORD dwRequestID, WORD wCode, const void *lpPayload,
                          DWORD dwLength)
{
    HOSTDATA *data = MakeDataBlock(wCode, lpPayload, dwLength, dwRequestID);
    if (!data)
        return REPLYRESULT::NoBlock;
    HOSTPACKET *reply = BuildReplyPacket(&lpCommand->src, lpCommand->wCommand, lpCommand->wFlags, data, data->dwSize);
    if (reply)
        SendReply(reply);
    FreeReplyPacket(reply);
    FreeDataBlock(data);
    return reply ? REPLYRESULT::Sent : REPLYRESULT::NoHeader;
}

// ---- Reply slots --------------------------------------------------------------------------------------------------

// Held for the copy of at most 512 bytes and the signal after it. That signal wakes a requester that finds the slot
// still held, so it first lets others run; then it sleeps, since the holder may be a thread of lower priority.
static void EnterSlot(REPLYSLOT *slot)
{
    for (int tries = 0; slot->bBusy.exchange(1); ++tries)
        Sleep(tries < SLOT_YIELDS ? 0 : 1);
}

static void LeaveSlot(REPLYSLOT *slot)
{
    slot->bBusy = 0;
}

static void SetSlot(REPLYSLOT *slot, HANDLE hEvent, void *lpBuffer, DWORD dwSize)
{
    slot->hEvent = hEvent;
    slot->lpBuffer = lpBuffer;
    slot->dwSize = dwSize;
}

void OpenReplySlot(DWORD dwID, HANDLE hEvent, void *lpBuffer, DWORD dwSize)
{
    REPLYSLOT *slot = &g_ReplySlot[dwID];
    EnterSlot(slot);
    SetSlot(slot, hEvent, lpBuffer, dwSize);
    LeaveSlot(slot);
}

void CloseReplySlot(DWORD dwID, HANDLE hEvent)
{
    REPLYSLOT *slot = &g_ReplySlot[dwID];
    EnterSlot(slot);
    if (slot->hEvent == hEvent)
        SetSlot(slot, nullptr, nullptr, 0);
    LeaveSlot(slot);
}

int WaitReply(HANDLE hEvent)
{
    for (int round = 0; round < WAIT_ROUNDS; ++round) {
        const DWORD result = WaitForSingleObject(hEvent, WAIT_ROUND_MS);
        if (result == WAIT_OBJECT_0)
            return 1;
        if (result != WAIT_TIMEOUT)
            return 0;
        if (g_bAbort)
            return 1;
        Sleep(WAIT_PAUSE_MS);
    }
    return 0;
}

// ---- Receiving ----------------------------------------------------------------------------------------------------

// What each reply carries. Command 25 is routed although no request of ours asks for it.
struct REPLYKIND {
    WORD wCommand;
    DWORD dwPayload; // bytes for the requester
    bool bSignal;
};

static const REPLYKIND s_ReplyKinds[] = {
    {HOST_NOTICE, 0, false}, // acknowledges a notice; nobody waits for that
    {HOST_SET_VCP, 4, true},
    {HOST_SET_INPUT_LIST, 4, true},
    {HOST_SET_DIRECTLINK, 4, true},
    {HOST_GET_VCP, 8, true},
    {25, 4, true},
    {HOST_GET_MONITOR_COUNT, 4, true},
    {HOST_GET_MONITOR_NAME, HOST_NAME_SIZE, true},
    {HOST_GET_CAPABILITIES, HOST_CAPABILITIES_SIZE, true},
    {HOST_GET_EDID, HOST_EDID_SIZE, true},
};

static const REPLYKIND *FindReplyKind(WORD wCommand)
{
    for (const REPLYKIND &kind : s_ReplyKinds)
        if (kind.wCommand == wCommand)
            return &kind;
    return nullptr;
}

// Gives a reply to the request that waits on its number. The number alone decides. The copy is bounded on both sides: a
// block shorter than its command's answer is refused, and a late answer that meets another request on its number is cut
// to that request's buffer.
static int DispatchReply(const HOSTPACKET *packet, const REPLYKIND *kind)
{
    HOSTREPLY reply;
    if (!ReadReply(&reply, packet->lpData, packet->dwDataSize, kind->dwPayload, REQUEST_COUNT))
        return 0;

    REPLYSLOT *slot = &g_ReplySlot[reply.dwRequestID];
    EnterSlot(slot);
    const bool waiting = slot->lpBuffer != nullptr;
    if (waiting && kind->bSignal) {
        CopyReply(slot->lpBuffer, slot->dwSize, &reply);
        SetEvent(slot->hEvent);
    }
    LeaveSlot(slot);
    return waiting;
}

// Notices and answers of the host that say nothing to us.
static bool IsIgnoredCommand(WORD wCommand)
{
    static const WORD ignored[] = {0, 1, 2, 3, 10, 11, 14, 15, 127, 128};
    for (const WORD command : ignored)
        if (command == wCommand)
            return true;
    return false;
}

int PluginReceive(void *lpPacket)
{
    const HOSTPACKET *packet = static_cast<const HOSTPACKET *>(lpPacket);
    if (!packet)
        return 0;
    if (IsIgnoredCommand(packet->wCommand))
        return 1;
    if (packet->src.bClass != ENDPOINT_CLASS || packet->src.bSubClass != ENDPOINT_SUBCLASS_DDCCI)
        return 0;
    if (packet->src.wID != ENDPOINT_ID_UNKNOWN)
        g_wHostID = packet->src.wID;
    const REPLYKIND *kind = FindReplyKind(packet->wCommand);
    return kind ? DispatchReply(packet, kind) : 0;
}
