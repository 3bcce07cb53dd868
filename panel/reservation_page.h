// The reservation page: entry and list of the reservations, and whether their starts are asked about first.
#pragma once

#include <windows.h>

// The dialog procedure. The page's creation loads the reservations from their file; g_hReservationPage is the page
// while it exists. Kernel thread.
INT_PTR CALLBACK ReservationPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);
