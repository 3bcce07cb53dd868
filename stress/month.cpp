// A month of an office PC in quick motion: the clock is set, the timers tick when the program says so. Every evening
// has reservations, programs come to the front all day, buttons are pressed.
#include "kernel/base/plugin_state.h"
#include "launcher/launcher_settings.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "profiles/foreground.h"
#include "profiles/profile_store.h"
#include "settings/registry.h"
#include "stress/panel_hands.h"
#include "stress/parts.h"
#include "stress/scenario.h"
#include "support/box_answerer.h"
#include "support/clock.h"
#include "support/faults.h"
#include "support/front_programs.h"
#include "support/replaced_imports.h"
#include "support/text.h"
#include "timer/reservation_store.h"
#include "timer/reserve_prompt.h"

#include <cstdio>

constexpr int DAYS = 30;
constexpr int DAYS_BRIEF = 2;
constexpr int MINUTES_A_DAY = 24 * 60;
constexpr LONG INPUT_BEFORE = INPUT_DIGITAL;
constexpr LONG CONTRAST_OF_PROGRAM = 42;
constexpr WORD CONTRAST_BY_DEFAULT = 70;

struct MONTH {
    STAGE stage;
    FrontProgram *registered; // a program whose profile is applied when it comes to the front
    FrontProgram *other;
    int starts = 0, ends = 0, presses = 0, changes = 0;
};

static LONG ValueOf(MONTH *month, BYTE code)
{
    const auto lock = month->stage.run.host.Lock();
    return month->stage.run.host.monitors[0].features[code].current;
}

static void ExpectValue(MONTH *month, const char *what, BYTE code, LONG shall)
{
    const LONG is = ValueOf(month, code);
    Expect(is == shall, std::string(what) + ": feature " + std::to_string(code) + " is " + std::to_string(is) +
                            " instead of " + std::to_string(shall));
}

// ---- Reservations -------------------------------------------------------------------------------------------------

// From 20:00 to 21:00 at once, from 22:00 to 23:00 with a question; stored as the page stores them.
static void EnterReservations(int day)
{
    char date[16];
    snprintf(date, sizeof date, "2006/06/%02d", day);
    for (int n = 0; n < 2; ++n) {
        RESERVATION *slot = &g_Reservation[n];
        *slot = {};
        snprintf(slot->szDate, sizeof slot->szDate, "%s", date);
        snprintf(slot->szEndDate, sizeof slot->szEndDate, "%s", date);
        snprintf(slot->szTime, sizeof slot->szTime, "%02d:00", 20 + 2 * n);
        snprintf(slot->szEndTime, sizeof slot->szEndTime, "%02d:00", 21 + 2 * n);
        snprintf(slot->szLcd, sizeof slot->szLcd, "%12s", "NRV-PA1");
        snprintf(slot->szChannel, sizeof slot->szChannel, "%s", Sjis("ビデオ").c_str());
        Expect(SaveReservation(n) == 1, "a reservation cannot be saved");
        ++g_nReservation;
    }
    nChangeMsg = CHANGE_AT_ONCE;
}

static void OnHour(MONTH *month, int hour)
{
    if (hour == 21 || hour == 23)
        ++month->ends;
    if (hour == 20 || hour == 22)
        ++month->starts;
    if (hour == 22 && Expect(g_hReservePrompt != nullptr, "no question at 22:00"))
        SendMessageA(g_hReservePrompt, WM_COMMAND, IDC_PROMPT_SWITCH, 0);
    if (hour == 20 || hour == 22)
        ExpectValue(month, "started", VCP_INPUT_SOURCE, INPUT_VIDEO);
    if (hour == 21 || hour == 23)
        ExpectValue(month, "ended", VCP_INPUT_SOURCE, INPUT_BEFORE);
    if (hour == 21)
        nChangeMsg = CHANGE_ASK_FIRST;
    if (hour == 23)
        Expect(g_nReservation == 0, "reservations are left over");
}

// ---- Programs in front, buttons -----------------------------------------------------------------------------------

static void ChangeProgram(MONTH *month, bool registered)
{
    FrontProgram *program = registered ? month->registered : month->other;
    if (!Expect(program->BringToFront(), "a program does not come to the front"))
        return;
    month->stage.run.Tick(TIMER_FOREGROUND);
    ++month->changes;
    ExpectValue(month, registered ? "registered program" : "other program", VCP_CONTRAST,
                registered ? CONTRAST_OF_PROGRAM : CONTRAST_BY_DEFAULT);
}

