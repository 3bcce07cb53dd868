// The checks of every second, and the check when the panel opens.
#include "timer/scheduler.h"

#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"
#include "monitor/monitor_table.h"
#include "monitor/vcp.h"
#include "panel/resources/strings.h"
#include "settings/ini.h"
#include "settings/ini_copy.h"
#include "timer/reservation_input.h"
#include "timer/reservation_rules.h"
#include "timer/reservation_store.h"
#include "timer/reserve_prompt.h"
#include "timer/shown_reservation.h"

#include <cstring>

constexpr DWORD DIRECT_SWITCH_PAUSE_MS = 500;

struct CLOCKTEXTS {
    char szDate[RESERVATION_DATE_SIZE];
    char szTime[RESERVATION_TIME_SIZE];
    char szNow[MOMENT_SIZE]; // both in one text
};

// The only place where these checks read the clock, once each.
static void ReadClock(CLOCKTEXTS *clock, char separator)
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    FormatDate(clock->szDate, &now);
    FormatTime(clock->szTime, now.wHour, now.wMinute);
    JoinMoment(clock->szNow, clock->szDate, separator, clock->szTime);
}

// ---- Every second -------------------------------------------------------------------------------------------------

// Whether a slot is used and the minute of one of its moments is now.
static bool IsDue(const RESERVATION *slot, LPCSTR date, LPCSTR time, LPCSTR now)
{
    char moment[MOMENT_SIZE];
    JoinMoment(moment, date, ' ', time);
    return slot->szSection[0] && CompareMoments(moment, now) == 0;
}

// Whether the monitor that a reservation was made for is still there, at its index.
static bool IsMonitorThere(const RESERVATION *slot)
{
    return slot->nCrtNo >= 0 && slot->nCrtNo < g_nMonitor && IsSameModel(g_Monitor[slot->nCrtNo].szModel, slot->szLcd);
}

static void SwitchAtOnce(int n, int channel, WORD input, LPCSTR label)
{
    SwitchInput(g_Reservation[n].nCrtNo, channel, input, DIRECT_SWITCH_PAUSE_MS);
    StoreReservationChannel(n, label);
    MarkReservationStarted(n);
}

// False when the prompt could not be shown; the next tick tries again.
static bool StartReservation(int n)
{
    const RESERVATION *slot = &g_Reservation[n];
    if (!IsMonitorThere(slot))
        return true;
    const MONITORENTRY *entry = &g_Monitor[slot->nCrtNo];
    const int channel = FindChannel(entry, slot->szChannel);
    char label[INPUT_LABEL_SIZE];
    GetInputLabel(label, sizeof label);
    const WORD input = ChooseInput(entry, slot->szChannel, channel);
    // An open question keeps what it is about, whoever else falls due.
    if (!IsReserveQuestionOpen()) {
        if (channel == CHANNEL_NONE || nChangeMsg == CHANGE_ASK_FIRST)
            SetPromptReservation(n, slot->nCrtNo, channel, input, label);
        if (nChangeMsg == CHANGE_ASK_FIRST && !ShowReservePrompt(g_hReservePrompt))
            return false;
    }
    if (nChangeMsg == CHANGE_AT_ONCE)
        SwitchAtOnce(n, channel, input, label);
    return true;
}

void CheckReservationStart()
{
    CLOCKTEXTS clock;
    ReadClock(&clock, ' ');
    for (int n = 0; n < RESERVATION_COUNT; ++n) {
        const RESERVATION *slot = &g_Reservation[n];
        if (IsDue(slot, slot->szDate, slot->szTime, clock.szNow) && !StartReservation(n))
            return;
    }
}

// Selects an input and deletes the reservation. With the panel open both go by the page's list, and nothing happens
// while another page is shown. Result: 0 when there is no list.
static int RestoreInput(int n, WORD input)
{
    const LONG monitor = g_Reservation[n].nCrtNo;
    if (g_hPanelDlg)
        return DeleteShownReservation(n, monitor, input);
    SetVCP(monitor, VCP_INPUT_SOURCE, input);
    DeleteReservation(n);
    return 1;
}

// False when this was the last thing to do in this tick.
static bool EndReservation(int n)
{
    if (g_hReservePrompt) {
        CancelReservePrompt(); // whichever reservation it is about
        return false;
    }
    const RESERVATION *slot = &g_Reservation[n];
    if (!IsMonitorThere(slot))
        return true;
    const WORD input = ChooseRestoreInput(&g_Monitor[slot->nCrtNo], slot->szChannel);
    if (input != INPUT_TV) {
        RestoreInput(n, input);
        return false;
    }
    RestoreTvChannel(slot->nCrtNo);
    return RestoreInput(n, INPUT_TV) != 0;
}

