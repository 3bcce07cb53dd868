// Steps of the tour on the pages of the front-panel buttons: one starts a program, one is locked.
#include "host/base/console.h"
#include "host/base/text.h"
#include "host/simulated/monitor_picture.h"
#include "host/simulated/monitor_window.h"
#include "host/simulated/press.h"
#include "monitor/vcp_codes.h"
#include "panel/resources/resource.h"
#include "tour/tour_hands.h"
#include "tour/tour_monitors.h"
#include "tour/tour_panel.h"
#include "tour/tour_program.h"
#include "tour/tourprogram/tour_program.h"

constexpr int MONITOR = 1; // the tree offers the launcher only after a change of monitor
constexpr int LAUNCH_BUTTON = 1, LOCKED_BUTTON = MONITOR_BUTTON_COUNT;
constexpr DWORD ONE_MORE_POLL = 2000 + 500; // ms

static const char s_parameter[] = "モニタ 2 の ボタン"; // with blanks, since one without is not handed on

static MONITORSTATE State(const TOUR *tour)
{
    return TourMonitor(tour, MONITOR);
}

static std::string Label(const TOUR *tour, int button)
{
    return State(tour).labels[static_cast<size_t>(button - 1)];
}

static bool CanShow(const TOUR *tour)
{
    if (TourMonitorCount(tour) <= MONITOR)
        return false;
    const MONITORSTATE state = State(tour);
    return HaveMonitorWindows(tour) && state.reportsButtons && state.hasLock && !Label(tour, LAUNCH_BUTTON).empty() &&
           !Label(tour, LOCKED_BUTTON).empty();
}

// What a monitor cannot do is not offered.
static STEPRESULT ShowAbsence(TOUR *tour, const std::string &page, const std::string &picture)
{
    if (TourMonitorCount(tour) > MONITOR && !ChooseMonitor(tour, MONITOR))
        return STEP_FAILED;
    return ShowNotOffered(tour, page, "it has no front-panel buttons that report and can be locked", picture);
}

// ---- Presses --------------------------------------------------------------------------------------------------------

