// Packets as the host keeps them, and what they say in words.
#include "host/packet.h"

#include <cstring>
#include <iterator>

#include "host/base/text.h"
#include "monitor/vcp_codes.h"

static const REQUESTKIND s_requests[] = {
    {HOST_NOTICE, "notice", 0},
    {HOST_SET_VCP, "set-vcp", 8},
    {HOST_SET_INPUT_LIST, "set-input-list", 4 + 4 * HOST_INPUT_COUNT},
    {HOST_SET_DIRECTLINK, "set-directlink", 8},
    {HOST_GET_VCP, "get-vcp", 4},
    {HOST_GET_MONITOR_COUNT, "get-count", 0},
    {HOST_GET_MONITOR_NAME, "get-name", 4},
    {HOST_GET_CAPABILITIES, "get-capabilities", 4},
    {HOST_GET_EDID, "get-edid", 4},
};

// Whether so many bytes can be read there: the message may be another program's, with any number for a pointer.
static bool IsReadable(const void *start, size_t size)
{
    const BYTE *at = static_cast<const BYTE *>(start);
    const BYTE *const end = at + size;
    while (at < end) {
        MEMORY_BASIC_INFORMATION region = {};
        if (!VirtualQuery(at, &region, sizeof region) || region.State != MEM_COMMIT ||
            (region.Protect & (PAGE_NOACCESS | PAGE_GUARD | PAGE_EXECUTE)))
            return false;
        at = static_cast<const BYTE *>(region.BaseAddress) + region.RegionSize;
    }
    return true;
}

const char *CopyPacket(const HOSTPACKET *source, PACKET *copy)
{
    *copy = {};
    if (!source)
        return "no header";
    if (!IsReadable(source, sizeof *source) ||
        (source->lpData && !IsReadable(source->lpData, sizeof source->lpData->dwSize)))
        return "a pointer to nothing of ours";
    copy->header = *source;
    copy->header.lpData = nullptr;
    if (!source->lpData)
        return "no data block";
    const DWORD size = source->lpData->dwSize;
    if (size != source->dwDataSize)
        return "the sizes of header and block disagree";
    if (size < sizeof(HOSTDATA))
        return "the block is shorter than its head";
    if (size > PACKET_DATA_LIMIT)
        return "the block is too large";
    if (!IsReadable(source->lpData, size))
        return "the block ends before its size";
    const BYTE *bytes = reinterpret_cast<const BYTE *>(source->lpData);
    copy->data.assign(bytes, bytes + size);
    return nullptr;
}

PACKET MakePacket(ENDPOINT source, ENDPOINT destination, WORD command, WORD code, DWORD request,
                  const std::vector<BYTE> &payload)
{
    PACKET packet = {};
    packet.header.src = source;
    packet.header.dst = destination;
    packet.header.wCommand = command;
    packet.header.dwDataSize = static_cast<DWORD>(sizeof(HOSTDATA) + payload.size());
    packet.data.resize(packet.header.dwDataSize);
    const HOSTDATA head = {packet.header.dwDataSize, request, code};
    memcpy(packet.data.data(), &head, sizeof head);
    if (!payload.empty())
        memcpy(packet.data.data() + sizeof head, payload.data(), payload.size());
    return packet;
}

HOSTDATA *PacketData(PACKET *packet)
{
    return reinterpret_cast<HOSTDATA *>(packet->data.data());
}

const HOSTDATA *PacketData(const PACKET *packet)
{
    return reinterpret_cast<const HOSTDATA *>(packet->data.data());
}

DWORD PayloadSize(const PACKET *packet)
{
    return packet->data.size() < sizeof(HOSTDATA) ? 0 : static_cast<DWORD>(packet->data.size() - sizeof(HOSTDATA));
}

DWORD PayloadDword(const PACKET *packet, DWORD offset)
{
    DWORD value = 0;
    if (PayloadSize(packet) >= sizeof value && offset <= PayloadSize(packet) - sizeof value)
        memcpy(&value, HostPayload(PacketData(packet)) + offset, sizeof value);
    return value;
}

WORD PayloadWord(const PACKET *packet, DWORD offset)
{
    WORD value = 0;
    if (PayloadSize(packet) >= sizeof value && offset <= PayloadSize(packet) - sizeof value)
        memcpy(&value, HostPayload(PacketData(packet)) + offset, sizeof value);
    return value;
}

void AppendDword(std::vector<BYTE> *bytes, DWORD value)
{
    AppendWord(bytes, LOWORD(value));
    AppendWord(bytes, HIWORD(value));
}