void CheckReservationEnd()
{
    CLOCKTEXTS clock;
    ReadClock(&clock, ' ');
    for (int n = 0; n < RESERVATION_COUNT; ++n) {
        const RESERVATION *slot = &g_Reservation[n];
        if (IsDue(slot, slot->szEndDate, slot->szEndTime, clock.szNow) && !EndReservation(n))
            return;
    }
}

// ---- Opening of the panel -----------------------------------------------------------------------------------------

// A section as it stands in the file. A missing key is empty.
struct PASSEDTEXTS {
    char szDate[17];
    char szTime[17];
    char szEndDate[17];
    char szEndTime[17];
};

static void ReadTexts(LPCSTR path, int n, PASSEDTEXTS *texts)
{
    char section[16];
    FormatReservationSection(section, n);
    const struct {
        LPCSTR key;
        char *buffer;
    } keys[] = {
        {"date", texts->szDate}, {"time", texts->szTime}, {"enddate", texts->szEndDate}, {"endtime", texts->szEndTime}};
    for (const auto &key : keys)
        GetPrivateProfileStringA(section, key.key, "", key.buffer, sizeof texts->szDate, path);
}

// Whether a moment is now or was before; an empty date never is.
static bool HasPassed(LPCSTR date, LPCSTR time, LPCSTR now)
{
    char moment[MOMENT_SIZE];
    JoinMoment(moment, date, '-', time);
    return date[0] && CompareMoments(moment, now) <= 0;
}

static int ReportEnded(HWND hOwner, int n, const PASSEDTEXTS *texts)
{
    char format[256];
    LoadText(IDS_PASSED_ENDED, format, sizeof format);
    char text[512];
    wsprintfA(text, format, n, texts->szDate, texts->szTime, texts->szEndDate, texts->szEndTime);
    return ShowBox(hOwner, text, PRODUCT_TITLE, MB_OK | MB_ICONINFORMATION);
}

// Whether a section still says what the user was told: behind the box it may have ended, or its prompt been answered.
static bool IsUnchanged(LPCSTR path, int n, const PASSEDTEXTS *told)
{
    PASSEDTEXTS texts;
    ReadTexts(path, n, &texts);
    return strcmp(texts.szDate, told->szDate) == 0 && strcmp(texts.szTime, told->szTime) == 0 &&
           strcmp(texts.szEndDate, told->szEndDate) == 0 && strcmp(texts.szEndTime, told->szEndTime) == 0;
}

// Makes the section start now. Its date stays: today goes under a key of its own, which nothing reads. The table takes
// no notice until the page loads it again.
static void StartNow(LPCSTR path, int n, const CLOCKTEXTS *clock)
{
    char section[16];
    FormatReservationSection(section, n);
    WriteIniKey(path, section, "data", clock->szDate);
    WriteIniKey(path, section, "time", clock->szTime);
}

// Without an answer the section stays, and the question is asked again at the next opening.
static void AskAboutMissedStart(HWND hOwner, LPCSTR path, int n, const PASSEDTEXTS *texts, const CLOCKTEXTS *clock)
{
    const int answer = ShowStringBox(hOwner, IDS_PASSED_START, PRODUCT_TITLE, MB_YESNO | MB_ICONQUESTION);
    if (!IsUnchanged(path, n, texts))
        return;
    switch (answer) {
    case IDYES:
        StartNow(path, n, clock);
        break;
    case IDNO:
        // The slot stays as it is until the page loads the table; only the count goes down. But where the prompt asks
        // about it, too, the user has answered both, and must not be asked a third time.
        EmptyReservationSection(path, n);
        if (IsPromptAbout(n))
            FreeReservationSlot(n);
        else
            --g_nReservation;
        break;
    }
}

static void CheckPassedReservation(HWND hOwner, LPCSTR path, int n, const CLOCKTEXTS *clock)
{
    PASSEDTEXTS texts;
    ReadTexts(path, n, &texts);
    if (HasPassed(texts.szEndDate, texts.szEndTime, clock->szNow) && ReportEnded(hOwner, n, &texts) == IDOK) {
        if (!IsUnchanged(path, n, &texts))
            return;
        EmptyReservationSection(path, n);
        FreeReservationSlot(n);
    } else if (HasPassed(texts.szDate, texts.szTime, clock->szNow)) {
        AskAboutMissedStart(hOwner, path, n, &texts, clock);
    }
}

int CheckPassedReservations(HWND hOwner)
{
    char path[MAX_PATH];
    CLOCKTEXTS clock;
    BuildIniPath(path, RESERVATION_FILE);
    RepairIniFile(path);
    ReadClock(&clock, '-');
    for (int n = 0; n < RESERVATION_COUNT; ++n)
        CheckPassedReservation(hOwner, path, n, &clock);
    return 1;
}
