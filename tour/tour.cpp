// The headless tour: a table of steps, each of which shows one thing that a user would see or do.
#include "tour/tour.h"

#include "host/base/capability_text.h"
#include "host/base/console.h"
#include "host/base/program_path.h"
#include "host/base/text.h"
#include "host/simulated/monitor_window.h"
#include "monitor/vcp_codes.h"
#include "tour/tour_clock.h"
#include "tour/tour_hands.h"
#include "tour/tour_monitors.h"
#include "tour/tour_panel.h"
#include "tour/tour_settings.h"
#include "tour/tour_steps.h"

#include <initializer_list>

constexpr DWORD PICTURE_PATIENCE = 10000; // ms to wait for a picture

STEPRESULT FailStep(TOUR *tour, const std::string &reason)
{
    tour->reason = reason;
    return STEP_FAILED;
}

STEPRESULT SkipStep(TOUR *tour, const std::string &reason)
{
    tour->reason = reason;
    return STEP_SKIPPED;
}

// ---- Start-up -------------------------------------------------------------------------------------------------------

static STEPRESULT StepStartUp(TOUR *tour)
{
    HOSTAPP *app = tour->app;
    while (!HasNotice(&app->plugin.router, HOST_NOTICE_STARTED)) {
        if (MillisecondsSincePacket(&app->plugin.router) > START_PATIENCE)
            return FailStep(tour, HasNotice(&app->plugin.router, HOST_NOTICE_STARTING)
                                      ? "the plug-in began to look for monitors and never reported that it found one"
                                      : "the plug-in never began to look for monitors");
        Sleep(TOUR_POLL_TIME);
    }
    const DWORD started = GetTickCount();
    while (!IsLinkQuiet(&app->plugin.router, QUIET_TIME) && GetTickCount() - started < START_PATIENCE)
        Sleep(TOUR_POLL_TIME);
    PLUGINTEXTS texts;
    CallOnWindow(&app->window, [&] { texts = GetPluginTexts(&app->plugin.library); });
    tour->seen = "plug-in " + Narrow(texts.title) + ", version " + Narrow(texts.version);
    ConsoleLine("  " + tour->seen);
    return STEP_DONE;
}

// ---- The table of monitors ------------------------------------------------------------------------------------------

static std::string NumberList(const std::vector<BYTE> &values)
{
    std::string text;
    for (const BYTE value : values)
        text += Format(text.empty() ? "%u" : " %u", value);
    return text.empty() ? "-" : text;
}

static std::string PresetList(const WIREMONITOR &monitor)
{
    const std::vector<CAPABILITYCODE> codes = CapabilityCodes(monitor.capabilities);
    const CAPABILITYCODE *presets = FindCapabilityCode(codes, VCP_COLOR_PRESET);
    return presets ? NumberList(presets->values) : "-";
}

static std::string InputList(const WIREMONITOR &monitor)
{
    std::vector<BYTE> inputs;
    for (size_t n = 0; n < monitor.inputs.size(); n++)
        if (monitor.inputs[n])
            inputs.push_back(static_cast<BYTE>(n));
    return NumberList(inputs);
}

static std::string ReadingList(const WIREMONITOR &monitor)
{
    static const struct {
        BYTE code;
        bool showsMaximum;
    } shown[] = {{VCP_ECO_MODE, false}, {VCP_BRIGHTNESS, true}, {VCP_CONTRAST, true},  {VCP_COLOR_PRESET, false},
                 {VCP_RED_GAIN, true},  {VCP_GREEN_GAIN, true}, {VCP_BLUE_GAIN, true}, {VCP_BUTTON_LOCK, false}};
    std::string text;
    for (const auto &entry : shown) {
        const WIREMONITOR::READING &reading = monitor.readings[entry.code];
        if (!reading.done)
            continue;
        text += Format("%s%s ", text.empty() ? "" : ", ", VcpShortName(entry.code));
        if (reading.value == -1)
            text += "none";
        else
            text += Format(entry.showsMaximum ? "%d of %d" : "%d", reading.value, reading.maximum);
    }
    return text;
}

