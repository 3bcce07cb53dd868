// Reads the text file that describes a simulated monitor, line by line, so that a fault can be named by its line.
#include "host/simulated/monitor_file.h"

#include <algorithm>
#include <initializer_list>

#include "host/base/text.h"
#include "kernel/link/host_protocol.h"

constexpr size_t MONITOR_FILE_LIMIT = 64 * 1024;

// What the lines read so far amount to.
struct PARSESTATE {
    MONITORFILE *file;
    std::string section;
    std::string edidHex;
    EDIDFACTS edid;
    std::vector<std::string> seen; // "section/key" of every key so far
    std::string reason;            // why the present line is wrong
};

static bool Fail(PARSESTATE *state, const std::string &reason)
{
    state->reason = reason;
    return false;
}

static bool IsPrintableAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

// ---- Values ---------------------------------------------------------------------------------------------------------

static bool ReadAscii(PARSESTATE *state, std::string_view value, size_t limit, const char *what, std::string *text)
{
    if (value.empty() || value.size() > limit || !IsPrintableAscii(value))
        return Fail(state, Format("%s is 1 to %u printable ASCII characters", what, static_cast<unsigned>(limit)));
    *text = value;
    return true;
}

static bool ReadLimited(PARSESTATE *state, std::string_view value, unsigned low, unsigned high, const char *what,
                        unsigned *number)
{
    if (!ParseNumber(value, 10, high, number) || *number < low)
        return Fail(state, Format("%s is a number from %u to %u", what, low, high));
    return true;
}

static bool ReadDelay(PARSESTATE *state, std::string_view value, int *delay)
{
    unsigned number = 0;
    if (!ReadLimited(state, value, 0, MONITOR_DELAY_LIMIT, "a delay in milliseconds", &number))
        return false;
    *delay = static_cast<int>(number);
    return true;
}

static bool ReadYesNo(PARSESTATE *state, std::string_view value, bool *yes)
{
    *yes = EqualNoCase(value, "yes");
    return *yes || EqualNoCase(value, "no") || Fail(state, "the value is yes or no");
}

// ---- [monitor] ------------------------------------------------------------------------------------------------------

// A long string may be given in pieces: each further line of this key is appended.
static bool ReadCapabilities(PARSESTATE *state, std::string_view value)
{
    if (!IsPrintableAscii(value))
        return Fail(state, "a capability string is printable ASCII text");
    state->file->capabilities += value;
    if (state->file->capabilities.size() >= HOST_CAPABILITIES_SIZE)
        return Fail(state, Format("the capability string is longer than %lu characters", HOST_CAPABILITIES_SIZE - 1));
    return true;
}

static bool ReadLabel(PARSESTATE *state, std::string_view key, std::string_view value)
{
    const int number = key.size() == 7 ? key[6] - '0' : 0;
    if (number < 1 || number > MONITOR_BUTTON_COUNT)
        return Fail(state, Format("buttons are button1 to button%d", MONITOR_BUTTON_COUNT));
    if (Widen(value).size() > 15)
        return Fail(state, "a button's label is up to 15 characters");
    state->file->labels[static_cast<size_t>(number - 1)] = value;
    return true;
}

static bool ReadMonitorKey(PARSESTATE *state, std::string_view key, std::string_view value)
{
    MONITORFILE *file = state->file;
    if (EqualNoCase(key, "model"))
        return ReadAscii(state, value, HOST_NAME_SIZE, "a model name", &file->model);
    if (EqualNoCase(key, "capabilities"))
        return ReadCapabilities(state, value);
    if (EqualNoCase(key, "delay"))
        return ReadDelay(state, value, &file->delay);
    if (EqualNoCase(key, "answers")) {
        bool answers = true;
        const bool read = ReadYesNo(state, value, &answers);
        file->silent = !answers;
        return read;
    }
    if (EqualNoCase(key.substr(0, 6), "button"))
        return ReadLabel(state, key, value);
    return Fail(state, Format("'%s' is no key of [monitor] (model, capabilities, delay, answers, button1 ...)",
                              std::string(key).c_str()));
}

// ---- [edid] ---------------------------------------------------------------------------------------------------------

