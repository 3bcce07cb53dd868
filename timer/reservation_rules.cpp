// Moments as text, and the seven reasons for a refusal.
#include "timer/reservation_rules.h"

#include <cstring>

constexpr char SEPARATOR = '-';

bool FormatDate(char *lpszDate, const SYSTEMTIME *lpTime)
{
    lpszDate[0] = '\0';
    if (lpTime->wYear > 9999 || lpTime->wMonth > 99 || lpTime->wDay > 99)
        return false;
    wsprintfA(lpszDate, "%4d/%02d/%02d", lpTime->wYear, lpTime->wMonth, lpTime->wDay);
    return true;
}

void FormatTime(char *lpszTime, int nHour, int nMinute)
{
    wsprintfA(lpszTime, "%02d:%02d", nHour, nMinute);
}

void JoinMoment(char *lpszMoment, LPCSTR lpszDate, char chSeparator, LPCSTR lpszTime)
{
    lstrcpynA(lpszMoment, lpszDate, MOMENT_SIZE - 1);
    const int length = lstrlenA(lpszMoment);
    lpszMoment[length] = chSeparator;
    lstrcpynA(lpszMoment + length + 1, lpszTime, MOMENT_SIZE - length - 1);
}

// Bytes without a sign, so that Shift-JIS text sorts behind the digits: not every run-time library's comparison without
// case does so. Case is of no importance, as one of the two is always made of digits.
int CompareMoments(LPCSTR lpszFirst, LPCSTR lpszSecond)
{
    return strcmp(lpszFirst, lpszSecond);
}

void FormatMoments(MOMENTS *lpMoments, const RESERVATION *lpEntry, const SYSTEMTIME *lpNow)
{
    char date[RESERVATION_DATE_SIZE];
    char time[RESERVATION_TIME_SIZE];
    JoinMoment(lpMoments->szStart, lpEntry->szDate, SEPARATOR, lpEntry->szTime);
    JoinMoment(lpMoments->szEnd, lpEntry->szEndDate, SEPARATOR, lpEntry->szEndTime);
    FormatDate(date, lpNow);
    FormatTime(time, lpNow->wHour, lpNow->wMinute);
    JoinMoment(lpMoments->szNow, date, SEPARATOR, time);
    FormatTime(time, lpNow->wHour, lpNow->wMinute + 1);
    JoinMoment(lpMoments->szNextMinute, date, SEPARATOR, time);
}

// ---- Clashes ------------------------------------------------------------------------------------------------------

static int CompareStart(const RESERVATION *slot, LPCSTR moment)
{
    char start[MOMENT_SIZE];
    JoinMoment(start, slot->szDate, SEPARATOR, slot->szTime);
    return CompareMoments(start, moment);
}

static int CompareEnd(const RESERVATION *slot, LPCSTR moment)
{
    char end[MOMENT_SIZE];
    JoinMoment(end, slot->szEndDate, SEPARATOR, slot->szEndTime);
    return CompareMoments(end, moment);
}

int IsStartReserved(const RESERVATION *lpTable, LPCSTR lpszMoment)
{
    for (int n = 0; n < RESERVATION_COUNT; ++n)
        if (lpTable[n].szSection[0] && CompareStart(&lpTable[n], lpszMoment) == 0)
            return 1;
    return 0;
}

int IsEndReserved(const RESERVATION *lpTable, LPCSTR lpszMoment)
{
    for (int n = 0; n < RESERVATION_COUNT; ++n)
        if (lpTable[n].szSection[0] && CompareEnd(&lpTable[n], lpszMoment) == 0)
            return 1;
    return 0;
}

int IsEndAtOrAfter(const RESERVATION *lpTable, LPCSTR lpszMoment)
{
    for (int n = 0; n < RESERVATION_COUNT; ++n)
        if (lpTable[n].szSection[0] && CompareEnd(&lpTable[n], lpszMoment) >= 0)
            return 1;
    return 0;
}

REFUSAL FindRefusal(const RESERVATION *lpTable, const MOMENTS *lpMoments)
{
    const MOMENTS &m = *lpMoments;
    if (CompareMoments(m.szNow, m.szStart) > 0)
        return REFUSAL_PASSED;
    if (CompareMoments(m.szStart, m.szEnd) == 0)
        return REFUSAL_NO_LENGTH;
    if (CompareMoments(m.szStart, m.szEnd) > 0)
        return REFUSAL_END_FIRST;
    if (CompareMoments(m.szNextMinute, m.szStart) > 0)
        return REFUSAL_TOO_SOON;
    if (IsStartReserved(lpTable, m.szStart))
        return REFUSAL_START_TAKEN;
    if (IsEndReserved(lpTable, m.szEnd))
        return REFUSAL_END_TAKEN;
    if (IsEndAtOrAfter(lpTable, m.szStart))
        return REFUSAL_BEFORE_AN_END;
    return REFUSAL_NONE;
}