// With the mouse on the simulated monitor's front panel.
static bool Press(TOUR *tour, int button)
{
    const MONITORSTATE before = State(tour);
    const RECT place = MonitorButtonPlace(before, button);
    POINT point = {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    ClientToScreen(MonitorWindow(MONITOR), &point);
    if (WindowFromPoint(point) != MonitorWindow(MONITOR)) {
        FailStep(tour, "something lies over the monitor's button " + Label(tour, button));
        return false;
    }
    if (!ClickAt(tour, point))
        return false;
    if (WaitUntil([&] { return State(tour).pressCount != before.pressCount; }))
        return true;
    FailStep(tour, "a click on the monitor's button " + Label(tour, button) + " does not press it");
    return false;
}

// Until the plug-in has read the press and acknowledged it.
static bool WaitUntilTaken(TOUR *tour, int button)
{
    const DWORD start = GetTickCount();
    const auto isOver = [&] { return State(tour).press != PRESS_WAITING && State(tour).press != PRESS_READ; };
    WaitUntil(isOver, PRESS_PATIENCE);
    ConsoleLine(Format("  %s pressed, lock mask %u: button register %u after %lu ms", Label(tour, button).c_str(),
                       State(tour).lockMask, State(tour).pressed, GetTickCount() - start));
    if (State(tour).press == PRESS_TAKEN)
        return true;
    FailStep(tour, "the plug-in did not read and acknowledge the press; is the model in lvcap.ini?");
    return false;
}

// ---- A button that starts a program ---------------------------------------------------------------------------------

STEPRESULT StepCandidate(TOUR *tour)
{
    if (!CanShow(tour))
        return ShowAbsence(tour, "ランチャー設定", "no-launcher");
    if (!ChooseMonitor(tour, MONITOR) || !ChoosePage(tour, "ランチャー設定"))
        return STEP_FAILED;
    const HWND list = GetDlgItem(FindPage(), IDC_LAUNCHER_CANDIDATES);
    if (!ClickControl(tour, FindPage(), IDC_LAUNCHER_ADD, "the button 追加") ||
        !AnswerFileDialog(tour, TourProgramPath(), "add-candidate"))
        return STEP_FAILED;
    if (!WaitUntil([&] { return Ask(list, LB_GETCOUNT) == 1; }))
        return FailStep(tour, Format("the page lists %ld candidates", Ask(list, LB_GETCOUNT)));
    tour->seen = TOUR_PROGRAM_FILE " is listed";
    return STEP_DONE;
}

static bool SwitchLauncherOn(TOUR *tour)
{
    if (!ClickControl(tour, FindPage(), IDC_BUTTON_1_ENABLE, "the launcher's box"))
        return false;
    const BYTE bit = ButtonBit(LAUNCH_BUTTON);
    if (WaitUntil([&] { return (State(tour).lockMask & bit) != 0; }))
        return true;
    FailStep(tour, "the monitor's own use of the button is not locked");
    return false;
}

static bool AssignCandidate(TOUR *tour)
{
    if (!ChooseInList(tour, FindPage(), IDC_BUTTON_CANDIDATES, 0, "the list of candidates"))
        return false;
    const HWND program = GetDlgItem(FindPage(), IDC_BUTTON_1_PROGRAM);
    if (WaitUntil([&] { return TextOf(program) == TOUR_PROGRAM_FILE; }))
        return PasteInto(tour, GetDlgItem(FindPage(), IDC_BUTTON_1_PARAMETER), s_parameter, "the parameter");
    FailStep(tour, "the page shows '" + TextOf(program) + "' as assigned");
    return false;
}

STEPRESULT StepAssign(TOUR *tour)
{
    if (!CanShow(tour))
        return ShowAbsence(tour, "ランチャー設定", "no-buttons");
    if (!ChoosePage(tour, Label(tour, LAUNCH_BUTTON)) || !SwitchLauncherOn(tour) || !AssignCandidate(tour))
        return STEP_FAILED;
    TakePanelPicture(tour, "button-page");
    if (!Press(tour, LAUNCH_BUTTON) || !WaitUntilTaken(tour, LAUNCH_BUTTON))
        return STEP_FAILED;
    const HWND hWnd = WaitForTourProgram();
    if (!hWnd)
        return FailStep(tour, "the press did not start " + TourProgramPath());
    const std::string commandLine = TourProgramCommandLine(hWnd);
    ConsoleLine("  started: " + commandLine);
    if (commandLine.find("\"" + std::string(s_parameter) + "\"") == std::string::npos)
        return FailStep(tour, std::string("the program was to be started with \"") + s_parameter + "\"");
    tour->seen = "monitor 2: a press of " + Label(tour, LAUNCH_BUTTON) + " started " TOUR_PROGRAM_FILE;
    return STEP_DONE;
}

// ---- A locked button ------------------------------------------------------------------------------------------------

static bool ToggleLock(TOUR *tour, bool locked)
{
    const BYTE bit = ButtonBit(LOCKED_BUTTON);
    const HWND toggle = GetDlgItem(FindPage(), IDC_LOCK_TOGGLE_POWER);
    if (!ClickWindow(tour, toggle, "the button of POWER"))
        return false;
    const std::string text = locked ? "無効" : "有効";
    if (WaitUntil([&] { return ((State(tour).lockMask & bit) != 0) == locked && TextOf(toggle) == text; }))
        return true;
    FailStep(tour,
             Format("the lock mask is %u and the button says '%s'", State(tour).lockMask, TextOf(toggle).c_str()));
    return false;
}

static bool PressPower(TOUR *tour, bool on)
{
    if (!Press(tour, LOCKED_BUTTON))
        return false;
    if (WaitUntil([&] { return State(tour).powered == on; }))
        return true;
    FailStep(tour, std::string("after POWER the monitor was to be ") + (on ? "on" : "off"));
    return false;
}

STEPRESULT StepLock(TOUR *tour)
{
    if (!CanShow(tour))
        return ShowAbsence(tour, "ボタンロック", "no-lock");
    if (!CloseTourProgram(tour) || !ChoosePage(tour, "ボタンロック") || !ToggleLock(tour, true))
        return STEP_FAILED;
    TakePanelPicture(tour, "lock-page");
    if (!Press(tour, LOCKED_BUTTON) || !WaitUntilTaken(tour, LOCKED_BUTTON))
        return STEP_FAILED;
    if (WaitUntil([] { return FindTourProgram() != nullptr; }, ONE_MORE_POLL))
        return FailStep(tour, "the locked button started a program");
    if (!State(tour).powered)
        return FailStep(tour, "the locked POWER button switched the monitor off");
    ConsoleLine(Format("  nothing happened in the %lu ms after it; now it is unlocked", ONE_MORE_POLL));
    if (!ToggleLock(tour, false) || !PressPower(tour, false))
        return STEP_FAILED;
    TakePicture(tour, "unlocked");
    if (!PressPower(tour, true))
        return STEP_FAILED;
    tour->seen = "monitor 2: POWER does nothing while locked, and switches off and on once unlocked";
    return STEP_DONE;
}