static bool ReadMaker(PARSESTATE *state, std::string_view value)
{
    const bool good =
        value.size() == 3 && std::all_of(value.begin(), value.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
    if (!good)
        return Fail(state, "a maker is three capital letters");
    state->edid.maker = value;
    return true;
}

// "38 x 30", in centimetres.
static bool ReadSize(PARSESTATE *state, std::string_view value)
{
    const std::vector<std::string> sides = SplitAt(value, 'x');
    if (sides.size() != 2 || !ParseNumber(sides[0], 10, 255, &state->edid.widthCm) ||
        !ParseNumber(sides[1], 10, 255, &state->edid.heightCm) || !state->edid.widthCm || !state->edid.heightCm)
        return Fail(state, "a size is WIDTH x HEIGHT in centimetres, each from 1 to 255");
    return true;
}

static bool ReadEdidKey(PARSESTATE *state, std::string_view key, std::string_view value)
{
    if (EqualNoCase(key, "data")) { // in pieces, as a capability string may be
        state->edidHex += std::string(value) + " ";
        return true;
    }
    if (EqualNoCase(key, "maker"))
        return ReadMaker(state, value);
    if (EqualNoCase(key, "product"))
        return ReadLimited(state, value, 0, 0xFFFF, "a product number", &state->edid.product);
    if (EqualNoCase(key, "serial"))
        return ReadLimited(state, value, 0, 0xFFFFFFFF, "a serial number", &state->edid.serial);
    if (EqualNoCase(key, "year"))
        return ReadLimited(state, value, 1990, 2245, "a year", &state->edid.year);
    if (EqualNoCase(key, "size"))
        return ReadSize(state, value);
    if (EqualNoCase(key, "name"))
        return ReadAscii(state, value, 13, "a name in the EDID", &state->edid.name);
    return Fail(state, Format("'%s' is no key of [edid] (data, or maker, product, serial, year, size, name)",
                              std::string(key).c_str()));
}

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

static bool ReadQuirk(PARSESTATE *state, const std::string &text, MONITORFEATURE *feature)
{
    const std::vector<std::string> words = SplitWords(text);
    if (words.size() == 2 && words[0] == "delay")
        return ReadDelay(state, words[1], &feature->delay);
    if (words.size() == 2 && words[0] == "eco") {
        unsigned value = 0;
        if (!ParseNumber(words[1], 10, feature->maximum, &value))
            return Fail(state, "the value in ECO mode is a number up to the maximum");
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
    return Fail(state, Format("'%s' is no quirk (%s)", text.c_str(), known.c_str()));
}

// "10 = 80 / 100, eco 45": the code, the value and the maximum, then quirks.
static bool ReadFeature(PARSESTATE *state, std::string_view key, std::string_view value)
{
    MONITORFEATURE feature = {};
    feature.ecoValue = feature.delay = -1;
    unsigned code = 0;
    if (!ParseNumber(key, 16, 0xFF, &code))
        return Fail(state, Format("'%s' is no VCP code (two hexadecimal digits)", std::string(key).c_str()));
    feature.code = static_cast<BYTE>(code);

    const std::vector<std::string> parts = SplitAt(value, ',');
    const std::vector<std::string> numbers = SplitAt(parts.empty() ? "" : parts[0], '/');
    unsigned current = 0, maximum = 0;
    if (numbers.size() != 2 || !ParseNumber(numbers[0], 10, 0xFFFF, &current) ||
        !ParseNumber(numbers[1], 10, 0xFFFF, &maximum))
        return Fail(state, "a VCP code has VALUE / MAXIMUM, each a number up to 65535");
    if (current > maximum)
        return Fail(state, "the value is above the maximum");
    feature.value = static_cast<WORD>(current);
    feature.maximum = static_cast<WORD>(maximum);
    for (size_t i = 1; i < parts.size(); i++)
        if (!ReadQuirk(state, parts[i], &feature))
            return false;
    state->file->features.push_back(feature);
    return true;
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

// A key stands once, but for those whose lines are appended to each other. VCP codes count by their number.
static bool NoteKey(PARSESTATE *state, std::string_view key)
{
    unsigned code = 0;
    std::string name(key);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(tolower(c)); });
    if (name == "capabilities" || name == "data")
        return true;
    if (state->section == "vcp" && ParseNumber(key, 16, 0xFF, &code))
        name = Format("%02x", code);
    name = state->section + "/" + name;
    if (std::find(state->seen.begin(), state->seen.end(), name) != state->seen.end())
        return Fail(state, Format("'%s' stands here a second time", std::string(key).c_str()));
    state->seen.push_back(name);
    return true;
}

static bool ReadSection(PARSESTATE *state, std::string_view line)
{
    for (const char *section : {"monitor", "edid", "vcp"}) {
        if (EqualNoCase(line, Format("[%s]", section))) {
            state->section = section;
            return true;
        }
    }
    return Fail(state, Format("'%s' is no section ([monitor], [edid], [vcp])", std::string(line).c_str()));
}

static bool ReadLine(PARSESTATE *state, std::string_view line)
{
    line = Trim(line);
    if (line.empty() || line[0] == ';' || line[0] == '#')
        return true;
    if (line[0] == '[')
        return ReadSection(state, line);
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return Fail(state, "a line is a [section], KEY = VALUE, or a comment after ';'");
    const std::string_view key = Trim(line.substr(0, equals)), value = Trim(line.substr(equals + 1));
    if (state->section.empty())
        return Fail(state, "a key stands before the first [section]");
    if (!NoteKey(state, key))
        return false;
    if (state->section == "monitor")
        return ReadMonitorKey(state, key, value);
    return state->section == "edid" ? ReadEdidKey(state, key, value) : ReadFeature(state, key, value);
}

// What only the whole file can show; named by its last line.
static bool Finish(PARSESTATE *state)
{
    MONITORFILE *file = state->file;
    if (file->model.empty())
        return Fail(state, "the file ends without a model in [monitor]");
    if (file->capabilities.empty())
        return Fail(state, "the file ends without capabilities in [monitor]");
    if (state->edidHex.empty()) {
        if (state->edid.name.empty())
            state->edid.name = file->model;
        file->edid = MakeEdid(state->edid);
        return true;
    }
    const char *reason = ReadEdidHex(state->edidHex, &file->edid);
    return !reason || Fail(state, reason);
}

bool ParseMonitorFile(const std::string &text, const std::string &path, MONITORFILE *file, std::string *error)
{
    *file = {};
    file->path = path;
    file->digest = std::hash<std::string>()(text);
    PARSESTATE state = {file, {}, {}, {"NRV", 1, 1, 2003, 38, 30, {}}, {}, {}};
    int number = 0;
    bool good = true;
    for (const std::string_view line : SplitLines(text)) {
        number++;
        good = ReadLine(&state, line);
        if (!good)
            break;
    }
    if (good && Finish(&state))
        return true;
    *error = Format("%s:%d: %s", path.c_str(), number ? number : 1, state.reason.c_str());
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
