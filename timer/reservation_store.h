// Timer reservations as data: the file "ontimer.ini", the table in memory that mirrors it, and what is written to both.
//
// A reservation is entered (all fields set), then started (no start time any more, "channel" = the input to go back
// to), then deleted (slot free, section without keys). Slot n always belongs to section "Timer" + n.
//
// Kernel thread. Until LoadReservations has run once, the table is empty and no reservation is due.
#pragma once

#include "timer/reservation_fields.h"

#include <windows.h>

#define RESERVATION_FILE "ontimer.ini" // beside the host's executable

// nChangeMsg: what happens at the start minute. Only the first two are ever stored in the registry.
enum : LONG {
    CHANGE_AT_ONCE = 0,
    CHANGE_ASK_FIRST = 1,
    CHANGE_ASKING = 2, // the question is on screen
};

extern RESERVATION g_Reservation[RESERVATION_COUNT];
extern LONG g_nReservation;           // how many; below 0 after a deletion without a loaded table
extern char g_szOnTimerIni[MAX_PATH]; // the file's path; empty until the first LoadReservations
extern LONG nChangeMsg;

// Fills lpTable (RESERVATION_COUNT slots) from a file beside the host's executable. Result: the number of reservations
// found, for the caller to store in g_nReservation; 0, with the table as it was, when the file cannot be opened.
int LoadReservations(RESERVATION *lpTable, LPCSTR lpszFileName);

// The functions below take a slot index from 0 to RESERVATION_COUNT - 1.

// Makes the slot used and writes its section. Result: 1; 0 after a message that it could not be written.
int SaveReservation(int n);

// Records the label of the input to go back to, in the file and in the table.
void StoreReservationChannel(int n, LPCSTR lpszLabel);

// Records that the reservation has started, so that it never starts again.
void MarkReservationStarted(int n);

// Empties the section, counts down and frees the slot.
void DeleteReservation(int n);

// The parts of a deletion, for callers that do something between them or for another file: the section's keys, then
// slot and count.
void EmptyReservationSection(LPCSTR lpszPath, int n);
void FreeReservationSlot(int n);
