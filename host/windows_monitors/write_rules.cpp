// Which writes go to a real monitor.
#include "host/windows_monitors/write_rules.h"

#include <algorithm>

#include "monitor/vcp_codes.h"

constexpr WORD FAILED_READ = 0xFFFF;

// What holds for writes of a code.
enum : unsigned {
    RULE_MAXIMUM = 1, // continuous: from 0 to the maximum that a read gives
    RULE_LISTED = 2,  // only the values that the capability string lists, if it lists any
    RULE_REPEATS = 4, // the same value again changes nothing
    RULE_SEEN = 8,    // 0 only after it was read in this run
    RULE_RESETS = 16, // changes other values, too
};

// Codes that are not here are sent as they come: what is done twice may be meant twice, as a lock that a monitor has
// forgotten, or a button's register that fills by itself.
static const struct {
    BYTE code;
    unsigned rules;
} s_rules[] = {
    {VCP_RESTORE_DEFAULTS, RULE_RESETS},
    {VCP_RESTORE_LUMINANCE, RULE_RESETS},
    {VCP_RESTORE_COLOR, RULE_RESETS},
    {VCP_BRIGHTNESS, RULE_MAXIMUM | RULE_REPEATS | RULE_SEEN},
    {VCP_CONTRAST, RULE_MAXIMUM | RULE_REPEATS | RULE_SEEN},
    {VCP_COLOR_PRESET, RULE_LISTED | RULE_REPEATS | RULE_SEEN | RULE_RESETS},
    {VCP_RED_GAIN, RULE_MAXIMUM | RULE_REPEATS | RULE_SEEN},
    {VCP_GREEN_GAIN, RULE_MAXIMUM | RULE_REPEATS | RULE_SEEN},
    {VCP_BLUE_GAIN, RULE_MAXIMUM | RULE_REPEATS | RULE_SEEN},
    {VCP_AUTO_SETUP, RULE_RESETS},
    {VCP_INPUT_SOURCE, RULE_LISTED | RULE_RESETS},
    {VCP_POWER_MODE, RULE_LISTED | RULE_RESETS},
    {VCP_ECO_MODE, RULE_REPEATS | RULE_SEEN | RULE_RESETS},
};

static unsigned RulesOf(BYTE code)
{
    for (const auto &rule : s_rules)
        if (rule.code == code)
            return rule.rules;
    return 0;
}

MONITORKNOWLEDGE NoKnowledge()
{
    MONITORKNOWLEDGE known = {};
    known.ownersMaxima.fill(-1);
    known.codes.fill({false, -1, -1, 0});
    return known;
}

static bool IsUnlisted(const MONITORKNOWLEDGE &known, BYTE code, WORD value)
{
    const CAPABILITYCODE *listed = FindCapabilityCode(known.listed, code);
    return listed && !listed->values.empty() &&
           std::find(listed->values.begin(), listed->values.end(), value) == listed->values.end();
}

WRITEVERDICT JudgeWrite(const MONITORKNOWLEDGE &known, BYTE code, WORD value, DWORD now)
{
    const unsigned rules = RulesOf(code);
    const MONITORKNOWLEDGE::CODE &one = known.codes[code];
    const int maximum = known.ownersMaxima[code] >= 0 ? known.ownersMaxima[code] : one.maximum;
    if (value == FAILED_READ)
        return REFUSED_FAILED_READ;
    if (code >= VCP_MAKERS_OWN && !known.takesMakersCodes)
        return REFUSED_MAKERS_CODE;
    if ((rules & RULE_LISTED) && IsUnlisted(known, code, value))
        return REFUSED_UNLISTED_VALUE;
    if ((rules & RULE_MAXIMUM) && maximum > 0 && value > maximum)
        return REFUSED_ABOVE_MAXIMUM;
    if ((rules & RULE_SEEN) && value == 0 && !one.wasRead)
        return REFUSED_UNREAD_ZERO;
    if (!(rules & RULE_REPEATS) || one.value != value)
        return WRITE_SEND;
    return now - one.valueTick < KNOWN_TIME ? WRITE_SKIP : WRITE_LOOK;
}

const char *RefusalText(WRITEVERDICT verdict)
{
    switch (verdict) {
    case REFUSED_FAILED_READ:
        return "65535 is what a failed read leaves behind";
    case REFUSED_MAKERS_CODE:
        return "a code that each maker gives a meaning of its own";
    case REFUSED_UNLISTED_VALUE:
        return "the monitor does not list the value";
    case REFUSED_ABOVE_MAXIMUM:
        return "above the monitor's maximum";
    case REFUSED_UNREAD_ZERO:
        return "0 before the value was read in this run";
    default:
        return "";
    }
}

void LearnRead(MONITORKNOWLEDGE *known, BYTE code, WORD value, WORD maximum, DWORD now)
{
    known->codes[code] = {true, maximum, value, now};
}

void LearnWrite(MONITORKNOWLEDGE *known, BYTE code, WORD value, bool done, DWORD now)
{
    if (RulesOf(code) & RULE_RESETS)
        ForgetValues(known);
    known->codes[code].value = done ? value : -1;
    known->codes[code].valueTick = now;
}

void ForgetValues(MONITORKNOWLEDGE *known)
{
    for (MONITORKNOWLEDGE::CODE &code : known->codes)
        code.value = -1;
}
