// When a new reservation is refused, and the text arithmetic behind it.
//
// A moment is text of fixed width to the minute, so that the order of texts is the order of time; there is no other
// form of a time here. Needs of Windows nothing but its types and its string functions.
#pragma once

#include "timer/reservation_fields.h"

// Room for a date, a separator and a time, also for those that come over-long from the file.
constexpr int MOMENT_SIZE = 40;

// "2006/05/01". lpszDate: RESERVATION_DATE_SIZE bytes. False, with an empty text, for a date that does not fit:
// a year of five digits, or numbers of a clock that was never set.
bool FormatDate(char *lpszDate, const SYSTEMTIME *lpTime);

// "20:00", from values of at most two digits. lpszTime: RESERVATION_TIME_SIZE bytes.
void FormatTime(char *lpszTime, int nHour, int nMinute);

// Date, separator and time in one text. lpszMoment: MOMENT_SIZE bytes; what does not fit is cut.
void JoinMoment(char *lpszMoment, LPCSTR lpszDate, char chSeparator, LPCSTR lpszTime);

// The order of two moments: below, equal to or above 0, as with strcmp.
int CompareMoments(LPCSTR lpszFirst, LPCSTR lpszSecond);

// The moments that the rules compare, with '-' as the separator.
struct MOMENTS {
    char szStart[MOMENT_SIZE];
    char szEnd[MOMENT_SIZE];
    char szNow[MOMENT_SIZE];
    char szNextMinute[MOMENT_SIZE]; // never carried: the minute may be 60, which sorts as it should
};

// Fills them from a slot that need not be used yet, and from the clock.
void FormatMoments(MOMENTS *lpMoments, const RESERVATION *lpEntry, const SYSTEMTIME *lpNow);

// Why a reservation is refused. The rules are tried in this order.
enum REFUSAL : int {
    REFUSAL_PASSED,        // it starts before now
    REFUSAL_NO_LENGTH,     // start and end are the same
    REFUSAL_END_FIRST,     // it ends before it starts
    REFUSAL_TOO_SOON,      // it starts in the minute that runs
    REFUSAL_START_TAKEN,   // another one starts then
    REFUSAL_END_TAKEN,     // another one ends then
    REFUSAL_BEFORE_AN_END, // another one ends then or later
    REFUSAL_NONE,
};

// lpTable: the RESERVATION_COUNT slots that are there already.
REFUSAL FindRefusal(const RESERVATION *lpTable, const MOMENTS *lpMoments);

// Clashes with used slots of a table, whatever their monitors. Result: 1 or 0.
int IsStartReserved(const RESERVATION *lpTable, LPCSTR lpszMoment);
int IsEndReserved(const RESERVATION *lpTable, LPCSTR lpszMoment);

// Any end counts, also that of a reservation which lies wholly behind the moment: reservations are entered in the order
// of time, so this is no test for an overlap and must not become one.
int IsEndAtOrAfter(const RESERVATION *lpTable, LPCSTR lpszMoment);
