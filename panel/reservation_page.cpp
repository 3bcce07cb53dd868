// The reservation page's controls. What is entered and listed goes by panel/reservation_rows.
#include "panel/page_table.h"

#include "kernel/base/texts.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
#include "monitor/vcp_codes.h"
#include "panel/page_focus.h"
#include "panel/reservation_rows.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "panel/tooltips.h"
#include "settings/setting_table.h"
#include "timer/reservation_input.h"
#include "timer/reservation_store.h"

#include <commctrl.h>

#include <cstring>

// ---- Entry --------------------------------------------------------------------------------------------------------

// Every hour at the position of its number, as "13 (午後1時)".
static void FillHours(HWND hPage, int combo)
{
    char morning[64], afternoon[64];
    LoadText(IDS_HOUR_MORNING, morning, sizeof morning);
    LoadText(IDS_HOUR_AFTERNOON, afternoon, sizeof afternoon);
    for (int hour = 0; hour < 24; ++hour) {
        char text[96];
        wsprintfA(text, hour < 12 ? morning : afternoon, hour, hour % 12);
        InsertComboEntry(hPage, combo, hour, text);
    }
}

static void FillMinutes(HWND hPage, int combo)
{
    for (int minute = 0; minute < 60; ++minute) {
        char text[8];
        wsprintfA(text, "%d", minute);
        InsertComboEntry(hPage, combo, minute, text);
    }
}

// Start and end both begin at the present minute.
static void FillMoments(HWND hPage)
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    for (const MOMENTCONTROLS &controls : g_MomentControls) {
        SendDlgItemMessageA(hPage, controls.nDate, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&now));
        FillHours(hPage, controls.nHour);
        SelectComboEntry(hPage, controls.nHour, now.wHour);
        FillMinutes(hPage, controls.nMinute);
        SelectComboEntry(hPage, controls.nMinute, now.wMinute);
    }
}

static void AddChannel(HWND hPage, int *position, LPCSTR text, int data)
{
    InsertComboEntry(hPage, IDC_RESERVATION_CHANNEL, *position, text);
    SetComboEntryData(hPage, IDC_RESERVATION_CHANNEL, *position, data);
    ++*position;
}

static void AddInputChannel(HWND hPage, int *position, UINT label, int data)
{
    char text[INPUT_LABEL_SIZE];
    LoadText(label, text, sizeof text);
    AddChannel(hPage, position, text, data);
}

// The monitor's channel names, but for those of four blanks, then its video inputs. A name without any text is an entry
// as well. Only a monitor with a video input begins with a selection.
static void FillChannelCombo(HWND hPage, LONG nMonitor)
{
    static const char unused[] = "    ";
    constexpr int DATA_S_VIDEO = 17, DATA_VIDEO = 18;
    if (!IsMonitorIndex(nMonitor))
        return;
    const MONITORENTRY *entry = &g_Monitor[nMonitor];
    int position = 0;
    for (int n = 0; n < VCP_VALUE_COUNT; ++n) {
        char name[sizeof entry->szInputName[n] + 1];
        lstrcpynA(name, entry->szInputName[n], sizeof name);
        if (strcmp(name, unused) != 0)
            AddChannel(hPage, &position, name, n);
    }
    if (entry->bInputSource[INPUT_S_VIDEO])
        AddInputChannel(hPage, &position, IDS_INPUT_S_VIDEO, DATA_S_VIDEO);
    if (entry->bInputSource[INPUT_VIDEO]) {
        AddInputChannel(hPage, &position, IDS_INPUT_VIDEO, DATA_VIDEO);
        SelectComboEntry(hPage, IDC_RESERVATION_CHANNEL, 0);
    }
}

// ---- List ---------------------------------------------------------------------------------------------------------

static void InsertColumns(HWND hPage)
{
    static const struct {
        UINT string;
        int width; // pixels
    } columns[] = {
        {IDS_COLUMN_START_DATE, 72}, {IDS_COLUMN_START_TIME, 63}, {IDS_COLUMN_END_DATE, 72},
        {IDS_COLUMN_END_TIME, 63},   {IDS_COLUMN_MONITOR, 99},    {IDS_COLUMN_CHANNEL, 63},
    };
    for (int n = 0; n < static_cast<int>(ARRAYSIZE(columns)); ++n) {
        char text[32];
        LoadText(columns[n].string, text, sizeof text);
        AddReportColumn(hPage, IDC_RESERVATION_LIST, n, text, columns[n].width, LVCFMT_CENTER);
    }
}

static void FillList(HWND hPage)
{
    InsertColumns(hPage);
    for (int n = 0; n < RESERVATION_COUNT; ++n)
        if (g_Reservation[n].szSection[0])
            AddReservationRow(hPage, n);
    SelectWholeRows(hPage, IDC_RESERVATION_LIST);
}

static void DeleteSelectedReservation(HWND hPage, int nRow)
{
    int slot;
    if (ReadReportData(hPage, IDC_RESERVATION_LIST, nRow, &slot))
        DeleteReservationRow(hPage, slot, nRow, DELETE_ROW_ERROR_BUTTON);
}

// ---- The question at the start ------------------------------------------------------------------------------------

// Result: 1, or 0 when the setting is neither on nor off, as while a prompt is on screen; the box then stays as it is.
static int LoadChangeMsg(HWND hPage)
{
    const LONG stored = ReadSettingNumber(SETTING_CHANGE_MSG);
    if (stored != -1)
        nChangeMsg = stored;
    if (nChangeMsg != CHANGE_AT_ONCE && nChangeMsg != CHANGE_ASK_FIRST)
        return 0;
    CheckDlgButton(hPage, IDC_RESERVATION_ASK, nChangeMsg == CHANGE_ASK_FIRST ? BST_CHECKED : BST_UNCHECKED);
    return 1;
}

