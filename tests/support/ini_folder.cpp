// INI files at their real places.
#include "support/ini_folder.h"

#include "support/text.h"

#include <windows.h>

static const char *const s_Names[] = {"profile.ini", "ontimer.ini", "Launcher.ini", "lvcap.ini"};
static std::string s_KeptCapabilities; // what was in "lvcap.ini" before: the host's own entries

static void DropCache(const std::string &path)
{
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.c_str());
}

static void RemoveAll()
{
    for (const std::string name : s_Names)
        for (const char *suffix : {"", ".lvkeep"}) // what an end in the middle of a write leaves
            IniFolder::Remove(name + suffix);
}

IniFolder::IniFolder(bool keep) : m_keep(keep)
{
    if (m_keep)
        return;
    s_KeptCapabilities = Read("lvcap.ini");
    RemoveAll();
}

IniFolder::~IniFolder()
{
    if (m_keep)
        return;
    RemoveAll();
    if (!s_KeptCapabilities.empty())
        Write("lvcap.ini", s_KeptCapabilities);
}

std::string IniFolder::Path(const std::string &name)
{
    char path[MAX_PATH] = "";
    if (name == "lvcap.ini") {
        GetSystemDirectoryA(path, sizeof path);
        return std::string(path) + "\\" + name;
    }
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string program = path;
    return program.substr(0, program.rfind('\\') + 1) + name;
}

void IniFolder::Write(const std::string &name, const std::string &bytes)
{
    WriteFileBytes(Path(name), bytes);
    DropCache(Path(name));
}

std::string IniFolder::Read(const std::string &name)
{
    return ReadFileBytes(Path(name));
}

void IniFolder::Remove(const std::string &name)
{
    const std::string path = Path(name);
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileA(path.c_str());
    DropCache(path);
}

bool IniFolder::Exists(const std::string &name)
{
    return GetFileAttributesA(Path(name).c_str()) != INVALID_FILE_ATTRIBUTES;
}
