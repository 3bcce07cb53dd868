// Steps of the tour that press front-panel buttons: one starts a program, one is locked.
#include <algorithm>

#include "host/console.h"
#include "host/text.h"
#include "host/tour_settings.h"
#include "host/tour_steps.h"
#include "host/tourprogram/tour_program.h"

constexpr int LAUNCH_BUTTON = 1, LOCKED_BUTTON = MONITOR_BUTTON_COUNT; // MENU and POWER, as our monitors label them
constexpr DWORD MODE_LOCKED = 1, MODE_LAUNCHER = 2;                    // "Launcher_%d_Enable_%d"
constexpr DWORD PROGRAM_PATIENCE = 10000;                              // ms for a program to start or to end
constexpr DWORD ONE_MORE_POLL = 2000 + 500;                            // ms

static int s_nMonitor = -1;     // whose buttons are pressed; -1: no monitor has what it takes
static std::string s_parameter; // what the program is started with

// ---- Before the plug-in starts --------------------------------------------------------------------------------------

static int FindMonitorWithButtons(SIMULATION *simulation)
{
    const int count = static_cast<int>(simulation->monitors.size());
    for (int i = 0; i < std::min(count, WIRE_MONITOR_LIMIT); i++) {
        const MONITORSTATE state = GetMonitorState(simulation, i);
        if (state.reportsButtons && state.hasLock && !state.labels[LAUNCH_BUTTON - 1].empty() &&
            !state.labels[LOCKED_BUTTON - 1].empty())
            return i;
    }
    return -1;
}

// One button's mode and its program, as the launcher's pages store them.
static bool AssignProgram(int button, DWORD mode, std::string *error)
{
    const std::string program = Format("exe_%d_%d", s_nMonitor, button);
    return WriteTourNumber(Format("Launcher_%d_Enable_%d", s_nMonitor, button), mode, error) &&
           WriteTourText(program, TOUR_PROGRAM_FILE, error) &&
           WriteTourText(program + "_Path", ProgramFolder() + "\\" TOUR_PROGRAM_FILE, error) &&
           WriteTourText(program + "_Param", s_parameter, error);
}

// The plug-in takes the masks of the monitors in order, up to the first one that has none stored.
static bool StoreLockMasks(std::string *error)
{
    const DWORD mask = static_cast<DWORD>(ButtonBit(LAUNCH_BUTTON) | ButtonBit(LOCKED_BUTTON));
    for (int i = 0; i <= s_nMonitor; i++)
        if (!WriteTourNumber(Format("ButtonLockStatus_%d", i), i == s_nMonitor ? mask : 0, error))
            return false;
    return true;
}

bool AssignTourButtons(SIMULATION *simulation, std::string *error)
{
    s_nMonitor = FindMonitorWithButtons(simulation);
    if (s_nMonitor == -1)
        return true;
    // With a blank, since a parameter without one is not handed on.
    s_parameter = Format("モニタ %d の ", s_nMonitor + 1) +
                  GetMonitorState(simulation, s_nMonitor).labels[LAUNCH_BUTTON - 1] + " ボタン";
    // The locked button has a program, too, so that nothing but its mode is in the way.
    return WriteTourNumber("InitFlag", 1, error) && AssignProgram(LAUNCH_BUTTON, MODE_LAUNCHER, error) &&
           AssignProgram(LOCKED_BUTTON, MODE_LOCKED, error) && WriteTourNumber("dwLTimer", 1, error) &&
           StoreLockMasks(error);
}

// ---- The program ----------------------------------------------------------------------------------------------------

static HWND TourProgramWindow()
{
    const HWND hWnd = FindWindowW(TOUR_PROGRAM_CLASS, nullptr);
    return hWnd && IsWindowVisible(hWnd) ? hWnd : nullptr;
}

static HWND WaitForTourProgram()
{
    const DWORD start = GetTickCount();
    while (!TourProgramWindow() && GetTickCount() - start < PROGRAM_PATIENCE)
        Sleep(TOUR_POLL_TIME);
    return TourProgramWindow();
}

