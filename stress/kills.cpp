// The process killed at random moments while it writes its settings, and started again: the settings must be whole, and
// the launcher reset as after any end that was not in order.
//
// The victim is a process of its own that works on this one's registry and INI files.
#include "launcher/launcher_settings.h"
#include "profiles/profile_store.h"
#include "settings/ini.h"
#include "settings/ini_copy.h"
#include "settings/registry.h"
#include "stress/child.h"
#include "stress/panel_hands.h"
#include "stress/parts.h"
#include "stress/scenario.h"
#include "support/replaced_imports.h"
#include "timer/reservation_store.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <random>
#include <sstream>

constexpr int KILLS = 50;
constexpr int KILLS_BRIEF = 3;
constexpr int PROGRAMS = 20;      // registered applications
constexpr int COLOR_PROFILES = 8; // colour profiles
constexpr DWORD LONGEST_START_MS = 30000;
constexpr int LONGEST_LIFE_MS = 400;
constexpr int EARLY_EVERY = 5; // every so many kills come while the victim is still starting

// ---- The victim ---------------------------------------------------------------------------------------------------

// Whatever a user or a timer may write, over and over.
static void WriteSettings(int round)
{
    const int slot = round % PROGRAMS;
    g_AppProfile[slot].nContrast = round % 100;
    WriteAppProfile(slot);
    g_SysProfile[round % COLOR_PROFILES].nContrast = round % 100;
    WriteSysProfile(round % COLOR_PROFILES);
    g_Reservation[round % RESERVATION_COUNT].nCrtNo = round % 2;
    SaveReservation(round % RESERVATION_COUNT);
    StoreReservationChannel(round % RESERVATION_COUNT, round % 2 ? "1" : "3");
    StepLauncherCount(round % 2);
    WriteLauncherValue(SETTING_BUTTON_MODE, BUTTON_LAUNCHER, 0, 1 + round % LAUNCHER_BUTTON_COUNT);
}

void RunVictim(DWORD owner)
{
    // Never stopped in order: it is killed.
    STAGE *stage = new STAGE(owner);
    LoadPlugin();
    stage->run.host.recording = false;
    stage->run.host.monitors = FullMonitors();
    printf("loaded\n");
    fflush(stdout);
    StartPlugin(stage);
    g_nReservation = LoadReservations(g_Reservation, "ontimer.ini");
    printf("started %d %d %ld %lu\n", g_nSysProfile, g_nAppProfile, g_nReservation, GetLauncherCount());
    fflush(stdout);
    for (int round = 0;; ++round) {
        WriteSettings(round);
        TakeRecordedCalls();
    }
}

// ---- The settings -------------------------------------------------------------------------------------------------

static void WriteProfiles()
{
    g_nSysProfile = g_nAppProfile = 0;
    BuildIniPath(g_szProfileIni, "profile.ini");
    for (int slot = 0; slot < COLOR_PROFILES; ++slot) {
        wsprintfA(g_SysProfile[slot].szName, "colours %d", slot);
        WriteSysProfile(slot);
    }
    for (int slot = 0; slot < PROGRAMS; ++slot) {
        wsprintfA(g_AppProfile[slot].szName, "C:\\programs\\program%d.exe", slot);
        WriteAppProfile(slot);
    }
}

static void WriteReservations()
{
    BuildIniPath(g_szOnTimerIni, "ontimer.ini");
    for (int n = 0; n < RESERVATION_COUNT; ++n) {
        RESERVATION *slot = &g_Reservation[n];
        wsprintfA(slot->szDate, "2099/06/%02d", n + 1);
        wsprintfA(slot->szEndDate, "2099/06/%02d", n + 1);
        lstrcpyA(slot->szTime, "20:00");
        lstrcpyA(slot->szEndTime, "21:00");
        lstrcpyA(slot->szLcd, "     NRV-PA1");
        lstrcpyA(slot->szChannel, "1");
        SaveReservation(n);
    }
}