void AppendWord(std::vector<BYTE> *bytes, WORD value)
{
    bytes->push_back(LOBYTE(value));
    bytes->push_back(HIBYTE(value));
}

const REQUESTKIND *FindRequestKind(WORD command)
{
    for (const REQUESTKIND &kind : s_requests)
        if (kind.command == command)
            return &kind;
    return nullptr;
}

static std::string HexBytes(const PACKET *packet)
{
    std::string hex;
    const BYTE *payload = HostPayload(PacketData(packet));
    for (DWORD i = 0; i < PayloadSize(packet); i++)
        hex += Format("%02X", payload[i]);
    return hex;
}

static std::string TextBytes(const PACKET *packet)
{
    const char *text = reinterpret_cast<const char *>(HostPayload(PacketData(packet)));
    return Quoted(std::string_view(text, strnlen(text, PayloadSize(packet))));
}

static std::string CommonPart(const PACKET *packet)
{
    const REQUESTKIND *kind = FindRequestKind(packet->header.wCommand);
    return Format("command=%u name=%s id=%lu", packet->header.wCommand, kind ? kind->name : "unknown",
                  PacketData(packet)->dwRequestID);
}

static std::string FeaturePart(const PACKET *packet)
{
    const WORD code = PacketData(packet)->wCode;
    return Format(" code=0x%02X feature=%s", code, VcpShortName(code));
}

// A monitor index or value: signed, since -1 has a meaning.
static int SignedAt(const PACKET *packet, DWORD offset)
{
    return static_cast<int>(PayloadDword(packet, offset));
}

static std::string DescribeInputList(const PACKET *packet)
{
    std::string inputs;
    for (DWORD n = 0; n < HOST_INPUT_COUNT; n++)
        if (PayloadDword(packet, 4 + 4 * n))
            inputs += Format(inputs.empty() ? "%lu" : ",%lu", n);
    return Format(" monitor=%d inputs=%s", SignedAt(packet, 0), inputs.empty() ? "none" : inputs.c_str());
}

std::string DescribeRequest(const PACKET *packet)
{
    std::string text = CommonPart(packet);
    switch (packet->header.wCommand) {
    case HOST_NOTICE:
        return text + Format(" notice=%u", PacketData(packet)->wCode);
    case HOST_SET_VCP:
        return text + Format(" monitor=%d", SignedAt(packet, 0)) + FeaturePart(packet) +
               Format(" value=%lu", PayloadDword(packet, 4));
    case HOST_GET_VCP:
        return text + Format(" monitor=%d", SignedAt(packet, 0)) + FeaturePart(packet);
    case HOST_SET_INPUT_LIST:
        return text + DescribeInputList(packet);
    case HOST_SET_DIRECTLINK:
        return text + Format(" monitor=%d on=%lu", SignedAt(packet, 0), PayloadDword(packet, 4));
    case HOST_GET_MONITOR_COUNT:
        return text;
    case HOST_GET_MONITOR_NAME:
    case HOST_GET_CAPABILITIES:
    case HOST_GET_EDID:
        return text + Format(" monitor=%d", SignedAt(packet, 0));
    default:
        return text + " bytes=" + HexBytes(packet);
    }
}

std::string DescribeAnswer(const PACKET *packet)
{
    std::string text = CommonPart(packet);
    switch (packet->header.wCommand) {
    case HOST_GET_VCP:
        return text + FeaturePart(packet) + Format(" value=%d max=%d", SignedAt(packet, 0), SignedAt(packet, 4));
    case HOST_SET_VCP:
    case HOST_SET_INPUT_LIST:
    case HOST_SET_DIRECTLINK:
        return text + Format(" result=%d", SignedAt(packet, 0));
    case HOST_GET_MONITOR_COUNT:
        return text + Format(" count=%d", SignedAt(packet, 0));
    case HOST_GET_MONITOR_NAME:
    case HOST_GET_CAPABILITIES:
        return text + " text=" + TextBytes(packet);
    default:
        return text + " bytes=" + HexBytes(packet);
    }
}

std::string DescribeCommand(const PACKET *packet)
{
    const ENDPOINT &to = packet->header.dst;
    return Format("code=%u id=%lu to=%u.%u.%u flags=%u bytes=", PacketData(packet)->wCode,
                  PacketData(packet)->dwRequestID, to.wID, to.bClass, to.bSubClass, packet->header.wFlags) +
           HexBytes(packet);
}