static void SetPressed(MONTH *month, LONG report)
{
    const auto lock = month->stage.run.host.Lock();
    month->stage.run.host.monitors[0].features[VCP_BUTTON_PRESSED] = {0, report};
}

static void PressButton(MONTH *month)
{
    SetPressed(month, ButtonBit(1) << 8);
    TakeRecordedCalls();
    month->stage.run.Tick(TIMER_BUTTON_POLL);
    const auto calls = TakeRecordedCalls();
    Expect(calls.size() == 1 && calls[0].find("editor.exe") != std::string::npos, "the button starts nothing");
    ExpectValue(month, "pressed", VCP_BUTTON_PRESSED, BUTTON_PRESSED_NONE);
    SetPressed(month, BUTTON_PRESSED_NONE << 8);
    ++month->presses;
}

// ---- Time ---------------------------------------------------------------------------------------------------------

static void LiveThroughDay(MONTH *month, int day)
{
    for (int minute = 0; minute < MINUTES_A_DAY; ++minute) {
        SetClock(2006, 6, day, minute / 60, minute % 60);
        month->stage.run.Tick(TIMER_RESERVATION);
        const int hour = minute / 60;
        if (minute % 60 == 0)
            OnHour(month, hour);
        // The evenings belong to the reservations: a profile leaves a video picture alone.
        if (hour < 20 && minute % 240 == 30)
            ChangeProgram(month, minute % 480 == 30);
        if (minute % 60 == 40)
            PressButton(month);
        if (minute % 20 == 10)
            month->stage.run.Tick(TIMER_BUTTON_POLL);
        if (minute == 12 * 60)
            EnterReservations(day);
    }
    TakeRecordedCalls();
}

// ---- The month ----------------------------------------------------------------------------------------------------

static void PrepareMonth(MONTH *month)
{
    TestHost &host = month->stage.run.host;
    host.recording = false;
    host.monitors = FullMonitors();
    SetPressed(month, BUTTON_PRESSED_NONE << 8);
    WriteMonitorFiles();
    PutDword(HKEY_CURRENT_USER, SUBKEY_GENERAL, "DirectLink", 1);
    PutDword(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, "dwLTimer", 1);
    PutDword(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, "InitFlag", 1);
    PutDword(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, "Launcher_0_Enable_1", BUTTON_LAUNCHER);
    for (const char *name : {"exe_0_1", "exe_0_1_Path"})
        PutText(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name, "editor.exe");
    IniFolder::Write("profile.ini", "[User0]\r\nname=" + month->registered->KnownPath() +
                                        "\r\nalias=me\r\necomode=0\r\ncontrast=" + std::to_string(CONTRAST_OF_PROGRAM) +
                                        "\r\nbrightness=43\r\necobrightness=44\r\ncolortemp=8\r\n");
    IniFolder::Write("ontimer.ini", "");
}

void RunMonth(const WORKOPTIONS &options)
{
    AimAtPlugin(true);
    FrontProgram registered("stress_registered.exe"), other("stress_other.exe");
    MONTH month = {STAGE(), &registered, &other};
    const BoxAnswerer answerer("Lumivane 2", IDYES);
    LoadPlugin();
    PrepareMonth(&month);
    StartPlugin(&month.stage);
    Expect(g_bDirectLink == 1, "DirectLink is off");
    g_DefSetting[0] = {};
    g_DefSetting[0].wContrast = CONTRAST_BY_DEFAULT;
    LoadReservations(g_Reservation, "ontimer.ini");

    Step("day 1, for the warm-up");
    LiveThroughDay(&month, 1);
    const RESOURCECOUNTS before = CountResources();
    const size_t size = IniFolder::Read("ontimer.ini").size();
    const int days = options.brief ? DAYS_BRIEF : DAYS;
    for (int day = 1; day <= days; ++day) {
        Step("day " + std::to_string(day));
        LiveThroughDay(&month, day);
    }
    Step("end");
    ExpectNoGrowth(before);
    Expect(IniFolder::Read("ontimer.ini").size() <= size + 16, "ontimer.ini has grown");
    StopPlugin(&month.stage);
    CloseReservationFiles();
    Figure(std::to_string(days) + " days: " + std::to_string(month.starts) + " reservations started, " +
           std::to_string(month.ends) + " ended, " + std::to_string(month.changes) + " programs in front, " +
           std::to_string(month.presses) + " presses");
}
