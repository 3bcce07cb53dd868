// Steps of the tour on the colour page, all on the first monitor.
#include <windows.h>

#include <commctrl.h>

#include "host/base/console.h"
#include "host/base/text.h"
#include "host/simulated/monitor_window.h"
#include "monitor/vcp_codes.h"
#include "panel/resources/resource.h"
#include "tour/tour_hands.h"
#include "tour/tour_monitors.h"
#include "tour/tour_panel.h"
#include "tour/tour_program.h"
#include "tour/tourprogram/tour_program.h"

constexpr int MONITOR = 0;
constexpr DWORD TWO_CHECKS = 10000; // ms: the plug-in looks every two seconds at what is in front

static MONITORSTATE State(const TOUR *tour)
{
    return TourMonitor(tour, MONITOR);
}

static int NumberIn(int control)
{
    return static_cast<int>(GetDlgItemInt(FindPage(), control, nullptr, FALSE));
}

// Whether the page's edits tell what the monitor has.
static bool AgreesWithPage(const MONITORSTATE &state)
{
    return NumberIn(IDC_COLOR_CONTRAST_EDIT) == state.contrast.value &&
           NumberIn(IDC_COLOR_BRIGHTNESS_EDIT) == state.brightness.value;
}

// What of it has changed.
static std::string DescribeChange(const MONITORSTATE &before, const MONITORSTATE &after)
{
    const struct {
        const char *name;
        int before, after;
    } values[] = {{"eco", before.eco, after.eco},
                  {"brightness", before.brightness.value, after.brightness.value},
                  {"contrast", before.contrast.value, after.contrast.value},
                  {"preset", before.preset, after.preset}};
    std::string text;
    for (const auto &value : values)
        if (value.before != value.after)
            text += Format("%s%s %d -> %d", text.empty() ? "" : ", ", value.name, value.before, value.after);
    return text;
}

static void SaySeen(TOUR *tour, const MONITORSTATE &before, const MONITORSTATE &after)
{
    tour->seen = "monitor 1: " + DescribeChange(before, after);
    ConsoleLine("  " + tour->seen);
}

// ---- Contrast -------------------------------------------------------------------------------------------------------

// Where the slider's thumb stands, or would stand at a position, on the screen.
static POINT ThumbPoint(HWND slider, int position)
{
    RECT thumb = {}, channel = {};
    Ask(slider, TBM_GETTHUMBRECT, 0, reinterpret_cast<LPARAM>(&thumb));
    Ask(slider, TBM_GETCHANNELRECT, 0, reinterpret_cast<LPARAM>(&channel));
    const int maximum = std::max(1, static_cast<int>(Ask(slider, TBM_GETRANGEMAX)));
    const LONG way = channel.right - channel.left - (thumb.right - thumb.left);
    POINT point = {channel.left + (thumb.right - thumb.left) / 2 + way * position / maximum,
                   (thumb.top + thumb.bottom) / 2};
    ClientToScreen(slider, &point);
    return point;
}

STEPRESULT StepContrast(TOUR *tour)
{
    if (!ChooseMonitor(tour, MONITOR) || !ChoosePage(tour, "色設定"))
        return STEP_FAILED;
    const HWND slider = GetDlgItem(FindPage(), IDC_COLOR_CONTRAST_SLIDER);
    const MONITORSTATE before = State(tour);
    const int from = before.contrast.value, maximum = before.contrast.maximum;
    const int wanted = from > maximum / 2 ? maximum / 5 : maximum * 4 / 5;
    if (!Drag(tour, ThumbPoint(slider, from), ThumbPoint(slider, wanted)))
        return STEP_FAILED;
    // A pixel of the slider is more than one step.
    const auto isThere = [&] {
        const int shown = State(tour).contrast.value;
        return abs(shown - wanted) <= 3 && Ask(slider, TBM_GETPOS) == shown && AgreesWithPage(State(tour));
    };
    if (!WaitUntil(isThere))
        return FailStep(tour, Format("the slider was dragged to about %d and stands at %ld; the monitor shows %d",
                                     wanted, Ask(slider, TBM_GETPOS), State(tour).contrast.value));
    SaySeen(tour, before, State(tour));
    return STEP_DONE;
}

