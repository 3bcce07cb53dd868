// What a button starts, and the shell call that starts it.
#include "launcher/launch.h"

#include "launcher/launcher_settings.h"
#include "monitor/selection.h"

#include <shellapi.h>

#include <cstring>

constexpr char QUOTE = '"';

LPCSTR DecideLaunch(const ASSIGNMENT *lpAssignment, char *lpszParameters)
{
    lpszParameters[0] = '\0';
    if (!lpAssignment->bProgram)
        return lpAssignment->szParameter[0] ? lpAssignment->szParameter : nullptr;

    const bool document = strcmp(lpAssignment->szParameter, lpAssignment->szPath) == 0;
    // A parameter without a blank is not passed on: only what needs the quotes reaches the program.
    if (!document && lpAssignment->szPath[0] && strchr(lpAssignment->szParameter, ' '))
        wsprintfA(lpszParameters, "%c%s%c", QUOTE, lpAssignment->szParameter, QUOTE);
    return lpAssignment->szPath;
}

static void ReadAssignment(LONG monitor, int button, ASSIGNMENT *assignment)
{
    char displayName[SETTING_TEXT_SIZE];
    assignment->bProgram = ReadLauncherText(SETTING_PROGRAM_NAME, displayName, monitor, button);
    ReadLauncherText(SETTING_PROGRAM_PATH, assignment->szPath, monitor, button);
    ReadLauncherText(SETTING_PROGRAM_PARAMETER, assignment->szParameter, monitor, button);
}

int LaunchButton(HWND hWnd, LONG nMonitor, int nButton)
{
    ASSIGNMENT assignment;
    char parameters[LAUNCH_PARAMETERS_SIZE];
    // Also for a press on the first monitor itself: it acts on the assignments of the selected one.
    ReadAssignment(nMonitor == 0 ? g_nCurMonitor.load() : nMonitor, nButton, &assignment);
    if (const LPCSTR file = DecideLaunch(&assignment, parameters))
        ShellExecuteA(hWnd, "open", file, parameters, nullptr, SW_SHOW);
    return 1;
}
