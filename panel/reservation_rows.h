// The reservation page's side of the reservations: an entry read from its controls, and the rows of its list.
//
// Each row of the list carries its slot index as item data. Kernel thread. hPage is the page's window; a null one has
// no list.
#pragma once

#include <windows.h>

// The reservation page while it exists, else null.
extern HWND g_hReservationPage;

// Sets it, and lets reservations end by its list; null: the page is gone. For the page.
void SetReservationPage(HWND hPage);

// The controls of the start and of the end. The lists hold every hour and every minute, so a position is a value.
struct MOMENTCONTROLS {
    int nDate;
    int nHour;
    int nMinute;
};
extern const MOMENTCONTROLS g_MomentControls[2];

// Makes a reservation for the panel's monitor from what is entered on the page, unless a rule refuses it; either way
// the user sees what came of it. Result: 1; 0 when an input is missing or no slot is free, which the caller reports.
int AddReservation(HWND hPage);

// Adds the row of a slot, at the position of its index where the list is that long.
void AddReservationRow(HWND hPage, int n);

// What a failed deletion of a row says, by who deletes it.
#define DELETE_ROW_ERROR_BUTTON "LVM_DELETEITEM_ERROR_BUTTON"
#define DELETE_ROW_ERROR_TIMER "LVM_DELETEITEM_ERROR_TIMER"

// Deletes a reservation and its row. A row that cannot be deleted is reported with the text; the reservation is gone
// all the same.
void DeleteReservationRow(HWND hPage, int n, int nRow, LPCSTR lpszErrorText);

// Deletes the reservation if the list shows it, then selects an input (VCP 0x60 value) of a monitor unless that is 0.
// Result: 0 when the list is empty or not there; 1 otherwise, also when nothing was done.
int DeleteReservationAndRestore(HWND hPage, int n, LONG nMonitor, WORD wInput);
