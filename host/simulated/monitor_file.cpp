// Reads the text file that describes a simulated monitor: its tables of keys, and what each key says.
#include "host/simulated/monitor_file.h"

#include <algorithm>

#include "host/base/ini_reader.h"
#include "host/base/text.h"
#include "kernel/link/host_sizes.h"

constexpr size_t MONITOR_FILE_LIMIT = 64 * 1024;

// What the lines read so far amount to.
struct DESCRIPTION {
    MONITORFILE *file;
    std::string edidHex;
    EDIDFACTS edid;
};

static DESCRIPTION *From(void *context)
{
    return static_cast<DESCRIPTION *>(context);
}

// ---- [monitor] ------------------------------------------------------------------------------------------------------

static bool TakeModel(void *context, const INILINE &line, std::string *reason)
{
    return ReadIniText(line.value, HOST_NAME_SIZE, "a model name", &From(context)->file->model, reason);
}

static bool TakeCapabilities(void *context, const INILINE &line, std::string *reason)
{
    return ReadIniCapabilities(line.value, &From(context)->file->capabilities, reason);
}

static bool ReadDelay(std::string_view value, int *delay, std::string *reason)
{
    unsigned number = 0;
    if (!ReadIniNumber(value, 0, MONITOR_DELAY_LIMIT, "a delay in milliseconds", &number, reason))
        return false;
    *delay = static_cast<int>(number);
    return true;
}

static bool TakeDelay(void *context, const INILINE &line, std::string *reason)
{
    return ReadDelay(line.value, &From(context)->file->delay, reason);
}

static bool TakeAnswers(void *context, const INILINE &line, std::string *reason)
{
    const bool no = EqualNoCase(line.value, "no");
    From(context)->file->silent = no;
    return no || EqualNoCase(line.value, "yes") || RefuseIni(reason, "the value is yes or no");
}

static bool TakeLabel(void *context, const INILINE &line, std::string *reason)
{
    const int number = line.keyEnd.size() == 1 ? line.keyEnd[0] - '0' : 0;
    if (number < 1 || number > MONITOR_BUTTON_COUNT)
        return RefuseIni(reason, Format("buttons are button1 to button%d", MONITOR_BUTTON_COUNT));
    if (Widen(line.value).size() > 15)
        return RefuseIni(reason, "a button's label is up to 15 characters");
    From(context)->file->labels[static_cast<size_t>(number - 1)] = line.value;
    return true;
}

static const INIKEY s_monitorKeys[] = {
    {"model", KEY_ONCE, TakeModel},   {"capabilities", KEY_REPEATS, TakeCapabilities},
    {"delay", KEY_ONCE, TakeDelay},   {"answers", KEY_ONCE, TakeAnswers},
    {"button*", KEY_ONCE, TakeLabel},
};

// ---- [edid] ---------------------------------------------------------------------------------------------------------

// In pieces, as a capability string may be.
static bool TakeData(void *context, const INILINE &line, std::string *)
{
    From(context)->edidHex += std::string(line.value) + " ";
    return true;
}

static bool TakeMaker(void *context, const INILINE &line, std::string *reason)
{
    const std::string_view maker = line.value;
    if (maker.size() != 3 || !std::all_of(maker.begin(), maker.end(), [](char c) { return c >= 'A' && c <= 'Z'; }))
        return RefuseIni(reason, "a maker is three capital letters");
    From(context)->edid.maker = maker;
    return true;
}

static bool TakeProduct(void *context, const INILINE &line, std::string *reason)
{
    return ReadIniNumber(line.value, 0, 0xFFFF, "a product number", &From(context)->edid.product, reason);
}

static bool TakeSerial(void *context, const INILINE &line, std::string *reason)
{
    return ReadIniNumber(line.value, 0, 0xFFFFFFFF, "a serial number", &From(context)->edid.serial, reason);
}

static bool TakeYear(void *context, const INILINE &line, std::string *reason)
{
    return ReadIniNumber(line.value, 1990, 2245, "a year", &From(context)->edid.year, reason);
}

