// The end of a reservation while the panel is open: it goes by the list of the reservation page, so nothing happens
// while another page is shown.
//
// Kernel thread.
#pragma once

#include <windows.h>

// What the page does: deletes the reservation of slot n if its list shows it, then selects an input (VCP 0x60 value) of
// a monitor unless that is 0. Result: 0 when the list is empty; 1 otherwise, also when nothing was done.
typedef int (*DELETESHOWN)(int n, LONG nMonitor, WORD wInput);

// Set by the page while it exists; null without it.
extern DELETESHOWN g_lpfnDeleteShown;

// Has the page do it. Result: the page's; 0 without the page.
int DeleteShownReservation(int n, LONG nMonitor, WORD wInput);
