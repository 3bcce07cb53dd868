// Reservations in "ontimer.ini" and in memory.
#include "timer/reservation_store.h"

#include "kernel/base/texts.h"
#include "panel/resources/strings.h"
#include "settings/ini.h"
#include "settings/ini_copy.h"

#include <fcntl.h>
#include <io.h>

// Table, count, file and question state, as the header describes them.
RESERVATION g_Reservation[RESERVATION_COUNT];
LONG g_nReservation = 0;
char g_szOnTimerIni[MAX_PATH] = "";
LONG nChangeMsg = CHANGE_AT_ONCE;

#define STARTED_MARKER "開始" // key "time" of a started reservation; sorts behind every clock time

// ---- Loading ------------------------------------------------------------------------------------------------------

// The descriptor is never closed: from the first load on, nobody can delete the file, and with it what is reserved,
// while we run.
static bool FileExists(LPCSTR path)
{
    return _open(path, _O_RDONLY) != -1;
}

static DWORD ReadKey(LPCSTR lpszSection, LPCSTR lpszKey, LPCSTR lpszAbsent, char *lpszBuffer, DWORD cbBuffer)
{
    return GetPrivateProfileStringA(lpszSection, lpszKey, lpszAbsent, lpszBuffer, cbBuffer, g_szOnTimerIni);
}

int LoadReservations(RESERVATION *lpTable, LPCSTR lpszFileName)
{
    BuildIniPath(g_szOnTimerIni, lpszFileName);
    RepairIniFile(g_szOnTimerIni);
    if (!FileExists(g_szOnTimerIni))
        return 0;
    int count = 0;
    for (int n = 0; n < RESERVATION_COUNT; ++n)
        if (ReadReservation(&lpTable[n], n, ReadKey))
            ++count;
    return count;
}

// ---- Writing ------------------------------------------------------------------------------------------------------

int SaveReservation(int n)
{
    RESERVATION *slot = &g_Reservation[n];
    FormatReservationSection(slot->szSection, n);
    char text[RESERVATION_TEXT_SIZE];
    FormatReservationText(text, slot);
    if (WriteIniSection(g_szOnTimerIni, slot->szSection, text))
        return 1;
    // The text speaks of profiles; users know it for every failed save.
    ShowStringBox(nullptr, IDS_PROFILE_NOT_SAVED, PRODUCT_TITLE, MB_OK | MB_ICONHAND);
    return 0;
}

// Failures are ignored: the table is what counts until the file is read again.
static void WriteKey(int n, LPCSTR key, LPCSTR value)
{
    char section[16];
    FormatReservationSection(section, n);
    WriteIniKey(g_szOnTimerIni, section, key, value);
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
