// The only place for the casts that messages to controls need.
#include "panel/resources/controls.h"

#include "kernel/base/texts.h"

#include <commctrl.h>

constexpr int CONTROL_TEXT_SIZE = 256;

static int Ask(HWND hDlg, int control, UINT message, int number, const void *data)
{
    return static_cast<int>(
        SendDlgItemMessageA(hDlg, control, message, static_cast<WPARAM>(number), reinterpret_cast<LPARAM>(data)));
}

static int Ask(HWND hDlg, int control, UINT message, int number)
{
    return Ask(hDlg, control, message, number, nullptr);
}

// ---- Texts --------------------------------------------------------------------------------------------------------

void SetControlString(HWND hDlg, int nControl, UINT nString)
{
    char text[CONTROL_TEXT_SIZE];
    LoadText(nString, text, sizeof text);
    SetDlgItemTextA(hDlg, nControl, text);
}

// Both kinds of boxes answer a length of -1 for an entry that is none.
static bool ReadEntry(HWND hDlg, int control, UINT lengthMessage, UINT textMessage, int entry, char *text, int size)
{
    text[0] = '\0';
    const int length = Ask(hDlg, control, lengthMessage, entry);
    return length >= 0 && length < size && Ask(hDlg, control, textMessage, entry, text) >= 0;
}

// ---- List boxes ---------------------------------------------------------------------------------------------------

int AddListEntry(HWND hDlg, int nList, LPCSTR lpszText)
{
    return Ask(hDlg, nList, LB_ADDSTRING, 0, lpszText);
}

int InsertListEntry(HWND hDlg, int nList, int nEntry, LPCSTR lpszText)
{
    return Ask(hDlg, nList, LB_INSERTSTRING, nEntry, lpszText);
}

void DeleteListEntry(HWND hDlg, int nList, int nEntry)
{
    Ask(hDlg, nList, LB_DELETESTRING, nEntry);
}

int ListEntryCount(HWND hDlg, int nList)
{
    return Ask(hDlg, nList, LB_GETCOUNT, 0);
}

int FindListEntry(HWND hDlg, int nList, LPCSTR lpszText)
{
    return Ask(hDlg, nList, LB_FINDSTRINGEXACT, -1, lpszText);
}

int SelectedListEntry(HWND hDlg, int nList)
{
    return Ask(hDlg, nList, LB_GETCURSEL, 0);
}

void SelectListEntry(HWND hDlg, int nList, int nEntry)
{
    Ask(hDlg, nList, LB_SETCURSEL, nEntry);
}

int ListEntryData(HWND hDlg, int nList, int nEntry)
{
    return Ask(hDlg, nList, LB_GETITEMDATA, nEntry);
}

void SetListEntryData(HWND hDlg, int nList, int nEntry, int nData)
{
    SendDlgItemMessageA(hDlg, nList, LB_SETITEMDATA, static_cast<WPARAM>(nEntry), nData);
}

bool ReadListEntry(HWND hDlg, int nList, int nEntry, char *lpszText, int cbText)
{
    return ReadEntry(hDlg, nList, LB_GETTEXTLEN, LB_GETTEXT, nEntry, lpszText, cbText);
}

// ---- Combo boxes --------------------------------------------------------------------------------------------------

int AddComboEntry(HWND hDlg, int nCombo, LPCSTR lpszText)
{
    return Ask(hDlg, nCombo, CB_ADDSTRING, 0, lpszText);
}

int InsertComboEntry(HWND hDlg, int nCombo, int nEntry, LPCSTR lpszText)
{
    return Ask(hDlg, nCombo, CB_INSERTSTRING, nEntry, lpszText);
}

void DeleteComboEntry(HWND hDlg, int nCombo, int nEntry)
{
    Ask(hDlg, nCombo, CB_DELETESTRING, nEntry);
}

void ClearCombo(HWND hDlg, int nCombo)
{
    Ask(hDlg, nCombo, CB_RESETCONTENT, 0);
}

int ComboEntryCount(HWND hDlg, int nCombo)
{
    return Ask(hDlg, nCombo, CB_GETCOUNT, 0);
}

int SelectedComboEntry(HWND hDlg, int nCombo)
{
    return Ask(hDlg, nCombo, CB_GETCURSEL, 0);
}

void SelectComboEntry(HWND hDlg, int nCombo, int nEntry)
{
    Ask(hDlg, nCombo, CB_SETCURSEL, nEntry);
}

int ComboEntryData(HWND hDlg, int nCombo, int nEntry)
{
    return Ask(hDlg, nCombo, CB_GETITEMDATA, nEntry);
}

void SetComboEntryData(HWND hDlg, int nCombo, int nEntry, int nData)
{
    SendDlgItemMessageA(hDlg, nCombo, CB_SETITEMDATA, static_cast<WPARAM>(nEntry), nData);
}

bool ReadComboEntry(HWND hDlg, int nCombo, int nEntry, char *lpszText, int cbText)
{
    return ReadEntry(hDlg, nCombo, CB_GETLBTEXTLEN, CB_GETLBTEXT, nEntry, lpszText, cbText);
}

// ---- Lists with columns -------------------------------------------------------------------------------------------

void AddReportColumn(HWND hDlg, int nReport, int nColumn, LPCSTR lpszText, int nWidth, int nFormat)
{
    LVCOLUMNA column = {};
    column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
    column.fmt = nFormat;
    column.cx = nWidth;
    column.pszText = const_cast<char *>(lpszText);
    column.iSubItem = nColumn;
    Ask(hDlg, nReport, LVM_INSERTCOLUMNA, nColumn, &column);
}

void SelectWholeRows(HWND hDlg, int nReport)
{
    SendDlgItemMessageA(hDlg, nReport, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);
}

int InsertReportRow(HWND hDlg, int nReport, int nRow, LPCSTR lpszText, int nData)
{
    LVITEMA row = {};
    row.mask = LVIF_TEXT | LVIF_PARAM;
    row.iItem = nRow;
    row.pszText = const_cast<char *>(lpszText);
    row.lParam = nData;
    return Ask(hDlg, nReport, LVM_INSERTITEMA, 0, &row);
}

int ReportRowCount(HWND hDlg, int nReport)
{
    return Ask(hDlg, nReport, LVM_GETITEMCOUNT, 0);
}

bool DeleteReportRow(HWND hDlg, int nReport, int nRow)
{
    return Ask(hDlg, nReport, LVM_DELETEITEM, nRow) != 0;
}

bool SetReportCell(HWND hDlg, int nReport, int nRow, int nColumn, LPCSTR lpszText)
{
    LVITEMA cell = {};
    cell.mask = LVIF_TEXT;
    cell.iItem = nRow;
    cell.iSubItem = nColumn;
    cell.pszText = const_cast<char *>(lpszText);
    return nRow >= 0 && Ask(hDlg, nReport, LVM_SETITEMA, 0, &cell);
}

bool ReadReportData(HWND hDlg, int nReport, int nRow, int *lpData)
{
    LVITEMA row = {};
    row.mask = LVIF_PARAM;
    row.iItem = nRow;
    if (!Ask(hDlg, nReport, LVM_GETITEMA, 0, &row))
        return false;
    *lpData = static_cast<int>(row.lParam);
    return true;
}

int SelectedReportRow(HWND hDlg, int nReport)
{
    return static_cast<int>(
        SendDlgItemMessageA(hDlg, nReport, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)));
}
