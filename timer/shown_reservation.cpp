// The way from a reservation's end to the page that shows it.
#include "timer/shown_reservation.h"

DELETESHOWN g_lpfnDeleteShown = nullptr;

int DeleteShownReservation(int n, LONG nMonitor, WORD wInput)
{
    return g_lpfnDeleteShown ? g_lpfnDeleteShown(n, nMonitor, wInput) : 0;
}
