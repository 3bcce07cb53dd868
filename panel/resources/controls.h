// Calls on the controls of a dialog: list boxes, combo boxes and lists with columns, by the numbers of their controls.
// A control that the dialog does not have is passed over.
//
// The thread that owns the dialog. Entries, rows and columns count from 0.
#pragma once

#include <windows.h>

// ---- Texts ----

// Sets a control's text to one of the string table, of at most 255 bytes.
void SetControlString(HWND hDlg, int nControl, UINT nString);

// ---- List boxes. Results below 0: no such entry, or no room ----

int AddListEntry(HWND hDlg, int nList, LPCSTR lpszText);
int InsertListEntry(HWND hDlg, int nList, int nEntry, LPCSTR lpszText);
void DeleteListEntry(HWND hDlg, int nList, int nEntry);
int ListEntryCount(HWND hDlg, int nList);

// The entry with this very text, in any letter case.
int FindListEntry(HWND hDlg, int nList, LPCSTR lpszText);

// -1 for none.
int SelectedListEntry(HWND hDlg, int nList);
void SelectListEntry(HWND hDlg, int nList, int nEntry);

// The number that is kept with an entry.
int ListEntryData(HWND hDlg, int nList, int nEntry);
void SetListEntryData(HWND hDlg, int nList, int nEntry, int nData);

// The text of an entry. lpszText: cbText bytes. False with an empty text for an entry that is none, or is too long.
bool ReadListEntry(HWND hDlg, int nList, int nEntry, char *lpszText, int cbText);

// ---- Combo boxes, in the same way ----

int AddComboEntry(HWND hDlg, int nCombo, LPCSTR lpszText);
int InsertComboEntry(HWND hDlg, int nCombo, int nEntry, LPCSTR lpszText);
void DeleteComboEntry(HWND hDlg, int nCombo, int nEntry);
void ClearCombo(HWND hDlg, int nCombo);
int ComboEntryCount(HWND hDlg, int nCombo);
int SelectedComboEntry(HWND hDlg, int nCombo);
void SelectComboEntry(HWND hDlg, int nCombo, int nEntry);
int ComboEntryData(HWND hDlg, int nCombo, int nEntry);
void SetComboEntryData(HWND hDlg, int nCombo, int nEntry, int nData);
bool ReadComboEntry(HWND hDlg, int nCombo, int nEntry, char *lpszText, int cbText);

// ---- Lists with columns ----

// Adds a column. nWidth: pixels. nFormat: LVCFMT_LEFT or the like.
void AddReportColumn(HWND hDlg, int nReport, int nColumn, LPCSTR lpszText, int nWidth, int nFormat);

// A click anywhere in a row selects the row.
void SelectWholeRows(HWND hDlg, int nReport);

// Inserts a row with the text of its first cell, behind the last one when there are fewer before it. nData: kept with
// the row. Result: where the row stands; below 0 when there was no room.
int InsertReportRow(HWND hDlg, int nReport, int nRow, LPCSTR lpszText, int nData);

int ReportRowCount(HWND hDlg, int nReport);

// False for a row that the list does not have.
bool DeleteReportRow(HWND hDlg, int nReport, int nRow);

// False for a cell that the list does not have.
bool SetReportCell(HWND hDlg, int nReport, int nRow, int nColumn, LPCSTR lpszText);

// What is kept with a row. False for a row that the list does not have; *lpData stays then.
bool ReadReportData(HWND hDlg, int nReport, int nRow, int *lpData);

// -1 for none.
int SelectedReportRow(HWND hDlg, int nReport);
