// Bounded reading of the host's blocks.
#include "kernel/link/packet_check.h"

#include <cstring>

constexpr uint32_t ID_OFFSET = 4;

static uint32_t ReadWord(const void *lpBlock, uint32_t offset)
{
    uint32_t word;
    memcpy(&word, static_cast<const uint8_t *>(lpBlock) + offset, sizeof word);
    return word;
}

bool HoldsPayload(uint32_t cbBlock, uint32_t cbPayload)
{
    return cbBlock >= PACKET_HEAD_SIZE && cbBlock - PACKET_HEAD_SIZE >= cbPayload;
}

bool IsWholeBlock(const void *lpBlock, uint32_t cbBlock)
{
    return lpBlock && cbBlock >= sizeof(uint32_t) && ReadWord(lpBlock, 0) == cbBlock;
}

bool ReadReply(HOSTREPLY *lpReply, const void *lpBlock, uint32_t cbBlock, uint32_t cbPayload, uint32_t dwLimit)
{
    if (!IsWholeBlock(lpBlock, cbBlock) || !HoldsPayload(cbBlock, cbPayload))
        return false;
    const uint32_t id = ReadWord(lpBlock, ID_OFFSET);
    if (id >= dwLimit)
        return false;
    *lpReply = {id, static_cast<const uint8_t *>(lpBlock) + PACKET_HEAD_SIZE, cbPayload};
    return true;
}

uint32_t CopyReply(void *lpBuffer, uint32_t cbBuffer, const HOSTREPLY *lpReply)
{
    const uint32_t size = lpReply->cbPayload < cbBuffer ? lpReply->cbPayload : cbBuffer;
    memcpy(lpBuffer, lpReply->lpPayload, size);
    return size;
}
