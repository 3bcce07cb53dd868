// Timer reservations as data: the file "ontimer.ini", the table in memory that mirrors it, and what is written to both.
//
// A reservation is entered (all fields set), then started (no start time any more, "channel" = the input to go back
// to), then deleted (slot free, section without keys). Slot n always belongs to section "Timer" + n.
//
// Kernel thread. Until LoadReservations has run once, the table is empty and no reservation is due.
#pragma once

#include <windows.h>

#define RESERVATION_FILE "ontimer.ini" // beside the host's executable

constexpr int RESERVATION_COUNT = 10;
constexpr int RESERVATION_DATE_SIZE = 11; // "2006/05/01" and NUL
constexpr int RESERVATION_TIME_SIZE = 6;  // "20:00" and NUL

// One slot. Texts are Shift-JIS and terminated; those read from the file may be anything that fits.
struct RESERVATION {
    char szSection[16]; // empty = the slot is free, whatever stands in the other fields
    char szDate[RESERVATION_DATE_SIZE];
    char szTime[RESERVATION_TIME_SIZE]; // empty once started in this session, "開始" when read back as started
    char szEndDate[RESERVATION_DATE_SIZE];
    char szEndTime[RESERVATION_TIME_SIZE];
    char szLcd[14];     // model name: padded in front when entered, behind when read from the file
    LONG nCrtNo;        // monitor index; from the file, so not always one that exists
    char szChannel[12]; // what to switch to; once started, the label of the input to go back to
};
static_assert(sizeof(RESERVATION) == 80);

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

// Section name of a slot. lpszName: 16 bytes.
void FormatReservationSection(char *lpszName, int n);

// Message box with a text of the string table and the product title. hOwner may be null. Result: that of the box.
int ShowReservationMessage(HWND hOwner, UINT nString, UINT nStyle);
