// The walk over a capability string. Every pointer stays within [text, end): the text has no terminator of its own.
#include "monitor/capabilities.h"

#include "monitor/vcp_codes.h"

#include <cstring>

// Where a text occurs; null when it does not.
static char *Find(char *p, const char *end, const char *what)
{
    const size_t length = strlen(what);
    for (; static_cast<size_t>(end - p) >= length; ++p)
        if (memcmp(p, what, length) == 0)
            return p;
    return nullptr;
}

// The first of ")" and blank from p on; end when there is none.
static char *FindBreak(char *p, const char *end)
{
    while (p < end && *p != ')' && *p != ' ')
        ++p;
    return p;
}

static char *SkipBlanks(char *p, const char *end)
{
    while (p < end && *p == ' ')
        ++p;
    return p;
}

// Reads up to two hexadecimal digits (the text is in lower case). Leaves the value alone when there is none.
static char *ReadHex(char *p, const char *end, unsigned *value)
{
    unsigned read = 0;
    int digits = 0;
    for (; digits < 2 && p < end; ++digits, ++p) {
        if (*p >= '0' && *p <= '9')
            read = read * 16 + static_cast<unsigned>(*p - '0');
        else if (*p >= 'a' && *p <= 'f')
            read = read * 16 + static_cast<unsigned>(*p - 'a') + 10;
        else
            break;
    }
    if (digits > 0)
        *value = read;
    return p;
}

static void ReadVersion(MONITORENTRY *entry, char *text, char *end)
{
    static const char marker[] = "mccs_ver(";
    char *start = Find(text, end, marker);
    if (!start)
        return;
    start += strlen(marker);
    // From the second character on: a version has at least one.
    char *stop = start < end ? FindBreak(start + 1, end) : end;
    if (stop == end)
        return;
    size_t length = static_cast<size_t>(stop - start);
    if (length >= sizeof entry->szMccsVer)
        length = sizeof entry->szMccsVer - 1;
    memcpy(entry->szMccsVer, start, length);
    entry->szMccsVer[length] = '\0';
}

static void LowerCase(char *p, const char *end)
{
    for (; p < end; ++p)
        if (*p >= 'A' && *p <= 'Z')
            *p = static_cast<char>(*p - 'A' + 'a');
}

// Reads the list of values in the next parentheses after p, wherever they are: a code without a list of its own takes
// that of a later code. Leaves p on the blank behind the list (its ")" becomes one where none follows), or at the end.
static char *ReadValues(char *p, char *end, uint32_t *flags, unsigned *value)
{
    char *open = static_cast<char *>(memchr(p, '(', static_cast<size_t>(end - p)));
    if (!open)
        return p;
    for (p = open + 1;; p = FindBreak(p, end)) {
        p = SkipBlanks(p, end);
        if (p == end)
            return p;
        if (*p == ')') {
            if (p + 1 < end && p[1] == ' ')
                return p + 1;
            *p = ' ';
            return p;
        }
        const char *digits = p;
        p = ReadHex(p, end, value);
        if (p != digits && *value < VCP_VALUE_COUNT)
            flags[*value] = 1;
    }
}

static bool ReadVcpList(MONITORENTRY *entry, char *p, char *end)
{
    // One variable for codes and listed values: a preset list that ends with the value 0x60 starts an input list, too.
    unsigned value = 0;
    for (;; p = FindBreak(p, end)) {
        if (p == end)
            return false;
        if (*p == ')')
            return true;
        p = SkipBlanks(p, end);
        const char *digits = p;
        p = ReadHex(p, end, &value);
        if (p == digits)
            continue;
        entry->bVcpCode[value] = 1;
        if (value == VCP_COLOR_PRESET)
            p = ReadValues(p, end, entry->bColorPreset, &value);
        if (value == VCP_INPUT_SOURCE)
            p = ReadValues(p, end, entry->bInputSource, &value);
    }
}

bool ParseCapabilityText(MONITORENTRY *lpEntry, char *lpText, size_t cbText)
{
    char *const end = lpText + cbText;
    ReadVersion(lpEntry, lpText, end); // before lower-casing: its marker counts in lower case only
    LowerCase(lpText, end);

    static const char marker[] = "vcp(";
    char *list = Find(lpText, end, marker);
    if (!list)
        return false;
    const bool complete = ReadVcpList(lpEntry, list + strlen(marker), end);
    for (int input = INPUT_TV; input <= INPUT_TV_LAST; ++input)
        lpEntry->bTuner |= lpEntry->bInputSource[input];
    return complete;
}