// Result: 1, or 0 for a box that is neither checked nor unchecked.
static int ToggleChangeMsg(HWND hPage)
{
    const UINT state = IsDlgButtonChecked(hPage, IDC_RESERVATION_ASK);
    if (state != BST_INDETERMINATE) {
        nChangeMsg = state == BST_CHECKED ? CHANGE_AT_ONCE : CHANGE_ASK_FIRST;
        CheckDlgButton(hPage, IDC_RESERVATION_ASK, state == BST_CHECKED ? BST_UNCHECKED : BST_CHECKED);
    }
    WriteSettingNumber(SETTING_CHANGE_MSG, static_cast<DWORD>(nChangeMsg));
    return state != BST_INDETERMINATE;
}

// ---- Page ---------------------------------------------------------------------------------------------------------

static int InitReservationPage(HWND hPage)
{
    FillMoments(hPage);
    FillChannelCombo(hPage, g_nCurMonitor);
    g_nReservation = LoadReservations(g_Reservation, RESERVATION_FILE);
    FillList(hPage);
    EnablePageControl(hPage, IDC_RESERVATION_ADD, g_nReservation != RESERVATION_COUNT);
    EnablePageControl(hPage, IDC_RESERVATION_DELETE, FALSE);
    return 1;
}

static int AddReservationTips(HWND hPage)
{
    static const TOOLTIPENTRY entries[] = {
        {IDC_RESERVATION_START_DATE, 0, 0, IDS_TIP_RESERVATION_START},
        {IDC_RESERVATION_START_HOUR, 0, 0, IDS_TIP_RESERVATION_START},
        {IDC_RESERVATION_START_MINUTE, 0, 0, IDS_TIP_RESERVATION_START},
        {IDC_RESERVATION_END_DATE, 0, 0, IDS_TIP_RESERVATION_END},
        {IDC_RESERVATION_END_HOUR, 0, 0, IDS_TIP_RESERVATION_END},
        {IDC_RESERVATION_END_MINUTE, 0, 0, IDS_TIP_RESERVATION_END},
        {IDC_RESERVATION_MONITOR, 0, 0, IDS_TIP_RESERVATION_MONITOR},
        {IDC_RESERVATION_CHANNEL, 0, 0, IDS_TIP_RESERVATION_CHANNEL},
        {IDC_RESERVATION_ASK, 0, 0, IDS_TIP_RESERVATION_ASK},
        {IDC_RESERVATION_ADD, 0, 0, IDS_TIP_RESERVATION_ADD},
        {IDC_RESERVATION_LIST, 0, 0, IDS_TIP_RESERVATION_LIST},
        {IDC_RESERVATION_DELETE, 0, 0, IDS_TIP_RESERVATION_DELETE},
        {IDC_RESERVATION_USE_END, 0, 0, IDS_TIP_RESERVATION_USE_END},
    };
    return AddToolTips(hPage, entries, ARRAYSIZE(entries));
}

static INT_PTR OnInit(HWND hPage)
{
    SetReservationPage(hPage);
    return InitReservationPage(hPage) && AddReservationTips(hPage) && LoadChangeMsg(hPage);
}

// The page may be gone after the message boxes of this; its controls are then just not found.
static void OnAdd(HWND hPage)
{
    if (!AddReservation(hPage))
        ShowStringBox(hPage, IDS_RESERVATION_INCOMPLETE, PRODUCT_TITLE, MB_OK | MB_ICONHAND);
    else if (g_nReservation == RESERVATION_COUNT)
        EnablePageControl(hPage, IDC_RESERVATION_ADD, FALSE);
    EnablePageControl(hPage, IDC_RESERVATION_DELETE, FALSE);
}

static void OnDelete(HWND hPage)
{
    const int row = SelectedReportRow(hPage, IDC_RESERVATION_LIST);
    if (row < 0)
        return;
    DeleteSelectedReservation(hPage, row);
    EnablePageControl(hPage, IDC_RESERVATION_DELETE, FALSE);
}

static INT_PTR OnCommand(HWND hPage, WORD control)
{
    switch (control) {
    case IDC_RESERVATION_ADD:
        OnAdd(hPage);
        return TRUE;
    case IDC_RESERVATION_DELETE:
        OnDelete(hPage);
        return TRUE;
    case IDC_RESERVATION_ASK:
        ToggleChangeMsg(hPage);
        return TRUE;
    case IDC_RESERVATION_CLOSE:
        DestroyWindow(hPage);
        return TRUE;
    }
    return FALSE;
}

static INT_PTR OnNotify(HWND hPage, const NMHDR *header)
{
    if (header->idFrom != IDC_RESERVATION_LIST)
        return FALSE;
    switch (header->code) {
    case NM_CLICK:
    case NM_DBLCLK:
        EnablePageControl(hPage, IDC_RESERVATION_DELETE, SelectedReportRow(hPage, IDC_RESERVATION_LIST) >= 0);
        return TRUE;
    case LVN_DELETEITEM:
        // By the button below, or at the end minute: there is room for another one.
        EnablePageControl(hPage, IDC_RESERVATION_ADD, TRUE);
        return TRUE;
    }
    return FALSE;
}

INT_PTR CALLBACK ReservationPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        return OnInit(hPage);
    case WM_COMMAND:
        return OnCommand(hPage, LOWORD(wParam));
    case WM_NOTIFY:
        return OnNotify(hPage, reinterpret_cast<const NMHDR *>(lParam));
    case WM_DESTROY:
        SetReservationPage(nullptr);
        return TRUE;
    }
    return FALSE;
}
