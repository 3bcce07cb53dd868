// The round trip of a request, and the requests that are made of it.
#include "kernel/link/host_request.h"

#include "kernel/base/plugin_state.h"
#include "kernel/link/host_packet.h"
#include "kernel/link/host_protocol.h"

#include <cstring>

enum class OUTCOME {
    NotSent, // no number, memory or event
    GaveUp,  // no answer in time
    Over,    // answered, or ended by the stop of the plug-in with the answer buffer as it was
};

// Sends a request and waits for its answer, at most cbAnswer bytes, which go to lpAnswer.
static OUTCOME Ask(WORD wCommand, WORD wCode, const void *lpPayload, DWORD cbPayload, void *lpAnswer, DWORD cbAnswer)
{
    HOSTPACKET packet;
    const DWORD id = BuildRequest(&packet, wCommand, wCode, lpPayload, cbPayload);
    if (id == REQUEST_NONE)
        return OUTCOME::NotSent;

    // Manual reset and made before the send: an answer that comes inside the send is not lost.
    const HANDLE hEvent = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    if (!hEvent) {
        FreeDataBlock(packet.lpData);
        DeleteUniqueID(id);
        return OUTCOME::NotSent;
    }
    OpenReplySlot(id, hEvent, lpAnswer, cbAnswer);
    SendMessageA(g_hHostWnd, WM_HOST_PACKET, 0, reinterpret_cast<LPARAM>(&packet));
    FreeDataBlock(packet.lpData);
    const int over = WaitReply(hEvent);
    CloseReplySlot(id, hEvent);
    CloseHandle(hEvent);
    DeleteUniqueID(id);
    return over ? OUTCOME::Over : OUTCOME::GaveUp;
}

LONG HostSetVCP(LONG nMonitor, BYTE bCode, WORD wValue)
{
    const LONG payload[2] = {nMonitor, wValue};
    LONG answer = -1;
    Ask(HOST_SET_VCP, bCode, payload, sizeof payload, &answer, sizeof answer);
    return answer;
}

LONG HostGetVCP(LONG nMonitor, BYTE bCode, LONG *lpMaximum)
{
    struct {
        LONG nCurrent;
        LONG nMaximum;
    } answer = {-1, -1};
    if (Ask(HOST_GET_VCP, bCode, &nMonitor, sizeof nMonitor, &answer, sizeof answer) != OUTCOME::Over)
        return -1;
    if (lpMaximum)
        *lpMaximum = answer.nMaximum;
    return answer.nCurrent;
}

int HostSetInputList(LONG nMonitor, const uint32_t *lpFlags)
{
    if (g_bAbort)
        return 0;
    struct {
        LONG nMonitor;
        uint32_t flags[HOST_INPUT_COUNT];
    } payload;
    payload.nMonitor = nMonitor;
    memcpy(payload.flags, lpFlags, sizeof payload.flags);
    LONG answer = sizeof payload; // not 0: no answer counts as success
    if (Ask(HOST_SET_INPUT_LIST, 0, &payload, sizeof payload, &answer, sizeof answer) == OUTCOME::NotSent)
        return 0;
    return answer != 0;
}

LONG HostSetDirectLink(LONG nMonitor, LONG bOn)
{
    const LONG payload[2] = {nMonitor, bOn ? 1 : 0};
    LONG answer = nMonitor;
    Ask(HOST_SET_DIRECTLINK, 0, payload, sizeof payload, &answer, sizeof answer);
    return answer;
}

LONG HostGetMonitorCount()
{
    LONG answer = -1;
    Ask(HOST_GET_MONITOR_COUNT, 0, nullptr, 0, &answer, sizeof answer);
    return answer;
}

// The requests whose answer is a block of bytes, for which the end of the wait counts, not the answer.
static bool AskForBytes(WORD wCommand, LONG nMonitor, void *lpBuffer, DWORD cbBuffer)
{
    return Ask(wCommand, 0, &nMonitor, sizeof nMonitor, lpBuffer, cbBuffer) != OUTCOME::NotSent;
}

int HostGetMonitorName(LONG nMonitor, char *lpName)
{
    return AskForBytes(HOST_GET_MONITOR_NAME, nMonitor, lpName, HOST_NAME_SIZE);
}

int HostGetCapabilities(LONG nMonitor, char *lpText)
{
    return AskForBytes(HOST_GET_CAPABILITIES, nMonitor, lpText, HOST_CAPABILITIES_SIZE);
}

LONG HostGetEDID(LONG nMonitor, BYTE *lpBuffer, DWORD cbBuffer)
{
    if (cbBuffer < HOST_EDID_SIZE || !AskForBytes(HOST_GET_EDID, nMonitor, lpBuffer, HOST_EDID_SIZE))
        return -1;
    return HOST_EDID_SIZE;
}

void SendNotice(WORD wNotice)
{
    // Sent also without a number: the host needs none, since it does not answer.
    HOSTPACKET packet = {};
    packet.src = g_MyAddr;
    packet.wCommand = HOST_NOTICE;
    packet.lpData = MakeDataBlock(wNotice, nullptr, 0, NewUniqueID(&g_MyAddr));
    if (!packet.lpData)
        return;
    packet.dwDataSize = packet.lpData->dwSize;
    SendMessageA(g_hHostWnd, WM_HOST_PACKET, 0, reinterpret_cast<LPARAM>(&packet));
    FreeDataBlock(packet.lpData);
}
