// The load of a full profile store.
#include "bench/bench_session.h"
#include "bench/benchmarks.h"
#include "bench/measure.h"
#include "panel/profile_lists.h"
#include "profiles/profile_store.h"

#include <cstdio>
#include <stdexcept>

constexpr int ROUNDS = 15;
constexpr int CALLS = 1;

static std::vector<std::string> SectionNames()
{
    std::vector<std::string> names;
    for (int slot = 0; slot < SYS_PROFILE_COUNT; ++slot)
        names.push_back("Standard" + std::to_string(slot));
    for (int slot = 0; slot < APP_PROFILE_COUNT; ++slot)
        names.push_back("User" + std::to_string(slot));
    return names;
}

static void WriteFullStore(const std::vector<std::string> &sections)
{
    std::string file;
    for (const std::string &section : sections) {
        PROFILEENTRY entry = {"", 1, 70, 60, 80, 11, 72, 88, 100, "", ""};
        snprintf(entry.szName, sizeof entry.szName, "C:\\Program Files\\Some Vendor\\%s\\program.exe", section.c_str());
        snprintf(entry.szAlias, sizeof entry.szAlias, "Program of %s", section.c_str());
        char text[PROFILE_SECTION_TEXT_SIZE];
        FormatProfileText(&entry, text);
        file += "[" + section + "]\r\n" + text;
    }
    IniFolder::Write("profile.ini", file);
}

// What the load must ask of the system for each section: whether it is there, and its lines.
static void ReadBare(const std::vector<std::string> &sections, const std::string &path)
{
    char text[PROFILE_SECTION_TEXT_SIZE];
    for (const std::string &section : sections) {
        GetPrivateProfileStringA(section.c_str(), "name", "?", text, sizeof text, path.c_str());
        GetPrivateProfileSectionA(section.c_str(), text, sizeof text, path.c_str());
    }
}

static void ReadWhole(const std::string &path)
{
    static char buffer[256 * 1024];
    const HANDLE hFile =
        CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    DWORD read = 0;
    ReadFile(hFile, buffer, sizeof buffer, &read, nullptr);
    CloseHandle(hFile);
}

void BenchStore(REPORT *report)
{
    BENCHSESSION session;
    const std::vector<std::string> sections = SectionNames();
    const std::string path = IniFolder::Path("profile.ini");
    WriteFullStore(sections);
    LetFilesAge();

    // As at the start: with a window that has none of the page's lists.
    const auto load = [&] { LoadProfiles(session.host.Window(), "profile.ini"); };
    const COMPARISON result = Compare(ROUNDS, CALLS, load, [&] { ReadBare(sections, path); });
    if (g_nSysProfile != SYS_PROFILE_COUNT || g_nAppProfile != APP_PROFILE_COUNT)
        throw std::runtime_error("not all profiles were loaded");
    const double wholeUs = MedianUs(ROUNDS, 20, [&] { ReadWhole(path); });

    report->Add("load of 256 profiles", result.subject / 1000, "ms");
    report->Add("the same private-profile reads alone", result.base / 1000, "ms");
    report->Add("ratio", result.ratio, "x", 1.2);
    report->Add("one read of the whole file", wholeUs / 1000, "ms");
    report->Add("load against that read", result.subject / wholeUs, "x");
}
