// The reservation check. No reservation is loaded yet.
#include "timer/scheduler.h"

int g_nReservation = 0;

void CheckReservations() {}