// ---- Profiles and ECO -----------------------------------------------------------------------------------------------

// The profiles that come with the program ask for more brightness than a monitor has, so only what it can have is
// compared with the page.
STEPRESULT StepProfile(TOUR *tour)
{
    constexpr int SECOND_PROFILE = 2; // 0 stands for none
    if (!ChoosePage(tour, "色設定"))
        return STEP_FAILED;
    const MONITORSTATE before = State(tour);
    if (!ChooseInCombo(tour, FindPage(), IDC_COLOR_PROFILE_COMBO, SECOND_PROFILE, "the list of profiles"))
        return STEP_FAILED;
    // The page writes one value after the other.
    WaitUntil([&] { return IsLinkQuiet(&tour->app->plugin.router, QUIET_TIME); });
    const MONITORSTATE after = State(tour);
    if (DescribeChange(before, after).empty())
        return FailStep(tour, "the profile changed nothing in the monitor");
    if (NumberIn(IDC_COLOR_CONTRAST_EDIT) != after.contrast.value)
        return FailStep(tour, Format("the page shows contrast %d", NumberIn(IDC_COLOR_CONTRAST_EDIT)));
    ConsoleLine("  profile: " + TextOf(GetDlgItem(FindPage(), IDC_COLOR_PROFILE_COMBO)));
    SaySeen(tour, before, after);
    return STEP_DONE;
}

static bool HasEco(const TOUR *tour)
{
    const std::vector<WIREMONITOR> monitors = CopyWireMonitors(&tour->app->plugin.router);
    return monitors.size() > MONITOR &&
           FindCapabilityCode(CapabilityCodes(monitors[MONITOR].capabilities), VCP_ECO_MODE) != nullptr;
}

// The button is there for any monitor; one without the mode ignores it.
static STEPRESULT ShowNoEco(TOUR *tour)
{
    const MONITORSTATE before = State(tour);
    if (!ClickControl(tour, FindPage(), IDC_COLOR_ECO, "the ECO button"))
        return STEP_FAILED;
    WaitUntil([&] { return IsLinkQuiet(&tour->app->plugin.router, QUIET_TIME); });
    const MONITORSTATE after = State(tour);
    if (!DescribeChange(before, after).empty() || !AgreesWithPage(after))
        return FailStep(tour, "a click on the ECO button of a monitor without that mode changed " +
                                  DescribeChange(before, after));
    tour->seen = "monitor 1 has no ECO mode: a click on its button changes nothing in it";
    ConsoleLine("  " + tour->seen);
    return STEP_DONE;
}

STEPRESULT StepEco(TOUR *tour)
{
    if (!HasEco(tour))
        return ShowNoEco(tour);
    const MONITORSTATE before = State(tour);
    if (!ClickControl(tour, FindPage(), IDC_COLOR_ECO, "the ECO button"))
        return STEP_FAILED;
    const auto isThere = [&] { return State(tour).eco != before.eco && AgreesWithPage(State(tour)); };
    if (!WaitUntil(isThere))
        return FailStep(tour, Format("after a click on the ECO button eco is %d and the page shows brightness %d",
                                     State(tour).eco, NumberIn(IDC_COLOR_BRIGHTNESS_EDIT)));
    SaySeen(tour, before, State(tour));
    return STEP_DONE;
}

// ---- DirectLink -----------------------------------------------------------------------------------------------------

static bool WaitForContrast(TOUR *tour, int wanted, const std::string &when)
{
    if (WaitUntil([&] { return State(tour).contrast.value == wanted; }, TWO_CHECKS)) {
        ConsoleLine(Format("  %s: contrast %d", when.c_str(), wanted));
        return true;
    }
    FailStep(tour, Format("%s: the contrast was to be %d and is %d", when.c_str(), wanted, State(tour).contrast.value));
    return false;
}

