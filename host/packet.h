// Packets as the host keeps them: copied whole and bounded, since the sender frees its own when the message returns.
#pragma once

#include <string>
#include <vector>

#include "kernel/link/host_protocol.h"

// No block of either direction is larger; what claims to be is malformed.
constexpr DWORD PACKET_DATA_LIMIT = 4096;

// A header with its own copy of the data block. header.lpData is null; PacketData gives the block.
struct PACKET {
    HOSTPACKET header;
    std::vector<BYTE> data; // the whole block: its 10 bytes of head and the payload
};

// Copies header and block. Returns null when all went well, else the reason why the packet is malformed (pointers to
// nothing, sizes that disagree, a block without its head or beyond PACKET_DATA_LIMIT); what could be read of the header
// is copied.
const char *CopyPacket(const HOSTPACKET *source, PACKET *copy);

// Makes a packet: a zeroed header with these fields and a block with this code, request number and payload.
PACKET MakePacket(ENDPOINT source, ENDPOINT destination, WORD command, WORD code, DWORD request,
                  const std::vector<BYTE> &payload);

// The block's head. The packet must have one (every packet of CopyPacket and MakePacket that succeeded has).
HOSTDATA *PacketData(PACKET *packet);
const HOSTDATA *PacketData(const PACKET *packet);

// Length of the payload in bytes.
DWORD PayloadSize(const PACKET *packet);

// The 32-bit or 16-bit word at a payload offset; 0 when it does not lie wholly within the payload.
DWORD PayloadDword(const PACKET *packet, DWORD offset);
WORD PayloadWord(const PACKET *packet, DWORD offset);

// Appends a word in little-endian order.
void AppendDword(std::vector<BYTE> *bytes, DWORD value);
void AppendWord(std::vector<BYTE> *bytes, WORD value);

// A request or notice of the plug-in: its short name ("get-vcp"; "unknown" for an unknown command) and, for requests,
// the payload that it must have.
struct REQUESTKIND {
    WORD command;
    const char *name;
    DWORD payload;
};
const REQUESTKIND *FindRequestKind(WORD command); // null for an unknown command

// The packet's content as name=value pairs for the log, by kind.
std::string DescribeRequest(const PACKET *packet);
std::string DescribeAnswer(const PACKET *packet);  // answer of the host to a request
std::string DescribeCommand(const PACKET *packet); // command of the host, or the plug-in's reply to one
