// Step of the tour that reserves half an hour of video on the reservation page and lives through it on a clock of its
// own.
#include <windows.h>

#include <commctrl.h>

#include "host/base/console.h"
#include "host/base/text.h"
#include "monitor/vcp_codes.h"
#include "panel/resources/resource.h"
#include "tour/tour_clock.h"
#include "tour/tour_hands.h"
#include "tour/tour_monitors.h"
#include "tour/tour_panel.h"

constexpr DWORD SWITCH_PATIENCE = 10000; // ms: the plug-in looks every second, and a switch takes up to one and a half

// A monitor with a tuner, for which the page exists, that can show video and does not; -1 without one.
static int FindTvMonitor(const TOUR *tour)
{
    const std::vector<WIREMONITOR> monitors = CopyWireMonitors(&tour->app->plugin.router);
    for (size_t i = 0; i < monitors.size(); i++) {
        const auto &inputs = monitors[i].inputs;
        bool tuner = false;
        for (WORD input = INPUT_TV; input <= INPUT_TV_LAST; input++)
            tuner = tuner || inputs[input];
        if (monitors[i].hasInputs && tuner && inputs[INPUT_VIDEO] &&
            TourMonitor(tour, static_cast<int>(i)).input < INPUT_VIDEO)
            return static_cast<int>(i);
    }
    return -1;
}

// Today or tomorrow, whichever time comes first, so that the clock never goes back.
static void SetClock(WORD hour, WORD minute)
{
    constexpr ULONGLONG DAY = 24ULL * 60 * 60 * 10000000;
    SYSTEMTIME time = TourClock();
    FILETIME now = {}, then = {};
    SystemTimeToFileTime(&time, &now);
    time.wHour = hour;
    time.wMinute = minute;
    time.wSecond = time.wMilliseconds = 0;
    SystemTimeToFileTime(&time, &then);
    if (CompareFileTime(&then, &now) < 0) {
        ULARGE_INTEGER units = {{then.dwLowDateTime, then.dwHighDateTime}};
        units.QuadPart += DAY;
        then = {units.LowPart, units.HighPart};
        FileTimeToSystemTime(&then, &time);
    }
    SetTourClock(time);
    ConsoleLine(Format("  clock set to %02u:%02u", hour, minute));
}

static bool ChooseVideo(TOUR *tour)
{
    const HWND page = FindPage();
    const std::wstring text = L"ビデオ";
    const LRESULT index = Ask(GetDlgItem(page, IDC_RESERVATION_CHANNEL), CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                              reinterpret_cast<LPARAM>(text.c_str()));
    if (index != CB_ERR)
        return ChooseInCombo(tour, page, IDC_RESERVATION_CHANNEL, static_cast<int>(index), "the list of channels");
    FailStep(tour, "the page does not offer the video input");
    return false;
}

static LRESULT RowCount()
{
    return Ask(GetDlgItem(FindPage(), IDC_RESERVATION_LIST), LVM_GETITEMCOUNT);
}

// 20:00 to 20:30.
static bool EnterReservation(TOUR *tour)
{
    static const struct {
        int control, index;
        const char *name;
    } choices[] = {
        {IDC_RESERVATION_START_HOUR, 20, "the list of start hours"},
        {IDC_RESERVATION_START_MINUTE, 0, "the list of start minutes"},
        {IDC_RESERVATION_END_HOUR, 20, "the list of end hours"},
        {IDC_RESERVATION_END_MINUTE, 30, "the list of end minutes"},
    };
    for (const auto &choice : choices)
        if (!ChooseInCombo(tour, FindPage(), choice.control, choice.index, choice.name))
            return false;
    if (!ChooseVideo(tour) || !ClickControl(tour, FindPage(), IDC_RESERVATION_ASK, "the box about a message") ||
        !ClickControl(tour, FindPage(), IDC_RESERVATION_ADD, "the button 予約"))
        return false;
    if (WaitUntil([] { return RowCount() == 1; }))
        return true;
    FailStep(tour, FindBox() ? "the page refuses: " + TextOf(GetDlgItem(FindBox(), 0xFFFF))
                             : Format("the page lists %ld reservations", RowCount()));
    return false;
}

static bool WaitForInput(TOUR *tour, int monitor, WORD wanted, const char *when)
{
    const auto input = [&] { return TourMonitor(tour, monitor).input; };
    if (WaitUntil([&] { return input() == wanted; }, SWITCH_PATIENCE)) {
        ConsoleLine(Format("  %s: monitor %d shows input %u", when, monitor + 1, wanted));
        return true;
    }
    FailStep(tour, Format("%s: monitor %d was to show input %u and shows %u", when, monitor + 1, wanted, input()));
    return false;
}

static bool AnswerPrompt(TOUR *tour)
{
    HWND prompt = nullptr;
    const auto isThere = [&] { return (prompt = FindBox()) && GetDlgItem(prompt, IDC_PROMPT_SWITCH); };
    if (!WaitUntil(isThere, SWITCH_PATIENCE)) {
        FailStep(tour, "the start minute came and nobody asks about it");
        return false;
    }
    TakePicture(tour, "reservation-question");
    return ClickControl(tour, prompt, IDC_PROMPT_SWITCH, "the button 画面を切り替える");
}

STEPRESULT StepReservation(TOUR *tour)
{
    const int monitor = FindTvMonitor(tour);
    if (monitor == -1)
        return ShowNotOffered(tour, "タイマー予約設定", "it has no tuner, or no video input that it does not show",
                              "no-reservation");
    const WORD before = TourMonitor(tour, monitor).input;
    SetClock(19, 58);
    if (!ChooseMonitor(tour, monitor) || !ChoosePage(tour, "タイマー予約設定") || !EnterReservation(tour))
        return STEP_FAILED;
    TakePanelPicture(tour, "reservation-page");
    SetClock(20, 0);
    if (!AnswerPrompt(tour) || !WaitForInput(tour, monitor, INPUT_VIDEO, "begun"))
        return STEP_FAILED;
    TakePicture(tour, "reservation-begun");
    SetClock(20, 30);
    if (!WaitForInput(tour, monitor, before, "ended"))
        return STEP_FAILED;
    if (!WaitUntil([] { return RowCount() == 0; }))
        return FailStep(tour, "the page still lists the reservation that has ended");
    tour->seen =
        Format("monitor %d: input %u -> %u at 20:00, %u again at 20:30", monitor + 1, before, INPUT_VIDEO, before);
    return STEP_DONE;
}
