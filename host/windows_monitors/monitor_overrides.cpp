// Reads monitors.ini: its table of keys, and which sections fit a monitor.
#include "host/windows_monitors/monitor_overrides.h"

#include <algorithm>

#include "host/base/text.h"
#include "kernel/link/host_sizes.h"

constexpr size_t OVERRIDE_FILE_LIMIT = 256 * 1024;
constexpr size_t FAULT_LIMIT = 20; // more lines than this are not worth a message each

static OVERRIDEFILE *From(void *context)
{
    return static_cast<OVERRIDEFILE *>(context);
}

static MONITOROVERRIDE NoOverride()
{
    MONITOROVERRIDE content = {};
    content.maxima.fill(-1);
    content.manners.fill(-1);
    return content;
}

// ---- Keys -----------------------------------------------------------------------------------------------------------

// Of the section that is being read.
static MONITOROVERRIDE *Content(void *context)
{
    return &From(context)->sections.back().content;
}

static bool TakeModel(void *context, const INILINE &line, std::string *reason)
{
    return ReadIniText(line.value, HOST_NAME_SIZE, "a model name", &Content(context)->model, reason);
}

static bool TakeCapabilities(void *context, const INILINE &line, std::string *reason)
{
    if (line.value.empty())
        return RefuseIni(reason, "a capability string is printable ASCII text");
    return ReadIniCapabilities(line.value, &Content(context)->capabilities, reason);
}

static bool TakeMaximum(void *context, const INILINE &line, std::string *reason)
{
    unsigned code = 0, maximum = 0;
    if (!ParseNumber(line.keyEnd, 16, 0xFF, &code))
        return RefuseIni(reason, "maximum has a VCP code behind it: maximum 10 = 100");
    if (!ReadIniNumber(line.value, 1, 0xFFFF, "a maximum", &maximum, reason))
        return false;
    Content(context)->maxima[code] = static_cast<int>(maximum);
    return true;
}

static bool TakeNever(void *context, const INILINE &line, std::string *reason)
{
    std::vector<unsigned> codes;
    for (const std::string &word : SplitWords(line.value)) {
        unsigned code = 0;
        if (!ParseNumber(word, 16, 0xFF, &code))
            return RefuseIni(reason, "never has VCP codes: two hexadecimal digits each, with blanks between");
        codes.push_back(code);
    }
    if (codes.empty())
        return RefuseIni(reason, "never has no VCP code");
    for (const unsigned code : codes)
        Content(context)->never[code] = true;
    return true;
}

static const char *const s_manners[MANNER_COUNT] = {"write-pause", "read-pause", "settle-pause", "retry-pause",
                                                    "tries"};

static bool TakeManner(void *context, const INILINE &line, std::string *reason)
{
    unsigned number = 0;
    for (int manner = 0; manner < MANNER_COUNT; manner++) {
        if (!EqualNoCase(line.key, s_manners[manner]))
            continue;
        const bool isTries = manner == MANNER_TRIES;
        if (!ReadIniNumber(line.value, 1, isTries ? TRY_LIMIT : PAUSE_LIMIT,
                           isTries ? "a number of tries" : "a pause in ms", &number, reason))
            return false;
        Content(context)->manners[static_cast<size_t>(manner)] = static_cast<int>(number);
    }
    return true;
}

static bool TakeMakersCodes(void *context, const INILINE &line, std::string *reason)
{
    if (!EqualNoCase(line.value, "yes"))
        return RefuseIni(reason, "makers-codes is yes, or not there");
    Content(context)->takesMakersCodes = true;
    return true;
}

static const INIKEY s_keys[] = {
    {"model", KEY_REPEATS, TakeModel},
    {"capabilities", KEY_REPEATS, TakeCapabilities},
    {"maximum *", KEY_REPEATS, TakeMaximum},
    {"never", KEY_REPEATS, TakeNever},
    {"makers-codes", KEY_REPEATS, TakeMakersCodes},
    {s_manners[MANNER_WRITE_PAUSE], KEY_REPEATS, TakeManner},
    {s_manners[MANNER_READ_PAUSE], KEY_REPEATS, TakeManner},
    {s_manners[MANNER_SETTLE_PAUSE], KEY_REPEATS, TakeManner},
    {s_manners[MANNER_RETRY_PAUSE], KEY_REPEATS, TakeManner},
    {s_manners[MANNER_TRIES], KEY_REPEATS, TakeManner},
};
static const INISECTION s_section = {
    s_keys,
    "'%s' is no key (model, capabilities, maximum CODE, never, makers-codes, write-pause, read-pause, settle-pause, "
    "retry-pause, tries)"};

// ---- Titles ---------------------------------------------------------------------------------------------------------

static bool IsProduct(const std::string &word)
{
    unsigned number = 0;
    return word.size() == 7 && ParseNumber(word.substr(3), 16, 0xFFFF, &number) &&
           std::all_of(word.begin(), word.begin() + 3, [](char c) { return c >= 'A' && c <= 'Z'; });
}

// "[ABC1234]", "[ABC1234 SERIAL]" or "[model NAME]".
static const INISECTION *BeginSection(void *context, std::string_view line, std::string *reason)
{
    *reason = "a section's title ends with ]";
    if (line.back() != ']')
        return nullptr;
    const std::string_view title = Trim(line.substr(1, line.size() - 2));
    const size_t blank = title.find_first_of(" \t");
    const std::string word(title.substr(0, blank));
    const std::string rest(blank == std::string_view::npos ? "" : Trim(title.substr(blank)));
    OVERRIDESECTION section = {};
    *reason = "a section is [ABC1234] (maker and product as --list shows them), [ABC1234 SERIAL] or [model NAME]";
    if (EqualNoCase(word, "model") && !rest.empty())
        section.model = rest;
    else if (IsProduct(word))
        section.product = word, section.serial = rest;
    else
        return nullptr;
    section.content = NoOverride();
    section.content.titles = {"[" + std::string(title) + "]"};
    From(context)->sections.push_back(section);
    return &s_section;
}

OVERRIDEFILE ParseOverrides(const std::string &text)
{
    OVERRIDEFILE file;
    file.faults = ReadIni(text, BeginSection, FAULT_LIMIT, &file);
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
    for (size_t manner = 0; manner < MANNER_COUNT; manner++)
        if (from.manners[manner] >= 0)
            onto->manners[manner] = from.manners[manner];
    onto->takesMakersCodes = onto->takesMakersCodes || from.takesMakersCodes;
    onto->titles.insert(onto->titles.end(), from.titles.begin(), from.titles.end());
}

ACCESSMANNERS MannersFor(const MONITOROVERRIDE &override)
{
    ACCESSMANNERS manners;
    DWORD *const pauses[] = {&manners.pauseAfterWrite, &manners.pauseBeforeRead, &manners.pauseToSettle,
                             &manners.pauseOfRetry};
    for (size_t pause = 0; pause < ARRAYSIZE(pauses); pause++)
        if (override.manners[pause] >= 0)
            *pauses[pause] = static_cast<DWORD>(override.manners[pause]);
    if (override.manners[MANNER_TRIES] >= 0)
        manners.tries = override.manners[MANNER_TRIES];
    return manners;
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
