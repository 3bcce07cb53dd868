// Reservations in "ontimer.ini" and in memory.
#include "timer/reservation_store.h"

#include "kernel/plugin.h"
#include "panel/resources/resource.h"
#include "settings/ini.h"

#include <fcntl.h>
#include <io.h>

#include <cstdlib>
#include <cstring>

// Table, count, file and question state, as the header describes them.
RESERVATION g_Reservation[RESERVATION_COUNT];
LONG g_nReservation = 0;
char g_szOnTimerIni[MAX_PATH] = "";
LONG nChangeMsg = CHANGE_AT_ONCE;

#define STARTED_MARKER "開始" // key "time" of a started reservation; sorts behind every clock time

constexpr int LCD_WIDTH = 12;
constexpr int CHANNEL_READ_SIZE = 10; // a channel name and its NUL

void FormatReservationSection(char *lpszName, int n)
{
    wsprintfA(lpszName, "Timer%d", n);
}

int ShowReservationMessage(HWND hOwner, UINT nString, UINT nStyle)
{
    char text[512] = "";
    LoadStringA(g_hInstance, nString, text, sizeof text);
    return MessageBoxA(hOwner, text, PRODUCT_TITLE, nStyle);
}

// ---- Loading ------------------------------------------------------------------------------------------------------

// The descriptor is never closed, on purpose: from the first load on, nobody can delete the file while we run.
static bool FileExists(LPCSTR path)
{
    return _open(path, _O_RDONLY) != -1;
}

// Reads a key of the slot's section as text. Result: its length.
static DWORD ReadText(const RESERVATION *slot, LPCSTR key, LPCSTR absent, char *buffer, DWORD size)
{
    return GetPrivateProfileStringA(slot->szSection, key, absent, buffer, size, g_szOnTimerIni);
}

// Model names are kept at their full width, with blanks behind. An empty name keeps its NUL in front.
static void ReadModel(RESERVATION *slot)
{
    memset(slot->szLcd, ' ', LCD_WIDTH);
    ReadText(slot, "lcd", "", slot->szLcd, LCD_WIDTH + 1);
    slot->szLcd[LCD_WIDTH] = '\0';
    for (int i = LCD_WIDTH - 1; i > 0; --i)
        if (slot->szLcd[i] == '\0')
            slot->szLcd[i] = ' ';
}

static LONG ReadMonitorIndex(const RESERVATION *slot)
{
    char text[4];
    ReadText(slot, "crtno", "", text, sizeof text);
    return strtol(text, nullptr, 10); // 0 when it is no number
}

// Both dates missing make a section absent; one of them missing does not.
static bool ReadDates(RESERVATION *slot)
{
    ReadText(slot, "date", "?", slot->szDate, sizeof slot->szDate);
    const DWORD endLength = ReadText(slot, "enddate", "?", slot->szEndDate, sizeof slot->szEndDate);
    return endLength != 1 || slot->szDate[0] != '?';
}

static bool LoadReservation(RESERVATION *slot, int n)
{
    FormatReservationSection(slot->szSection, n);
    if (!ReadDates(slot)) {
        slot->szSection[0] = '\0';
        return false;
    }
    ReadText(slot, "time", "", slot->szTime, sizeof slot->szTime);
    ReadText(slot, "endtime", "", slot->szEndTime, sizeof slot->szEndTime);
    ReadModel(slot);
    slot->nCrtNo = ReadMonitorIndex(slot);
    ReadText(slot, "channel", "", slot->szChannel, CHANNEL_READ_SIZE);
    return true;
}

int LoadReservations(RESERVATION *lpTable, LPCSTR lpszFileName)
{
    BuildIniPath(g_szOnTimerIni, lpszFileName);
    if (!FileExists(g_szOnTimerIni))
        return 0;
    int count = 0;
    for (int n = 0; n < RESERVATION_COUNT; ++n)
        if (LoadReservation(&lpTable[n], n))
            ++count;
    return count;
}

// ---- Writing ------------------------------------------------------------------------------------------------------

// The lines of a slot's section; lpszText: 256 bytes. The section ends with two NULs.
static void FormatSectionText(char *lpszText, const RESERVATION *slot)
{
    const int length = wsprintfA(lpszText,
                                 "date=%s\r\ntime=%s\r\nenddate=%s\r\nendtime=%s\r\nlcd=%s\r\ncrtno=%d\r\n"
                                 "channel=%s\r\n",
                                 slot->szDate, slot->szTime, slot->szEndDate, slot->szEndTime, slot->szLcd,
                                 slot->nCrtNo, slot->szChannel);
    lpszText[length + 1] = '\0';
}

int SaveReservation(int n)
{
    RESERVATION *slot = &g_Reservation[n];
    FormatReservationSection(slot->szSection, n);
    char text[256];
    FormatSectionText(text, slot);
    if (WriteIniSection(g_szOnTimerIni, slot->szSection, text))
        return 1;
    // The text speaks of profiles; users know it for every failed save.
    ShowReservationMessage(nullptr, IDS_PROFILE_NOT_SAVED, MB_OK | MB_ICONHAND);
    return 0;
}

// Failures are ignored: the table is what counts until the file is read again.
static void WriteKey(int n, LPCSTR key, LPCSTR value)
{
    char section[16];
    FormatReservationSection(section, n);
    if (g_szOnTimerIni[0])
        WritePrivateProfileStringA(section, key, value, g_szOnTimerIni);
}

void StoreReservationChannel(int n, LPCSTR lpszLabel)
{
    WriteKey(n, "channel", lpszLabel);
    lstrcpynA(g_Reservation[n].szChannel, lpszLabel, sizeof g_Reservation[n].szChannel);
}

void MarkReservationStarted(int n)
{
    WriteKey(n, "time", STARTED_MARKER);
    g_Reservation[n].szTime[0] = '\0';
}

void EmptyReservationSection(LPCSTR lpszPath, int n)
{
    char section[16];
    FormatReservationSection(section, n);
    WriteIniSection(lpszPath, section, "\0");
}

void FreeReservationSlot(int n)
{
    --g_nReservation;
    g_Reservation[n].szSection[0] = '\0';
}

void DeleteReservation(int n)
{
    EmptyReservationSection(g_szOnTimerIni, n);
    FreeReservationSlot(n);
}
