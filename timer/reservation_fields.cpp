// A reservation as keys and lines.
#include "timer/reservation_fields.h"

#include <cstdlib>
#include <cstring>

constexpr int LCD_WIDTH = 12;
constexpr int CHANNEL_READ_SIZE = 10; // a channel name and its NUL

void FormatReservationSection(char *lpszName, int n)
{
    wsprintfA(lpszName, "Timer%d", n);
}

// ---- Reading ------------------------------------------------------------------------------------------------------

// Model names are kept at their full width, with blanks behind. An empty name keeps its NUL in front.
static void ReadModel(RESERVATION *slot, READKEY readKey)
{
    memset(slot->szLcd, ' ', LCD_WIDTH);
    readKey(slot->szSection, "lcd", "", slot->szLcd, LCD_WIDTH + 1);
    slot->szLcd[LCD_WIDTH] = '\0';
    for (int i = LCD_WIDTH - 1; i > 0; --i)
        if (slot->szLcd[i] == '\0')
            slot->szLcd[i] = ' ';
}

static LONG ReadMonitorIndex(const RESERVATION *slot, READKEY readKey)
{
    char text[4];
    readKey(slot->szSection, "crtno", "", text, sizeof text);
    return static_cast<LONG>(strtol(text, nullptr, 10)); // 0 when it is no number
}

// Both dates missing make a section absent; one of them missing does not.
static bool ReadDates(RESERVATION *slot, READKEY readKey)
{
    readKey(slot->szSection, "date", "?", slot->szDate, sizeof slot->szDate);
    const DWORD endLength = readKey(slot->szSection, "enddate", "?", slot->szEndDate, sizeof slot->szEndDate);
    return endLength != 1 || slot->szDate[0] != '?';
}

bool ReadReservation(RESERVATION *lpEntry, int n, READKEY lpfnReadKey)
{
    FormatReservationSection(lpEntry->szSection, n);
    if (!ReadDates(lpEntry, lpfnReadKey)) {
        lpEntry->szSection[0] = '\0';
        return false;
    }
    lpfnReadKey(lpEntry->szSection, "time", "", lpEntry->szTime, sizeof lpEntry->szTime);
    lpfnReadKey(lpEntry->szSection, "endtime", "", lpEntry->szEndTime, sizeof lpEntry->szEndTime);
    ReadModel(lpEntry, lpfnReadKey);
    lpEntry->nCrtNo = ReadMonitorIndex(lpEntry, lpfnReadKey);
    lpfnReadKey(lpEntry->szSection, "channel", "", lpEntry->szChannel, CHANNEL_READ_SIZE);
    return true;
}

// ---- Writing ------------------------------------------------------------------------------------------------------

int FormatReservationText(char *lpszText, const RESERVATION *lpEntry)
{
    const int length = wsprintfA(lpszText,
                                 "date=%s\r\ntime=%s\r\nenddate=%s\r\nendtime=%s\r\nlcd=%s\r\ncrtno=%d\r\n"
                                 "channel=%s\r\n",
                                 lpEntry->szDate, lpEntry->szTime, lpEntry->szEndDate, lpEntry->szEndTime,
                                 lpEntry->szLcd, lpEntry->nCrtNo, lpEntry->szChannel);
    lpszText[length + 1] = '\0';
    return length;
}
