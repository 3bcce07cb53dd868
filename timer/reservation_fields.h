// The fields of a reservation: how they are taken from the keys of its section, and the text that they make there.
// Needs of Windows nothing but its types and its string functions.
#pragma once

#include <windows.h>

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

constexpr int RESERVATION_TEXT_SIZE = 256; // of a section's lines

// Reads a key of a section into a buffer of cbBuffer bytes, cut and terminated; lpszAbsent stands in for a missing key.
// Result: the length of the text.
typedef DWORD (*READKEY)(LPCSTR lpszSection, LPCSTR lpszKey, LPCSTR lpszAbsent, char *lpszBuffer, DWORD cbBuffer);

// Section name of a slot. lpszName: 16 bytes.
void FormatReservationSection(char *lpszName, int n);

// Fills an entry from the section of slot n. False, with the entry free, for a section without both of its
// dates.
bool ReadReservation(RESERVATION *lpEntry, int n, READKEY lpfnReadKey);

// Forms the lines of an entry's section, with two NULs at the end. lpszText: RESERVATION_TEXT_SIZE bytes, which every
// entry fits into. Result: the length without these NULs.
int FormatReservationText(char *lpszText, const RESERVATION *lpEntry);
