// Entry and list of the reservation page.
#include "panel/reservation_rows.h"

#include "kernel/base/texts.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "timer/reservation_rules.h"
#include "timer/reservation_store.h"
#include "timer/shown_reservation.h"

#include <commctrl.h>

HWND g_hReservationPage = nullptr;

// ---- Entry --------------------------------------------------------------------------------------------------------

const MOMENTCONTROLS g_MomentControls[] = {
    {IDC_RESERVATION_START_DATE, IDC_RESERVATION_START_HOUR, IDC_RESERVATION_START_MINUTE},
    {IDC_RESERVATION_END_DATE, IDC_RESERVATION_END_HOUR, IDC_RESERVATION_END_MINUTE},
};

static int SelectedIndex(HWND hPage, int control, int count)
{
    const int index = SelectedComboEntry(hPage, control);
    return index < count ? index : -1;
}

static bool ReadMoment(HWND hPage, const MOMENTCONTROLS *controls, char *date, char *time)
{
    SYSTEMTIME picked = {};
    // A page without the control answers 0, which would pass for GDT_VALID.
    if (!GetDlgItem(hPage, controls->nDate) || SendDlgItemMessageA(hPage, controls->nDate, DTM_GETSYSTEMTIME, 0,
                                                                   reinterpret_cast<LPARAM>(&picked)) != GDT_VALID)
        return false;
    if (!FormatDate(date, &picked))
        return false;
    const int hour = SelectedIndex(hPage, controls->nHour, 24);
    const int minute = SelectedIndex(hPage, controls->nMinute, 60);
    if (hour < 0 || minute < 0)
        return false;
    FormatTime(time, hour, minute);
    return true;
}

static bool ReadMonitor(RESERVATION *slot)
{
    const LONG monitor = g_nCurMonitor;
    if (!IsMonitorIndex(monitor))
        return false;
    wsprintfA(slot->szLcd, "%12s", g_Monitor[monitor].szModel);
    slot->nCrtNo = monitor;
    return true;
}

static bool ReadChannel(HWND hPage, RESERVATION *slot)
{
    char text[64];
    if (!ReadComboEntry(hPage, IDC_RESERVATION_CHANNEL, SelectedComboEntry(hPage, IDC_RESERVATION_CHANNEL), text,
                        sizeof text))
        return false;
    lstrcpynA(slot->szChannel, text, sizeof slot->szChannel);
    return true;
}

// Fills a free slot, which stays free. False when an input is missing.
static bool ReadEntry(HWND hPage, RESERVATION *slot)
{
    return ReadMoment(hPage, &g_MomentControls[0], slot->szDate, slot->szTime) &&
           ReadMoment(hPage, &g_MomentControls[1], slot->szEndDate, slot->szEndTime) && ReadMonitor(slot) &&
           ReadChannel(hPage, slot);
}

static int FindFreeSlot()
{
    int n = 0;
    while (n < RESERVATION_COUNT && g_Reservation[n].szSection[0])
        ++n;
    return n;
}

static REFUSAL CheckEntry(const RESERVATION *slot)
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    MOMENTS moments;
    FormatMoments(&moments, slot, &now);
    return FindRefusal(g_Reservation, &moments);
}

static void ShowRefusal(HWND hPage, REFUSAL refusal)
{
    static const struct {
        UINT nString;
        UINT nIcon;
    } messages[REFUSAL_NONE] = {
        {IDS_RESERVATION_PASSED, MB_ICONINFORMATION},    // REFUSAL_PASSED
        {IDS_RESERVATION_NO_LENGTH, MB_ICONINFORMATION}, // REFUSAL_NO_LENGTH
        {IDS_RESERVATION_END_FIRST, MB_ICONINFORMATION}, // REFUSAL_END_FIRST
        {IDS_RESERVATION_TOO_SOON, MB_ICONINFORMATION},  // REFUSAL_TOO_SOON
        {IDS_RESERVATION_START_TAKEN, MB_ICONHAND},      // REFUSAL_START_TAKEN
        {IDS_RESERVATION_END_TAKEN, MB_ICONHAND},        // REFUSAL_END_TAKEN
        {IDS_RESERVATION_BEFORE_AN_END, MB_ICONHAND},    // REFUSAL_BEFORE_AN_END
    };
    ShowStringBox(hPage, messages[refusal].nString, PRODUCT_TITLE, MB_OK | messages[refusal].nIcon);
}

int AddReservation(HWND hPage)
{
    const int n = FindFreeSlot();
    if (n == RESERVATION_COUNT || !ReadEntry(hPage, &g_Reservation[n]))
        return 0;
    const REFUSAL refusal = CheckEntry(&g_Reservation[n]);
    if (refusal != REFUSAL_NONE) {
        ShowRefusal(hPage, refusal);
        return 1;
    }
    // Counted before its message box may appear, behind which the user can have the table loaded and counted afresh.
    ++g_nReservation;
    // A reservation that could not be written still counts for as long as the table is in memory.
    SaveReservation(n);
    AddReservationRow(hPage, n);
    return 1;
}

// ---- List ---------------------------------------------------------------------------------------------------------

void AddReservationRow(HWND hPage, int n)
{
    RESERVATION *slot = &g_Reservation[n];
    const int row = InsertReportRow(hPage, IDC_RESERVATION_LIST, n, slot->szDate, n);
    char monitor[32];
    wsprintfA(monitor, "%d:%12s", slot->nCrtNo + 1, slot->szLcd);
    char *const cells[] = {slot->szTime, slot->szEndDate, slot->szEndTime, monitor, slot->szChannel};
    int column = 1;
    for (char *cell : cells)
        SetReportCell(hPage, IDC_RESERVATION_LIST, row, column++, cell);
}

void DeleteReservationRow(HWND hPage, int n, int nRow, LPCSTR lpszErrorText)
{
    EmptyReservationSection(g_szOnTimerIni, n);
    if (!DeleteReportRow(hPage, IDC_RESERVATION_LIST, nRow))
        ShowBox(hPage, lpszErrorText, PRODUCT_TITLE, MB_OK | MB_ICONHAND);
    FreeReservationSlot(n);
}

// The row of a slot; -1 when there is none or a row before it cannot be read.
static int FindRow(HWND hPage, int rows, int n)
{
    for (int row = 0; row < rows; ++row) {
        int slot;
        if (!ReadReportData(hPage, IDC_RESERVATION_LIST, row, &slot))
            return -1;
        if (slot == n)
            return row;
    }
    return -1;
}

int DeleteReservationAndRestore(HWND hPage, int n, LONG nMonitor, WORD wInput)
{
    const int rows = ReportRowCount(hPage, IDC_RESERVATION_LIST);
    if (rows <= 0)
        return 0;
    const int row = FindRow(hPage, rows, n);
    if (row < 0)
        return 1;
    DeleteReservationRow(hPage, n, row, DELETE_ROW_ERROR_TIMER);
    if (wInput)
        SetVCP(nMonitor, VCP_INPUT_SOURCE, wInput);
    return 1;
}

static int DeleteOnPage(int n, LONG nMonitor, WORD wInput)
{
    return DeleteReservationAndRestore(g_hReservationPage, n, nMonitor, wInput);
}

void SetReservationPage(HWND hPage)
{
    g_hReservationPage = hPage;
    g_lpfnDeleteShown = hPage ? DeleteOnPage : nullptr;
}
