// What comes when the plug-in has started: the panel, commands and presses that the command line asks for.
#include "host/start_up.h"

#include "host/base/console.h"
#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "host/host_window.h"
#include "host/tray_upkeep.h"

constexpr UINT START_UP_PERIOD = 200; // ms
constexpr UINT PRESS_PERIOD = 50;     // ms

static void EndOfCommandLine(HOSTAPP *app)
{
    if (app->options.quit)
        EndHost(app, app->isTrouble ? 1 : 0);
}

static void RunCommands(HOSTAPP *app)
{
    for (const HOSTCOMMAND &command : app->options.commands) {
        const HOSTANSWER answer = SendHostCommand(&app->router, command);
        ConsoleLine(command.text + ": " + DescribeHostAnswer(command, answer));
        app->isTrouble = app->isTrouble || !WentWell(command, answer);
    }
    app->commandTick = GetTickCount();
    if (app->options.presses.empty())
        EndOfCommandLine(app);
    else
        SetTimer(app->hWnd, TIMER_PRESS, PRESS_PERIOD, nullptr);
}

// The plug-in clears the button registers at the end of its start-up, so the first press waits until that is over.
void OnPressTimer(HOSTAPP *app)
{
    const DWORD now = GetTickCount();
    const bool hasBegun = app->presses.waits || app->presses.done > 0;
    if (!hasBegun && !IsLinkQuiet(&app->router, QUIET_TIME) && now - app->commandTick < START_PATIENCE)
        return;
    if (!StepPresses(&app->presses, app->options.presses, &app->simulation, now))
        return;
    KillTimer(app->hWnd, TIMER_PRESS);
    app->isTrouble = app->isTrouble || app->presses.failed;
    EndOfCommandLine(app);
}

// It goes on asking for a moment after its notice; the commands may come between, as the user's could.
static void OnStarted(HOSTAPP *app)
{
    LogEvent("the plug-in has started");
    TellTrouble(app);
    const bool isFirst = !app->commandsDone;
    app->commandsDone = true;
    if ((app->panelWish && !app->panelDeferred) || (isFirst && app->options.panel))
        OpenPanel(app);
    app->panelWish = app->panelDeferred = false;
    if (isFirst)
        RunCommands(app);
}

static void OnNotStarted(HOSTAPP *app)
{
    LogEvent("the plug-in has not started");
    if (app->commandsDone)
        return;
    app->commandsDone = true;
    if (app->options.quit || !app->options.commands.empty() || !app->options.presses.empty())
        ConsoleError("the plug-in did not report that it has found its monitors; no command was given and no button "
                     "pressed");
    if (app->options.quit)
        EndHost(app, 1);
}

// Until the plug-in has found its monitors, which it tells with a notice.
void OnStartUpTimer(HOSTAPP *app)
{
    if (!app->awaitsStartUp)
        return;
    const bool started = HasNotice(&app->router, HOST_NOTICE_STARTED);
    if (!started && MillisecondsSincePacket(&app->router) < START_PATIENCE)
        return;
    CancelStartUp(app);
    if (started)
        OnStarted(app);
    else
        OnNotStarted(app);
}

void AwaitStartUp(HOSTAPP *app)
{
    app->awaitsStartUp = true;
    SetTimer(app->hWnd, TIMER_START_UP, START_UP_PERIOD, nullptr);
}

void CancelStartUp(HOSTAPP *app)
{
    app->awaitsStartUp = false;
    KillTimer(app->hWnd, TIMER_START_UP);
}
