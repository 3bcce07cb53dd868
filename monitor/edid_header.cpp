// The comparison with the standard header and the listed models.
#include "monitor/edid_header.h"

#include <cstring>

const uint8_t g_EdidHeader[EDID_HEADER_SIZE] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};

static const char *const s_Models[] = {"NRV-PA1", "NRV-PA2", "NRV-PT2", "NRV-PA3", "NRV-PT3"};

constexpr uint32_t NAME_OFFSET = 113; // data of the fourth descriptor: the name, on these models

bool HasEdidHeader(const uint8_t *lpEdid)
{
    return memcmp(lpEdid, g_EdidHeader, sizeof g_EdidHeader) == 0;
}

static bool IsListedModel(const uint8_t *lpEdid)
{
    const char *name = reinterpret_cast<const char *>(lpEdid) + NAME_OFFSET;
    for (const char *model : s_Models)
        if (strstr(name, model))
            return true;
    return false;
}

bool NeedsEdidRepair(const uint8_t *lpEdid)
{
    return IsListedModel(lpEdid) && !HasEdidHeader(lpEdid);
}