// Returns false when it is still there.
static bool CloseTourProgram()
{
    const DWORD start = GetTickCount();
    if (const HWND hWnd = TourProgramWindow())
        PostMessageW(hWnd, WM_CLOSE, 0, 0);
    while (TourProgramWindow() && GetTickCount() - start < PROGRAM_PATIENCE)
        Sleep(TOUR_POLL_TIME);
    return !TourProgramWindow();
}

// The command line that it shows.
static std::string ReadTourProgram(HWND hWnd)
{
    wchar_t text[1024] = L"";
    DWORD_PTR length = 0;
    SendMessageTimeoutW(GetDlgItem(hWnd, IDC_TOUR_COMMAND_LINE), WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text),
                        SMTO_ABORTIFHUNG, PROGRAM_PATIENCE, &length);
    return Narrow(text);
}

// ---- The steps ------------------------------------------------------------------------------------------------------

static MONITORSTATE State(const TOUR *tour)
{
    return GetMonitorState(&tour->app->simulation, s_nMonitor);
}

static bool IsOnItsWay(PRESSFATE fate)
{
    return fate == PRESS_WAITING || fate == PRESS_READ;
}

// Presses a button and prints what its register holds before, with the press and once the plug-in has taken it.
static bool PressAndWatch(TOUR *tour, int button)
{
    const MONITORSTATE before = State(tour);
    PressAndLog(&tour->app->simulation, s_nMonitor, button);
    const DWORD start = GetTickCount();
    const MONITORSTATE pressed = State(tour);
    MONITORSTATE after = pressed;
    while (IsOnItsWay(after.press) && GetTickCount() - start < PRESS_PATIENCE) {
        Sleep(TOUR_POLL_TIME);
        after = State(tour);
    }
    ConsoleLine(Format("  monitor %d (%s), lock mask %u; %s pressed: button register %u, then %u, and %u after %lu ms",
                       s_nMonitor + 1, before.model.c_str(), before.lockMask,
                       before.labels[static_cast<size_t>(button - 1)].c_str(), before.pressed, pressed.pressed,
                       after.pressed, GetTickCount() - start));
    if (after.press == PRESS_TAKEN)
        return true;
    tour->reason = "the plug-in did not read and acknowledge the press; is the model in lvcap.ini?";
    return false;
}

static STEPRESULT SkipWithoutButtons()
{
    ConsoleLine("  left out: no monitor here reports its buttons, can lock them and has a first button and POWER");
    return STEP_SKIPPED;
}

STEPRESULT StepLaunch(TOUR *tour)
{
    if (s_nMonitor == -1)
        return SkipWithoutButtons();
    if (!CloseTourProgram())
        return FailStep(tour, TOUR_PROGRAM_FILE " of another tour does not close");
    if (!PressAndWatch(tour, LAUNCH_BUTTON))
        return STEP_FAILED;
    const HWND hWnd = WaitForTourProgram();
    if (!hWnd)
        return FailStep(tour, "the press did not start " + ProgramFolder() + "\\" TOUR_PROGRAM_FILE);
    const std::string commandLine = ReadTourProgram(hWnd);
    ConsoleLine("  started: " + commandLine);
    const std::string wanted = "\"" + s_parameter + "\"";
    if (commandLine.find(wanted) == std::string::npos)
        return FailStep(tour, "the program was to be started with " + wanted);
    return STEP_DONE;
}

STEPRESULT StepLocked(TOUR *tour)
{
    if (s_nMonitor == -1)
        return SkipWithoutButtons();
    if (!CloseTourProgram())
        return FailStep(tour, "the program that the press started does not close");
    if (!PressAndWatch(tour, LOCKED_BUTTON))
        return STEP_FAILED;
    const DWORD start = GetTickCount();
    while (!TourProgramWindow() && GetTickCount() - start < ONE_MORE_POLL)
        Sleep(TOUR_POLL_TIME);
    if (TourProgramWindow())
        return FailStep(tour, "the locked button started a program");
    const MONITORSTATE state = State(tour);
    if (!state.powered)
        return FailStep(tour, "the locked POWER button switched the monitor off");
    ConsoleLine(Format("  nothing was started in the %lu ms after it; the monitor is still on", ONE_MORE_POLL));
    return STEP_DONE;
}