// A number that is typed counts when the edit is left.
static bool TypeContrast(TOUR *tour, int value)
{
    return TypeInto(tour, GetDlgItem(FindPage(), IDC_COLOR_CONTRAST_EDIT), Format("%d", value), "the contrast edit") &&
           ClickControl(tour, FindPage(), IDC_COLOR_BRIGHTNESS_EDIT, "the brightness edit") &&
           WaitForContrast(tour, value, "typed");
}

// The program gets the contrast that the monitor shows when it is registered.
static bool RegisterProgram(TOUR *tour)
{
    const HWND list = GetDlgItem(FindPage(), IDC_COLOR_APP_LIST);
    const LRESULT before = Ask(list, LB_GETCOUNT);
    if (!ClickControl(tour, FindPage(), IDC_COLOR_BROWSE, "the button 参照") ||
        !AnswerFileDialog(tour, TourProgramPath(), "register"))
        return false;
    if (WaitUntil([&] { return Ask(list, LB_GETCOUNT) == before + 1; })) {
        ConsoleLine("  registered: " TOUR_PROGRAM_FILE);
        return true;
    }
    FailStep(tour, FindBox() ? "the page refuses the program: " + TextOf(GetDlgItem(FindBox(), 0xFFFF))
                             : "the page does not list the program");
    return false;
}

static bool SwitchDirectLink(TOUR *tour, bool on)
{
    if (!ClickControl(tour, FindPage(), IDC_COLOR_DIRECT_LINK, "the DirectLink button"))
        return false;
    if (WaitUntil([&] { return State(tour).directLink == on; }))
        return true;
    FailStep(tour, std::string("a click on DirectLink does not switch it ") + (on ? "on" : "off"));
    return false;
}

static bool BringProgramToFront(TOUR *tour, int wanted)
{
    std::string question;
    if (!StartTourProgram(tour) || !WaitUntil([] { return FindBox() != nullptr; }, TWO_CHECKS)) {
        FailStep(tour, "nobody asks about the registered program in front");
        return false;
    }
    TakePicture(tour, "directlink-question");
    if (!AnswerBox(tour, IDYES, &question))
        return false;
    ConsoleLine("  asked: " + question.substr(0, question.find('\n')));
    return WaitForContrast(tour, wanted, "the program is in front");
}

static bool BringHostToFront(TOUR *tour, int wanted)
{
    const bool hasWindows = HaveMonitorWindows(tour);
    RECT window = {};
    GetWindowRect(hasWindows ? MonitorWindow(MONITOR) : FindPanel(), &window);
    return ClickAt(tour, {window.left + 150, window.top + 10}) &&
           WaitForContrast(tour, wanted, hasWindows ? "a monitor's window is in front" : "the panel is in front");
}

// The page takes the monitor's settings of its opening for those without a registered program.
STEPRESULT StepDirectLink(TOUR *tour)
{
    if (!ChoosePage(tour, "Lumivane2") || !ChoosePage(tour, "色設定"))
        return STEP_FAILED;
    const int own = State(tour).contrast.value, ofProgram = own > 50 ? 25 : 75;
    if (!TypeContrast(tour, ofProgram) || !RegisterProgram(tour) || !SwitchDirectLink(tour, true) ||
        !WaitForContrast(tour, own, "DirectLink is on") || !BringProgramToFront(tour, ofProgram))
        return STEP_FAILED;
    TakePicture(tour, "directlink-front");
    if (!BringHostToFront(tour, own) || !SwitchDirectLink(tour, false) || !CloseTourProgram(tour))
        return STEP_FAILED;
    tour->seen = Format("monitor 1: contrast %d with the program in front, %d without", ofProgram, own);
    return STEP_DONE;
}
