// What comes when the plug-in has started: the panel, commands and presses that the command line asks for.
#include "host/start_up.h"

#include "host/base/console.h"
#include "host/base/packet_log.h"
#include "host/base/text.h"

constexpr UINT START_UP_PERIOD = 200; // ms
constexpr UINT PRESS_PERIOD = 50;     // ms

static void EndOfCommandLine(STARTUP *startUp)
{
    if (startUp->options->quit)
        EndHost(startUp->window, startUp->isTrouble ? 1 : 0);
}

static void RunCommands(STARTUP *startUp)
{
    for (const PLUGINCOMMAND &command : startUp->options->commands) {
        const PLUGINANSWER answer = SendPluginCommand(&startUp->plugin->router, command);
        ConsoleLine(command.text + ": " + DescribePluginAnswer(command, answer));
        startUp->isTrouble = startUp->isTrouble || !WentWell(command, answer);
    }
    startUp->commandTick = GetTickCount();
    if (startUp->options->presses.empty())
        EndOfCommandLine(startUp);
    else
        SetTimer(startUp->window->hWnd, TIMER_PRESS, PRESS_PERIOD, nullptr);
}

// The plug-in clears the button registers at the end of its start-up, so the first press waits until that is over.
void OnPressTimer(STARTUP *startUp)
{
    const DWORD now = GetTickCount();
    const bool hasBegun = startUp->presses.waits || startUp->presses.done > 0;
    if (!hasBegun && !IsLinkQuiet(&startUp->plugin->router, QUIET_TIME) && now - startUp->commandTick < START_PATIENCE)
        return;
    if (!StepPresses(&startUp->presses, startUp->options->presses, &startUp->monitors->simulation, now))
        return;
    KillTimer(startUp->window->hWnd, TIMER_PRESS);
    startUp->isTrouble = startUp->isTrouble || startUp->presses.failed;
    EndOfCommandLine(startUp);
}

// It goes on asking for a moment after its notice; the commands may come between, as the user's could.
static void OnStarted(STARTUP *startUp)
{
    LogEvent("the plug-in has started");
    TellTrouble(startUp->tray, MonitorTrouble(startUp->monitors));
    const bool isFirst = !startUp->commandsDone;
    startUp->commandsDone = true;
    if ((startUp->plugin->panelWish && !startUp->plugin->panelDeferred) || (isFirst && startUp->options->panel))
        OpenPanel(startUp->plugin);
    startUp->plugin->panelWish = startUp->plugin->panelDeferred = false;
    if (isFirst)
        RunCommands(startUp);
}

static void OnNotStarted(STARTUP *startUp)
{
    LogEvent("the plug-in has not started");
    if (startUp->commandsDone)
        return;
    startUp->commandsDone = true;
    if (startUp->options->quit || !startUp->options->commands.empty() || !startUp->options->presses.empty())
        ConsoleError("the plug-in did not report that it has found its monitors; no command was given and no button "
                     "pressed");
    if (startUp->options->quit)
        EndHost(startUp->window, 1);
}

// Until the plug-in has found its monitors, which it tells with a notice.
void OnStartUpTimer(STARTUP *startUp)
{
    if (!startUp->isAwaited)
        return;
    const bool started = HasNotice(&startUp->plugin->router, HOST_NOTICE_STARTED);
    if (!started && MillisecondsSincePacket(&startUp->plugin->router) < START_PATIENCE)
        return;
    CancelStartUp(startUp);
    if (started)
        OnStarted(startUp);
    else
        OnNotStarted(startUp);
}

void AwaitStartUp(STARTUP *startUp)
{
    startUp->isAwaited = true;
    SetTimer(startUp->window->hWnd, TIMER_START_UP, START_UP_PERIOD, nullptr);
}

void CancelStartUp(STARTUP *startUp)
{
    startUp->isAwaited = false;
    KillTimer(startUp->window->hWnd, TIMER_START_UP);
}

bool IsAtCommandLine(const STARTUP *startUp)
{
    const OPTIONS &options = *startUp->options;
    const bool hasCommandLine = !options.commands.empty() || !options.presses.empty();
    return hasCommandLine && (!startUp->commandsDone || startUp->presses.done < options.presses.size());
}