static STEPRESULT StepTable(TOUR *tour)
{
    const std::vector<WIREMONITOR> monitors = CopyWireMonitors(&tour->app->plugin.router);
    if (monitors.empty())
        return FailStep(tour, "the plug-in has asked about no monitor");
    ConsoleLine(Format("  %-2s %-12s %-4s  %-22s %s", "", "model", "MCCS", "colour presets", "inputs"));
    for (size_t i = 0; i < monitors.size(); i++) {
        const WIREMONITOR &monitor = monitors[i];
        if (!monitor.hasName)
            return FailStep(tour,
                            Format("the plug-in did not learn the name of monitor %u", static_cast<unsigned>(i + 1)));
        const std::string version = CapabilityItem(monitor.capabilities, "mccs_ver");
        ConsoleLine(Format("  %-2u %-12s %-4s  %-22s %s", static_cast<unsigned>(i + 1), monitor.name.c_str(),
                           version.empty() ? "-" : version.c_str(), PresetList(monitor).c_str(),
                           monitor.hasInputs ? InputList(monitor).c_str() : "not told"));
        const std::string readings = ReadingList(monitor);
        if (!readings.empty())
            ConsoleLine("     " + readings);
    }
    tour->seen = Format("%u monitor%s with name, inputs and presets", static_cast<unsigned>(monitors.size()),
                        monitors.size() == 1 ? "" : "s");
    return STEP_DONE;
}

// ---- Windows and a change -------------------------------------------------------------------------------------------

static STEPRESULT StepWindows(TOUR *tour)
{
    bool visible = false;
    if (!HaveMonitorWindows(tour))
        return SkipStep(tour, "only simulated monitors have windows, and these are real ones to the host");
    CallOnWindow(&tour->app->window, [&] {
        ShowMonitorWindows();
        visible = IsAnyMonitorWindowVisible();
    });
    tour->seen = "a window for each monitor";
    return visible ? STEP_DONE : FailStep(tour, "no monitor's window came up");
}

// Returns false with a reason in the tour when the plug-in did not answer.
static bool Give(TOUR *tour, const std::string &line, PLUGINANSWER *answer, std::string *text)
{
    PLUGINCOMMAND command;
    if (!ParsePluginCommand(line, &command, &tour->reason))
        return false;
    CallOnWindow(&tour->app->window, [&] { *answer = SendPluginCommand(&tour->app->plugin.router, command); });
    *text = DescribePluginAnswer(command, *answer);
    ConsoleLine("  " + line + ": " + *text);
    tour->reason = "the plug-in did not answer the host's command '" + line + "'";
    return answer->answered;
}

bool GiveCommand(TOUR *tour, const std::string &line, std::string *text)
{
    PLUGINANSWER answer;
    return Give(tour, line, &answer, text);
}

// Through the plug-in and back: command, request, monitor, reply, and what the monitor then shows.
static STEPRESULT StepChange(TOUR *tour)
{
    const MONITORSTATE::LEVEL before = TourMonitor(tour, 0).brightness;
    const int wanted =
        before.value >= before.maximum / 2 ? before.value - before.maximum / 3 : before.value + before.maximum / 3;
    PLUGINANSWER answer;
    std::string text;
    if (!Give(tour, Format("set-vcp %02X %d", VCP_BRIGHTNESS, wanted), &answer, &text))
        return STEP_FAILED;
    const int readBack = static_cast<int>(PayloadDword(&answer.reply, 4));
    const int shown = TourMonitor(tour, 0).brightness.value;
    if (readBack != wanted || shown != wanted)
        return FailStep(tour, Format("brightness was to become %d; the plug-in read back %d, the monitor shows %d",
                                     wanted, readBack, shown));
    tour->seen = Format("monitor 1: brightness %d -> %d", before.value, shown);
    return STEP_DONE;
}

// All colour settings at once, and who this PC is.
static STEPRESULT StepCommands(TOUR *tour)
{
    constexpr int CONTRAST = 45, PRESET = 8;
    std::string text;
    const std::string write = Format("set-settings contrast=%d preset=%d", CONTRAST, PRESET);
    for (const std::string &line : {std::string("get-settings"), write, std::string("get-settings"),
                                    std::string("identity"), std::string("count")})
        if (!GiveCommand(tour, line, &text))
            return STEP_FAILED;
    const MONITORSTATE state = TourMonitor(tour, 0);
    if (state.contrast.value != CONTRAST || state.preset != PRESET)
        return FailStep(tour, Format("the monitor shows contrast %d and preset %d after '%s'", state.contrast.value,
                                     state.preset, write.c_str()));
    tour->seen = Format("monitor 1: contrast %d, preset %d", CONTRAST, PRESET);
    return STEP_DONE;
}

// ---- Stop -----------------------------------------------------------------------------------------------------------

static STEPRESULT StepStop(TOUR *tour)
{
    HOSTAPP *app = tour->app;
    int result = 0;
    CallOnWindow(&app->window, [&] { result = StopRunningPlugin(&app->plugin, &app->monitors); });
    if (result != 1)
        return FailStep(tour, Format("the plug-in's stop gave %d", result));
    if (!HasNotice(&app->plugin.router, HOST_NOTICE_STOPPED))
        return FailStep(tour, "the plug-in did not tell that it has stopped");
    bool haveLocks = false;
    for (int i = 0; i < TourMonitorCount(tour); i++) {
        const MONITORSTATE state = TourMonitor(tour, i);
        haveLocks = haveLocks || state.hasLock;
        if (state.lockMask)
            return FailStep(tour, Format("monitor %d is left with the lock mask %u", i + 1, state.lockMask));
    }
    tour->seen = haveLocks ? "all buttons of all monitors are unlocked again" : "no monitor has a button lock";
    return STEP_DONE;
}