// "38 x 30", in centimetres.
static bool TakeSize(void *context, const INILINE &line, std::string *reason)
{
    const std::vector<std::string> sides = SplitAt(line.value, 'x');
    EDIDFACTS *edid = &From(context)->edid;
    if (sides.size() != 2 || !ParseNumber(sides[0], 10, 255, &edid->widthCm) ||
        !ParseNumber(sides[1], 10, 255, &edid->heightCm) || !edid->widthCm || !edid->heightCm)
        return RefuseIni(reason, "a size is WIDTH x HEIGHT in centimetres, each from 1 to 255");
    return true;
}

static bool TakeName(void *context, const INILINE &line, std::string *reason)
{
    return ReadIniText(line.value, 13, "a name in the EDID", &From(context)->edid.name, reason);
}

static const INIKEY s_edidKeys[] = {
    {"data", KEY_REPEATS, TakeData},  {"maker", KEY_ONCE, TakeMaker}, {"product", KEY_ONCE, TakeProduct},
    {"serial", KEY_ONCE, TakeSerial}, {"year", KEY_ONCE, TakeYear},   {"size", KEY_ONCE, TakeSize},
    {"name", KEY_ONCE, TakeName},
};

// ---- [vcp] ----------------------------------------------------------------------------------------------------------

static const struct {
    const char *word;
    bool MONITORFEATURE::*flag;
} s_quirks[] = {
    {"fails", &MONITORFEATURE::fails},
    {"silent", &MONITORFEATURE::silent},
    {"read-only", &MONITORFEATURE::readOnly},
    {"momentary", &MONITORFEATURE::momentary},
    {"user-presets", &MONITORFEATURE::userPresets},
    {"refuses-above", &MONITORFEATURE::refusesAbove},
    {"button-register", &MONITORFEATURE::buttonRegister},
    {"hides-locked", &MONITORFEATURE::hidesLocked},
};

static bool ReadQuirk(const std::string &text, MONITORFEATURE *feature, std::string *reason)
{
    const std::vector<std::string> words = SplitWords(text);
    if (words.size() == 2 && words[0] == "delay")
        return ReadDelay(words[1], &feature->delay, reason);
    if (words.size() == 2 && words[0] == "eco") {
        unsigned value = 0;
        if (!ParseNumber(words[1], 10, feature->maximum, &value))
            return RefuseIni(reason, "the value in ECO mode is a number up to the maximum");
        feature->ecoValue = static_cast<int>(value);
        return true;
    }
    for (const auto &quirk : s_quirks) {
        if (words.size() == 1 && words[0] == quirk.word) {
            feature->*quirk.flag = true;
            return true;
        }
    }
    std::string known = "eco N, delay MS";
    for (const auto &quirk : s_quirks)
        known += std::string(", ") + quirk.word;
    return RefuseIni(reason, Format("'%s' is no quirk (%s)", text.c_str(), known.c_str()));
}

// "10 = 80 / 100, eco 45": the code, the value and the maximum, then quirks.
static bool TakeFeature(void *context, const INILINE &line, std::string *reason)
{
    MONITORFEATURE feature = {};
    feature.ecoValue = feature.delay = -1;
    unsigned code = 0;
    if (!ParseNumber(line.key, 16, 0xFF, &code))
        return RefuseIni(reason, Format("'%s' is no VCP code (two hexadecimal digits)", std::string(line.key).c_str()));
    feature.code = static_cast<BYTE>(code);

    const std::vector<std::string> parts = SplitAt(line.value, ',');
    const std::vector<std::string> numbers = SplitAt(parts.empty() ? "" : parts[0], '/');
    unsigned current = 0, maximum = 0;
    if (numbers.size() != 2 || !ParseNumber(numbers[0], 10, 0xFFFF, &current) ||
        !ParseNumber(numbers[1], 10, 0xFFFF, &maximum))
        return RefuseIni(reason, "a VCP code has VALUE / MAXIMUM, each a number up to 65535");
    if (current > maximum)
        return RefuseIni(reason, "the value is above the maximum");
    feature.value = static_cast<WORD>(current);
    feature.maximum = static_cast<WORD>(maximum);
    for (size_t i = 1; i < parts.size(); i++)
        if (!ReadQuirk(parts[i], &feature, reason))
            return false;
    From(context)->file->features.push_back(feature);
    return true;
}

