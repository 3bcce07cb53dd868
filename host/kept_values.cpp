// What the plug-in has set in a monitor.
#include "host/kept_values.h"

#include <initializer_list>

#include "monitor/vcp_codes.h"

// All that is ever kept, in the order in which it is set.
static const struct {
    BYTE code;
    bool onlyHeldBack; // kept while it was held back, and no longer
} s_codes[] = {
    {VCP_ECO_MODE, false},  {VCP_COLOR_PRESET, false}, {VCP_BRIGHTNESS, false}, {VCP_CONTRAST, false},
    {VCP_RED_GAIN, false},  {VCP_GREEN_GAIN, false},   {VCP_BLUE_GAIN, false},  {VCP_BUTTON_LOCK, false},
    {VCP_TV_CHANNEL, true}, {VCP_INPUT_SOURCE, true},
};

// The plug-in counts on with the -1 of a read that has failed: what comes of it is no wish of the user's.
constexpr WORD NO_VALUE = 0xFF00;

static void Forget(KEPTVALUES *kept, std::initializer_list<BYTE> codes)
{
    for (const BYTE code : codes)
        kept->wishes[code].isThere = false;
}

// What a write to a code may change besides.
static void ForgetDependents(KEPTVALUES *kept, BYTE code)
{
    switch (code) {
    case VCP_ECO_MODE: // has a brightness of its own
    case VCP_RESTORE_LUMINANCE:
        Forget(kept, {VCP_BRIGHTNESS, VCP_CONTRAST});
        break;
    case VCP_COLOR_PRESET:
        Forget(kept, {VCP_RED_GAIN, VCP_GREEN_GAIN, VCP_BLUE_GAIN});
        break;
    case VCP_RESTORE_COLOR:
        Forget(kept, {VCP_COLOR_PRESET, VCP_RED_GAIN, VCP_GREEN_GAIN, VCP_BLUE_GAIN});
        break;
    case VCP_RESTORE_DEFAULTS:
    case VCP_INPUT_SOURCE: // has colours of its own in many monitors
        Forget(kept, {VCP_ECO_MODE, VCP_COLOR_PRESET, VCP_BRIGHTNESS, VCP_CONTRAST, VCP_RED_GAIN, VCP_GREEN_GAIN,
                      VCP_BLUE_GAIN});
        break;
    default:
        break;
    }
}

// A start restores zeros that it never read; a monitor is not given them later either.
static bool IsZeroOfAStart(BYTE code, WORD value, WRITEFATE fate)
{
    return value == 0 && fate != WRITE_DONE && code != VCP_BUTTON_LOCK;
}

void NoteWrite(KEPTVALUES *kept, BYTE code, WORD value, WRITEFATE fate)
{
    KEPTVALUES::WISH *wish = &kept->wishes[code];
    if (value >= NO_VALUE || IsZeroOfAStart(code, value, fate))
        return;
    if (!wish->isThere || wish->value != value)
        ForgetDependents(kept, code);
    for (const auto &one : s_codes)
        if (one.code == code)
            *wish = {!one.onlyHeldBack || fate == WRITE_HELD_BACK, value};
}

void NoteRead(KEPTVALUES *kept, BYTE code, WORD value)
{
    KEPTVALUES::WISH *wish = &kept->wishes[code];
    if (wish->isThere && wish->value != value) {
        wish->isThere = false;
        ForgetDependents(kept, code);
    }
}

std::vector<BYTE> KeptCodes(const KEPTVALUES &kept)
{
    std::vector<BYTE> codes;
    for (const auto &one : s_codes)
        if (kept.wishes[one.code].isThere)
            codes.push_back(one.code);
    return codes;
}

void NoteSettled(KEPTVALUES *kept, BYTE code)
{
    for (const auto &one : s_codes)
        if (one.code == code && one.onlyHeldBack)
            kept->wishes[code].isThere = false;
}