// ---- The tour -------------------------------------------------------------------------------------------------------

static const struct {
    const char *title;
    STEPRESULT (*run)(TOUR *tour);
    const char *picture; // taken after the step; null for none
} s_steps[] = {
    {"The plug-in starts and finds the monitors", StepStartUp, nullptr},
    {"The monitors as the plug-in knows them", StepTable, nullptr},
    {"The monitors' windows", StepWindows, "monitors"},
    {"A value changed through the plug-in", StepChange, "changed"},
    {"Colour settings and identity by command", StepCommands, nullptr},
    {"A management server asks and switches the input", StepServer, "server"},
    {"The panel is opened from the menu", StepOpenPanel, "panel"},
    {"Every item of the panel's tree", StepPages, nullptr},
    {"The contrast slider is dragged", StepContrast, "contrast"},
    {"A colour profile is applied", StepProfile, "profile"},
    {"ECO mode is switched", StepEco, "eco"},
    {"DirectLink follows a registered program", StepDirectLink, "directlink-back"},
    {"Names are changed once the server allows it", StepNames, nullptr},
    {"Another monitor, and its tree", StepOtherMonitor, nullptr},
    {"A program becomes a launcher candidate", StepCandidate, "candidate"},
    {"A front-panel button starts it", StepAssign, "launched"},
    {"A locked button does nothing", StepLock, nullptr},
    {"A reservation begins and ends", StepReservation, nullptr},
    {"The panel is closed and opened again", StepReopenPanel, nullptr},
    {"The plug-in stops", StepStop, nullptr},
};

bool PrepareTour(HOSTAPP *app, std::string *error)
{
    if (!FindTourMonitors(app, error) || !OpenTourSettings(error))
        return false;
    // Where the dialogs that open a file begin.
    SetCurrentDirectoryW(Widen(ProgramFolder()).c_str());
    if (InstallTourClock(app->plugin.library.hModule))
        return true;
    *error = "the plug-in asks nobody for the local time, so the tour cannot set its clock";
    return false;
}

void TakePicture(TOUR *tour, const std::string &name)
{
    const std::string file = tour->folder + "\\" + name.substr(0, name.find(' ')) + ".png";
    DeleteFileW(Widen(file).c_str()); // of an earlier tour
    ConsoleLine("PICTURE " + name);
    if (!WaitUntil([&] { return GetFileAttributesW(Widen(file).c_str()) != INVALID_FILE_ATTRIBUTES; },
                   PICTURE_PATIENCE))
        ConsoleLine("  warning: nobody took the picture " + file);
}

// What the whole tour has shown.
static void PrintSummary(const std::vector<std::string> &seen)
{
    ConsoleLine("What was shown, and what was seen:");
    for (size_t i = 0; i < seen.size(); i++)
        ConsoleLine(Format("  %2u  %-48s %s", static_cast<unsigned>(i + 1), s_steps[i].title, seen[i].c_str()));
}

// Returns false after a step that failed, with the reason said.
static bool RunStep(TOUR *tour, size_t index)
{
    const auto &step = s_steps[index];
    tour->seen.clear();
    ConsoleLine(Format("Step %u: %s", static_cast<unsigned>(index + 1), step.title));
    const STEPRESULT result = step.run(tour);
    if (result == STEP_FAILED) {
        TakePicture(tour, "failed");
        ConsoleError(Format("tour: step %u (%s) failed: %s", static_cast<unsigned>(index + 1), step.title,
                            tour->reason.c_str()));
        return false;
    }
    if (result == STEP_SKIPPED) {
        tour->seen = "left out: " + tour->reason;
        ConsoleLine("  " + tour->seen);
    } else if (step.picture && result == STEP_DONE && (HaveMonitorWindows(tour) || FindPanel())) {
        TakePicture(tour, step.picture);
    }
    return true;
}

void RunTour(HOSTAPP *app, const std::string &folder)
{
    TOUR tour = {app, folder, {}, {}};
    std::vector<std::string> seen;
    for (size_t i = 0; i < ARRAYSIZE(s_steps); i++) {
        if (!RunStep(&tour, i)) {
            EndHost(&app->window, 1);
            return;
        }
        seen.push_back(tour.seen);
    }
    PrintSummary(seen);
    ConsoleLine("The tour is over.");
    EndHost(&app->window, 0);
}
