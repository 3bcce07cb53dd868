// Bounded reading and writing of the server's messages.
#include "server/server_datagram.h"

#include <cstring>

static size_t Smaller(size_t a, size_t b)
{
    return a < b ? a : b;
}

bool ParseServerCommand(SERVERCMD *lpCommand, const void *lpData, size_t cbData)
{
    if (cbData < SERVER_COMMAND_LENGTH)
        return false;
    *lpCommand = SERVERCMD{};
    memcpy(lpCommand, lpData, SERVER_COMMAND_LENGTH);
    return true;
}

bool IsForClient(const SERVERCMD *lpCommand, uint32_t dwMyAddr)
{
    return lpCommand->dwTargetAddr == 0 || lpCommand->dwTargetAddr == dwMyAddr;
}

void ParseServerMessage(char *lpszText, size_t cbText, const void *lpData, size_t cbData)
{
    lpszText[0] = '\0';
    if (cbData <= SERVER_MESSAGE_OFFSET)
        return;
    const char *text = static_cast<const char *>(lpData) + SERVER_MESSAGE_OFFSET;
    const size_t available = Smaller(cbData - SERVER_MESSAGE_OFFSET, cbText - 1);
    const void *end = memchr(text, '\0', available);
    const size_t length = end ? static_cast<size_t>(static_cast<const char *>(end) - text) : available;
    memcpy(lpszText, text, length);
    lpszText[length] = '\0';
}

size_t ReadServerColors(SERVERCOLORS *lpColors, const void *lpAnswer, size_t cbAnswer)
{
    const size_t filled = Smaller(cbAnswer, sizeof *lpColors);
    memcpy(lpColors, lpAnswer, filled);
    return filled;
}

size_t BuildServerReply(void *lpBuffer, size_t cbBuffer, const SERVERREPLY *lpHeader, const void *lpData)
{
    const size_t length = lpData ? lpHeader->dwLength : 0;
    if (cbBuffer < sizeof *lpHeader || length > cbBuffer - sizeof *lpHeader)
        return 0;
    memcpy(lpBuffer, lpHeader, sizeof *lpHeader);
    if (lpData)
        memcpy(static_cast<uint8_t *>(lpBuffer) + sizeof *lpHeader, lpData, length);
    return sizeof *lpHeader + length;
}