// The lines of an INI file, each behind its section's name, in the order of names; those that may change without their
// values.
static std::vector<std::string> Skeleton(const std::string &bytes)
{
    static const char *const changing[] = {"contrast=", "crtno=", "channel="};
    std::vector<std::string> lines;
    std::istringstream file(bytes);
    std::string section;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        for (const char *key : changing)
            if (line.compare(0, strlen(key), key) == 0)
                line = key;
        if (!line.empty() && line[0] == '[')
            section = line;
        // Rewriting a section may drop the blanks in front of its values.
        line.erase(std::remove(line.begin(), line.end(), ' '), line.end());
        if (!line.empty())
            lines.push_back(section + " " + line);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// Says Bad for each line that is there too often, or not any more. Result: whether the file is whole.
static bool ExpectWhole(const char *file, const std::string &whole)
{
    const std::vector<std::string> shall = Skeleton(whole), are = Skeleton(IniFolder::Read(file));
    std::vector<std::string> missing, surplus;
    std::set_difference(shall.begin(), shall.end(), are.begin(), are.end(), std::back_inserter(missing));
    std::set_difference(are.begin(), are.end(), shall.begin(), shall.end(), std::back_inserter(surplus));
    if (missing.empty() && surplus.empty())
        return true;
    Bad(std::string(file) + " is not whole: " + std::to_string(missing.size()) + " lines missing" +
        (missing.empty() ? "" : ", such as '" + missing.front() + "'") + ", " + std::to_string(surplus.size()) +
        " too many" + (surplus.empty() ? "" : ", such as '" + surplus.front() + "'"));
    return false;
}

static void ExpectText(const char *name, const char *shall)
{
    Expect(TextAt(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name) == shall, std::string(name) + " has changed");
}

struct VICTIMS {
    std::string profiles, reservations; // the files as they were written, whole
    int kills = 0, early = 0, resets = 0;
};

// Reads what the victim says of its start. False when it does not get that far.
static bool ReadStart(ChildProcess *victim, VICTIMS *victims, bool resetDue)
{
    const auto line = victim->ReadLine(LONGEST_START_MS);
    int sys = 0, app = 0;
    long reservations = 0;
    unsigned long launchers = 0;
    if (!Expect(line && sscanf(line->c_str(), "started %d %d %ld %lu", &sys, &app, &reservations, &launchers) == 4,
                "does not start: " + line.value_or("silence")))
        return false;
    Expect(sys == COLOR_PROFILES && app == PROGRAMS && reservations == RESERVATION_COUNT,
           "finds " + std::to_string(sys) + " colour profiles, " + std::to_string(app) + " programs, " +
               std::to_string(reservations) + " reservations");
    if (resetDue) {
        Expect(launchers == 0, "the launcher is not reset: " + std::to_string(launchers));
        ++victims->resets;
    }
    return true;
}

static void StartAndKill(VICTIMS *victims, int milliseconds, bool early)
{
    const bool resetDue = DwordAt(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, "EndFlag") == 1u;
    ChildProcess victim("--victim " + std::to_string(GetCurrentProcessId()));
    const auto loaded = victim.ReadLine(LONGEST_START_MS);
    if (!Expect(loaded == "loaded", "the victim does not load: " + loaded.value_or("silence")))
        return;
    if (!early && !ReadStart(&victim, victims, resetDue))
        return;
    Sleep(static_cast<DWORD>(milliseconds));
    Expect(victim.Runs(), "the victim has ended by itself, with status " + std::to_string(victim.ExitCode()));
    victim.Kill();
    ++victims->kills;
    victims->early += early;
}

// Puts a file that was found broken back, so that each kill is judged by itself.
static void CheckSettings(const VICTIMS &victims)
{
    const struct {
        const char *file;
        const std::string &whole;
    } files[] = {{"profile.ini", victims.profiles}, {"ontimer.ini", victims.reservations}};
    for (const auto &file : files) {
        RepairIniFile(IniFolder::Path(file.file).c_str()); // as each start does
        if (!ExpectWhole(file.file, file.whole))
            IniFolder::Write(file.file, file.whole);
    }
    ExpectText("exe_0_1", "editor.exe");
    ExpectText("exe_0_1_Path", "C:\\editor.exe");
}

void RunKills(const WORKOPTIONS &options)
{
    const RegistrySandbox registry;
    const IniFolder ini;
    WriteMonitorFiles();
    PutText(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, "exe_0_1", "editor.exe");
    PutText(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, "exe_0_1_Path", "C:\\editor.exe");
    WriteProfiles();
    WriteReservations();
    VICTIMS victims = {IniFolder::Read("profile.ini"), IniFolder::Read("ontimer.ini")};
    const int kills = options.brief ? KILLS_BRIEF : KILLS;
    std::minstd_rand random(2006);
    for (int kill = 0; kill < kills; ++kill) {
        Step("kill " + std::to_string(kill));
        StartAndKill(&victims, static_cast<int>(random() % LONGEST_LIFE_MS), kill % EARLY_EVERY == EARLY_EVERY - 1);
        CheckSettings(victims);
    }
    Figure(std::to_string(victims.kills) + " kills, " + std::to_string(victims.early) + " of them during the start; " +
           std::to_string(victims.resets) + " resets of the launcher seen");
}
