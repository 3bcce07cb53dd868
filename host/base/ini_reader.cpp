// Reads the INI files that describe monitors.
#include "host/base/ini_reader.h"

#include <algorithm>
#include <set>

#include "host/base/text.h"
#include "kernel/link/host_sizes.h"

// What the lines read so far amount to.
struct INISTATE {
    INITITLE title;
    void *context;
    const INISECTION *section;                                 // null: none yet, or
    bool isSkipped;                                            // the title was wrong, which was said
    std::set<std::pair<const INISECTION *, std::string>> seen; // keys that may not stand again
};

// ---- Keys -----------------------------------------------------------------------------------------------------------

// Whether a key is the one of this name; what its '*' stands for goes to *keyEnd.
static bool IsKey(std::string_view key, std::string_view name, std::string_view *keyEnd)
{
    if (name.back() != '*')
        return EqualNoCase(key, name);
    name.remove_suffix(1);
    if (!EqualNoCase(key.substr(0, name.size()), name))
        return false;
    const std::string_view end = key.substr(name.size());
    *keyEnd = name.empty() || name.back() != ' ' ? end : Trim(end);
    return keyEnd->find(' ') == std::string_view::npos;
}

static std::string LowerCase(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(tolower(c)); });
    return lower;
}

// Returns false for a key that has stood in the file before.
static bool NoteKey(INISTATE *state, const INIKEY &kind, const INILINE &line)
{
    unsigned number = 0;
    if (kind.use == KEY_REPEATS)
        return true;
    const bool isNumber = kind.use == KEY_ONCE_0X && ParseNumber(line.keyEnd, 16, 0xFFFF, &number);
    return state->seen.insert({state->section, isNumber ? Format("%x", number) : LowerCase(line.key)}).second;
}

static bool ReadKey(INISTATE *state, INILINE line, std::string *reason)
{
    for (const INIKEY &kind : state->section->keys) {
        if (!IsKey(line.key, kind.name, &line.keyEnd))
            continue;
        if (!NoteKey(state, kind, line))
            return RefuseIni(reason, Format("'%s' stands here a second time", std::string(line.key).c_str()));
        return kind.take(state->context, line, reason);
    }
    std::string text = state->section->unknown;
    return RefuseIni(reason, text.replace(text.find("%s"), 2, line.key));
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

static bool ReadTitle(INISTATE *state, std::string_view line, std::string *reason)
{
    state->section = state->title(state->context, line, reason);
    state->isSkipped = !state->section;
    return state->section != nullptr;
}

static bool ReadLine(INISTATE *state, std::string_view line, std::string *reason)
{
    line = Trim(line);
    if (line.empty() || line[0] == ';' || line[0] == '#')
        return true;
    if (line[0] == '[')
        return ReadTitle(state, line, reason);
    if (state->isSkipped)
        return true;
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return RefuseIni(reason, "a line is a [section], KEY = VALUE, or a comment after ';'");
    if (!state->section)
        return RefuseIni(reason, "a key stands before the first [section]");
    std::string key(Trim(line.substr(0, equals)));
    std::replace(key.begin(), key.end(), '\t', ' ');
    return ReadKey(state, {key, Trim(line.substr(equals + 1)), {}}, reason);
}

std::vector<INIFAULT> ReadIni(std::string_view text, INITITLE title, size_t faultLimit, void *context)
{
    INISTATE state = {title, context, nullptr, false, {}};
    std::vector<INIFAULT> faults;
    int number = 0;
    for (const std::string_view line : SplitLines(text)) {
        std::string reason;
        number++;
        if (!ReadLine(&state, line, &reason) && faults.size() < faultLimit)
            faults.push_back({number, reason});
    }
    return faults;
}

// ---- Values ---------------------------------------------------------------------------------------------------------

bool RefuseIni(std::string *reason, const std::string &text)
{
    *reason = text;
    return false;
}

static bool IsPrintableAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

bool ReadIniText(std::string_view value, size_t limit, const char *what, std::string *text, std::string *reason)
{
    if (value.empty() || value.size() > limit || !IsPrintableAscii(value))
        return RefuseIni(reason,
                         Format("%s is 1 to %u printable ASCII characters", what, static_cast<unsigned>(limit)));
    *text = value;
    return true;
}

bool ReadIniNumber(std::string_view value, unsigned low, unsigned high, const char *what, unsigned *number,
                   std::string *reason)
{
    unsigned read = 0;
    if (!ParseNumber(value, 10, high, &read) || read < low)
        return RefuseIni(reason, Format("%s is a number from %u to %u", what, low, high));
    *number = read;
    return true;
}

bool ReadIniCapabilities(std::string_view value, std::string *capabilities, std::string *reason)
{
    if (!IsPrintableAscii(value))
        return RefuseIni(reason, "a capability string is printable ASCII text");
    if (capabilities->size() + value.size() >= HOST_CAPABILITIES_SIZE)
        return RefuseIni(reason,
                         Format("the capability string is longer than %u characters", HOST_CAPABILITIES_SIZE - 1));
    *capabilities += value;
    return true;
}
