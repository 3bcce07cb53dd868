// The texts that are assigned to the buttons.
#include "launcher/assignments.h"

#include "launcher/launcher_settings.h"

int ReadAssignmentText(LPCSTR lpszFormat, LONG nMonitor, int nButton, char *lpszText)
{
    char name[64];
    wsprintfA(name, lpszFormat, nMonitor, nButton);
    return ReadLauncherText(name, lpszText);
}

void WriteAssignmentText(LPCSTR lpszFormat, LONG nMonitor, int nButton, LPCSTR lpszText)
{
    char name[64];
    wsprintfA(name, lpszFormat, nMonitor, nButton);
    WriteLauncherText(name, lpszText);
}

void DeleteAssignmentText(LPCSTR lpszFormat, LONG nMonitor, int nButton)
{
    char name[64];
    wsprintfA(name, lpszFormat, nMonitor, nButton);
    DeleteLauncherText(name);
}