static const INIKEY s_vcpKeys[] = {{"*", KEY_ONCE_0X, TakeFeature}};

// ---- The whole ------------------------------------------------------------------------------------------------------

static const struct {
    const char *title;
    INISECTION section;
} s_sections[] = {
    {"[monitor]", {s_monitorKeys, "'%s' is no key of [monitor] (model, capabilities, delay, answers, button1 ...)"}},
    {"[edid]", {s_edidKeys, "'%s' is no key of [edid] (data, or maker, product, serial, year, size, name)"}},
    {"[vcp]", {s_vcpKeys, "'%s' is no VCP code (two hexadecimal digits)"}},
};

static const INISECTION *FindSection(void *, std::string_view line, std::string *reason)
{
    for (const auto &entry : s_sections)
        if (EqualNoCase(line, entry.title))
            return &entry.section;
    RefuseIni(reason, Format("'%s' is no section ([monitor], [edid], [vcp])", std::string(line).c_str()));
    return nullptr;
}

// What only the whole file can show.
static bool Finish(DESCRIPTION *description, std::string *reason)
{
    MONITORFILE *file = description->file;
    if (file->model.empty())
        return RefuseIni(reason, "the file ends without a model in [monitor]");
    if (file->capabilities.empty())
        return RefuseIni(reason, "the file ends without capabilities in [monitor]");
    if (description->edidHex.empty()) {
        if (description->edid.name.empty())
            description->edid.name = file->model;
        file->edid = MakeEdid(description->edid);
        return true;
    }
    const char *fault = ReadEdidHex(description->edidHex, &file->edid);
    return !fault || RefuseIni(reason, fault);
}

bool ParseMonitorFile(const std::string &text, const std::string &path, MONITORFILE *file, std::string *error)
{
    *file = {};
    file->path = path;
    file->digest = static_cast<unsigned>(std::hash<std::string>()(text));
    DESCRIPTION description = {file, {}, {"NRV", 1, 1, 2003, 38, 30, {}}};
    std::vector<INIFAULT> faults = ReadIni(text, FindSection, 1, &description);
    std::string reason;
    if (faults.empty() && !Finish(&description, &reason)) // named by the last line
        faults.push_back({std::max(1, static_cast<int>(SplitLines(text).size())), reason});
    if (faults.empty())
        return true;
    *error = Format("%s:%d: ", path.c_str(), faults[0].line) + faults[0].reason;
    return false;
}

bool ReadMonitorFile(const std::string &path, MONITORFILE *file, std::string *error)
{
    std::string text;
    if (ReadWholeFile(path, MONITOR_FILE_LIMIT, &text, error))
        return ParseMonitorFile(text, path, file, error);
    *error = path + ": " + *error;
    return false;
}

// The *.ini of a folder in name order.
static std::vector<std::string> FolderFiles(const std::string &folder)
{
    std::vector<std::string> paths;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(Widen(folder + "\\*.ini").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return paths;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            paths.push_back(folder + "\\" + Narrow(found.cFileName));
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(paths.begin(), paths.end());
    return paths;
}

bool ReadMonitorFiles(const std::vector<std::string> &paths, std::vector<MONITORFILE> *files, std::string *error)
{
    for (const std::string &path : paths) {
        const DWORD attributes = GetFileAttributesW(Widen(path).c_str());
        const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
        const std::vector<std::string> names = isFolder ? FolderFiles(path) : std::vector<std::string>{path};
        if (names.empty()) {
            *error = path + ": the folder holds no monitor file (*.ini)";
            return false;
        }
        for (const std::string &name : names) {
            MONITORFILE file;
            if (!ReadMonitorFile(name, &file, error))
                return false;
            files->push_back(file);
        }
    }
    return true;
}
