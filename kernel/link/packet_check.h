// Which blocks of the host are read, and how much of them: plain functions of bytes, free of Windows, so that they can
// be compiled and fuzzed anywhere. Any thread.
#pragma once

#include <cstdint>

constexpr uint32_t PACKET_HEAD_SIZE = 10; // of a HOSTDATA

// A sound reply.
struct HOSTREPLY {
    uint32_t dwRequestID;  // below the limit that was given
    const void *lpPayload; // within the block, not aligned
    uint32_t cbPayload;    // as asked for
};

// Whether a block is one to look at: there, with a size word that agrees with cbBlock, the size by its header. It may
// still be too short for a head.
bool IsWholeBlock(const void *lpBlock, uint32_t cbBlock);

// Whether a block of that size has room for a head and cbPayload bytes behind it.
bool HoldsPayload(uint32_t cbBlock, uint32_t cbPayload);

// Reads a reply. cbPayload: what a reply to its command carries; the block may carry more. dwLimit: the first number
// that no request has. False, with *lpReply untouched, for a block that is not whole or too short, and for a number
// that cannot be.
bool ReadReply(HOSTREPLY *lpReply, const void *lpBlock, uint32_t cbBlock, uint32_t cbPayload, uint32_t dwLimit);

// Copies as much of a reply's payload as a buffer of cbBuffer bytes takes. Result: how much.
uint32_t CopyReply(void *lpBuffer, uint32_t cbBuffer, const HOSTREPLY *lpReply);
