// Reads monitors.ini line by line, so that a fault can be named by its line.
#include "host/windows_monitors/monitor_overrides.h"

#include <algorithm>

#include "host/base/text.h"
#include "kernel/link/host_protocol.h"

constexpr size_t OVERRIDE_FILE_LIMIT = 256 * 1024;
constexpr size_t FAULT_LIMIT = 20; // more lines than this are not worth a message each

// What the lines read so far amount to.
struct OVERRIDESTATE {
    OVERRIDEFILE *file;
    bool inSection; // false: before the first section, or in one whose title is wrong
    bool isSkipped; // the section's title is wrong, which was said
    std::string reason;
};

static bool Fail(OVERRIDESTATE *state, const std::string &reason)
{
    state->reason = reason;
    return false;
}

static MONITOROVERRIDE NoOverride()
{
    MONITOROVERRIDE content = {};
    content.maxima.fill(-1);
    return content;
}

static bool IsPrintableAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

static bool IsProduct(const std::string &word)
{
    unsigned number = 0;
    return word.size() == 7 && ParseNumber(word.substr(3), 16, 0xFFFF, &number) &&
           std::all_of(word.begin(), word.begin() + 3, [](char c) { return c >= 'A' && c <= 'Z'; });
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

// "[ABC1234]", "[ABC1234 SERIAL]" or "[model NAME]".
static bool ReadTitle(OVERRIDESTATE *state, std::string_view line)
{
    state->inSection = false;
    state->isSkipped = true;
    if (line.back() != ']')
        return Fail(state, "a section's title ends with ]");
    const std::string_view title = Trim(line.substr(1, line.size() - 2));
    const size_t blank = title.find_first_of(" \t");
    const std::string word(title.substr(0, blank));
    const std::string rest(blank == std::string_view::npos ? "" : Trim(title.substr(blank)));
    OVERRIDESECTION section = {};
    if (EqualNoCase(word, "model") && !rest.empty())
        section.model = rest;
    else if (IsProduct(word))
        section.product = word, section.serial = rest;
    else
        return Fail(state, "a section is [ABC1234] (maker and product as --list shows them), [ABC1234 SERIAL] or "
                           "[model NAME]");
    section.content = NoOverride();
    section.content.titles = {"[" + std::string(title) + "]"};
    state->file->sections.push_back(section);
    state->inSection = true;
    state->isSkipped = false;
    return true;
}

static bool ReadCodes(OVERRIDESTATE *state, std::string_view value, MONITOROVERRIDE *content)
{
    std::vector<unsigned> codes;
    for (const std::string &word : SplitWords(value)) {
        unsigned code = 0;
        if (!ParseNumber(word, 16, 0xFF, &code))
            return Fail(state, "never has VCP codes: two hexadecimal digits each, with blanks between");
        codes.push_back(code);
    }
    if (codes.empty())
        return Fail(state, "never has no VCP code");
    for (const unsigned code : codes)
        content->never[code] = true;
    return true;
}

static bool ReadMaximum(OVERRIDESTATE *state, std::string_view code, std::string_view value, MONITOROVERRIDE *content)
{
    unsigned index = 0, maximum = 0;
    if (!ParseNumber(code, 16, 0xFF, &index))
        return Fail(state, "maximum has a VCP code behind it: maximum 10 = 100");
    if (!ParseNumber(value, 10, 0xFFFF, &maximum) || maximum == 0)
        return Fail(state, "a maximum is a number from 1 to 65535");
    content->maxima[index] = static_cast<int>(maximum);
    return true;
}

static bool ReadModel(OVERRIDESTATE *state, std::string_view value, MONITOROVERRIDE *content)
{
    if (value.empty() || value.size() > HOST_NAME_SIZE || !IsPrintableAscii(value))
        return Fail(state, Format("a model name is 1 to %lu printable ASCII characters", HOST_NAME_SIZE));
    content->model = value;
    return true;
}

// A long string may be given in pieces: each further line of this key is appended.
static bool ReadCapabilities(OVERRIDESTATE *state, std::string_view value, MONITOROVERRIDE *content)
{
    if (value.empty() || !IsPrintableAscii(value))
        return Fail(state, "a capability string is printable ASCII text");
    if (content->capabilities.size() + value.size() >= HOST_CAPABILITIES_SIZE)
        return Fail(state, Format("the capability string is longer than %lu characters", HOST_CAPABILITIES_SIZE - 1));
    content->capabilities += value;
    return true;
}

static bool ReadKey(OVERRIDESTATE *state, std::string_view key, std::string_view value)
{
    MONITOROVERRIDE *content = &state->file->sections.back().content;
    const std::vector<std::string> words = SplitWords(key);
    if (words.size() == 2 && EqualNoCase(words[0], "maximum"))
        return ReadMaximum(state, words[1], value, content);
    if (EqualNoCase(key, "model"))
        return ReadModel(state, value, content);
    if (EqualNoCase(key, "capabilities"))
        return ReadCapabilities(state, value, content);
    if (EqualNoCase(key, "never"))
        return ReadCodes(state, value, content);
    return Fail(state, Format("'%s' is no key (model, capabilities, maximum CODE, never)", std::string(key).c_str()));
}

static bool ReadLine(OVERRIDESTATE *state, std::string_view line)
{
    line = Trim(line);
    if (line.empty() || line[0] == ';' || line[0] == '#')
        return true;
    if (line[0] == '[')
        return ReadTitle(state, line);
    if (state->isSkipped)
        return true;
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return Fail(state, "a line is a [section], KEY = VALUE, or a comment after ';'");
    if (!state->inSection)
        return Fail(state, "a key stands before the first [section]");
    return ReadKey(state, Trim(line.substr(0, equals)), Trim(line.substr(equals + 1)));
}

OVERRIDEFILE ParseOverrides(const std::string &text)
{
    OVERRIDEFILE file;
    OVERRIDESTATE state = {&file, false, false, {}};
    int number = 0;
    for (const std::string_view line : SplitLines(text)) {
        number++;
        if (!ReadLine(&state, line) && file.faults.size() < FAULT_LIMIT)
            file.faults.push_back({number, state.reason});
    }
    return file;
}

OVERRIDEFILE ReadOverrides(const std::string &path)
{
    std::string text, error;
    if (path.empty() || GetFileAttributesW(Widen(path).c_str()) == INVALID_FILE_ATTRIBUTES)
        return {};
    if (ReadWholeFile(path, OVERRIDE_FILE_LIMIT, &text, &error))
        return ParseOverrides(text);
    return {{}, {{0, error}}};
}

// ---- Sections that fit ----------------------------------------------------------------------------------------------

static bool IsFitting(const OVERRIDESECTION &section, const MONITORTITLES &titles)
{
    if (!section.model.empty())
        return std::any_of(titles.models.begin(), titles.models.end(),
                           [&](const std::string &model) { return EqualNoCase(section.model, model); });
    if (section.product != titles.product)
        return false;
    return section.serial.empty() ||
           std::find(titles.serials.begin(), titles.serials.end(), section.serial) != titles.serials.end();
}

static void Overlay(const MONITOROVERRIDE &from, MONITOROVERRIDE *onto)
{
    if (!from.model.empty())
        onto->model = from.model;
    if (!from.capabilities.empty())
        onto->capabilities = from.capabilities;
    for (size_t code = 0; code < 256; code++) {
        if (from.maxima[code] >= 0)
            onto->maxima[code] = from.maxima[code];
        onto->never[code] = onto->never[code] || from.never[code];
    }
    onto->titles.insert(onto->titles.end(), from.titles.begin(), from.titles.end());
}

// 0 to 2: how closely a section's title names its monitor.
static int Closeness(const OVERRIDESECTION &section)
{
    return !section.model.empty() ? 0 : section.serial.empty() ? 1 : 2;
}

MONITOROVERRIDE OverrideFor(const OVERRIDEFILE &file, const MONITORTITLES &titles)
{
    MONITOROVERRIDE all = NoOverride();
    for (int closeness = 0; closeness <= 2; closeness++)
        for (const OVERRIDESECTION &section : file.sections)
            if (Closeness(section) == closeness && IsFitting(section, titles))
                Overlay(section.content, &all);
    return all;
}
