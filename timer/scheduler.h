// Timer reservations: the check of every second.
#pragma once

// Number of reservations in memory; the check does nothing without one. Kernel thread.
extern int g_nReservation;

// Starts and ends the reservations that are due. Kernel thread.
void CheckReservations();
