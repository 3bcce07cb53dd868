// The registry below the sandbox's key and the INI files beside the program.
#include "stress/settings_image.h"

#include "support/ini_folder.h"

#include <sstream>

static const char *const s_Files[] = {"profile.ini", "ontimer.ini"};

// ---- Registry -----------------------------------------------------------------------------------------------------

static void TakeKey(HKEY root, const std::string &path, std::vector<REGISTRYVALUE> *values)
{
    HKEY key;
    if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    for (DWORD index = 0;; ++index) {
        char name[256];
        BYTE data[1024];
        DWORD nameLength = sizeof name, type = 0, size = sizeof data;
        if (RegEnumValueA(key, index, name, &nameLength, nullptr, &type, data, &size) != ERROR_SUCCESS)
            break;
        values->push_back({path, name, type, std::string(reinterpret_cast<char *>(data), size)});
    }
    for (DWORD index = 0;; ++index) {
        char name[256];
        if (RegEnumKeyA(key, index, name, sizeof name) != ERROR_SUCCESS)
            break;
        TakeKey(root, path.empty() ? name : path + "\\" + name, values);
    }
    RegCloseKey(key);
}

static void DeleteValues(const std::vector<REGISTRYVALUE> &values)
{
    for (const REGISTRYVALUE &value : values) {
        HKEY key;
        if (RegOpenKeyExA(HKEY_CURRENT_USER, value.path.c_str(), 0, KEY_WRITE, &key) != ERROR_SUCCESS)
            continue;
        RegDeleteValueA(key, value.name.c_str());
        RegCloseKey(key);
    }
}

static void PutValues(const std::vector<REGISTRYVALUE> &values)
{
    for (const REGISTRYVALUE &value : values) {
        HKEY key;
        if (RegCreateKeyA(HKEY_CURRENT_USER, value.path.c_str(), &key) != ERROR_SUCCESS)
            continue;
        RegSetValueExA(key, value.name.c_str(), 0, value.type, reinterpret_cast<const BYTE *>(value.data.data()),
                       static_cast<DWORD>(value.data.size()));
        RegCloseKey(key);
    }
}

// ---- INI files ----------------------------------------------------------------------------------------------------

// Rewriting a section may drop the blanks in front of its values.
static std::string WithoutBlanks(const std::string &text)
{
    const size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin);
}

// A section without keys is no section: that is how one is deleted.
static void AddFileParts(const std::string &file, const std::string &bytes, std::map<std::string, std::string> *parts)
{
    const bool byKey = file == "ontimer.ini";
    std::istringstream lines(bytes);
    std::string section;
    for (std::string line; std::getline(lines, line);) {
        while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
            line.pop_back();
        const size_t equals = line.find('=');
        if (!line.empty() && line[0] == '[')
            section = file + " " + line;
        else if (byKey && equals != std::string::npos)
            (*parts)[section + " " + line.substr(0, equals)] = WithoutBlanks(line.substr(equals + 1));
        else if (!line.empty())
            (*parts)[section] += line + "|";
    }
}

// ---- Images -------------------------------------------------------------------------------------------------------

SETTINGSIMAGE TakeSettings()
{
    SETTINGSIMAGE image;
    TakeKey(HKEY_CURRENT_USER, "", &image.values);
    for (const REGISTRYVALUE &value : image.values)
        image.parts[value.path + "\\" + value.name] = std::to_string(value.type) + ":" + value.data;
    for (const char *file : s_Files) {
        if (!IniFolder::Exists(file))
            continue;
        image.files[file] = IniFolder::Read(file);
        AddFileParts(file, image.files[file], &image.parts);
    }
    return image;
}

void PutSettings(const SETTINGSIMAGE &image)
{
    std::vector<REGISTRYVALUE> present;
    TakeKey(HKEY_CURRENT_USER, "", &present);
    DeleteValues(present);
    PutValues(image.values);
    for (const char *file : s_Files) {
        IniFolder::Remove(file + std::string(".lvkeep")); // left by a fault
        const auto known = image.files.find(file);
        if (known != image.files.end())
            IniFolder::Write(file, known->second);
        else
            IniFolder::Remove(file);
    }
}

static std::string PartOf(const SETTINGSIMAGE &image, const std::string &name)
{
    const auto part = image.parts.find(name);
    return part == image.parts.end() ? "(absent)" : part->second;
}

static std::string Visible(const std::string &text)
{
    std::string visible;
    for (const char c : text) {
        char code[8];
        snprintf(code, sizeof code, c >= ' ' && c < 127 ? "%c" : "\\x%02X", static_cast<unsigned char>(c));
        visible += code;
    }
    return visible.substr(0, 120);
}

static bool IsKnown(const std::vector<const SETTINGSIMAGE *> &states, const std::string &name, const std::string &value)
{
    for (const SETTINGSIMAGE *state : states)
        if (PartOf(*state, name) == value)
            return true;
    return false;
}

std::string FindForeignParts(const std::vector<const SETTINGSIMAGE *> &states, const SETTINGSIMAGE &now)
{
    std::map<std::string, std::string> all = now.parts;
    for (const SETTINGSIMAGE *state : states)
        all.insert(state->parts.begin(), state->parts.end());
    std::string foreign;
    for (const auto &[name, unused] : all) {
        const std::string value = PartOf(now, name);
        if (!IsKnown(states, name, value))
            foreign += (foreign.empty() ? "" : "; ") + Visible(name) + " is " + Visible(value);
    }
    return foreign;
}
