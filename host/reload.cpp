// Takes up the monitors anew while the host runs.
#include "host/reload.h"

#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "host/display_events.h"
#include "host/host_monitors.h"
#include "host/host_window.h"
#include "host/panel_window.h"
#include "host/simulated/monitor_window.h"
#include "host/start_up.h"
#include "host/tray_upkeep.h"

// Until FinishReload there is no plug-in. Its panel goes with it.
static void BeginReload(HOSTAPP *app, bool byHand)
{
    LogEvent(byHand ? "the monitors are detected again, as the user wishes" : "the monitors have changed");
    app->isReloading = true;
    app->reloadByHand = byHand;
    app->formerMonitors = MonitorsInUse(app);
    app->panelWish = app->panelWish || FindPanel();
    CancelStartUp(app);
    StopRunningPlugin(app);
    StopRouter(&app->router);
    UnloadPlugin(&app->plugin);
    AskToFindMonitors(&app->watch);
}

static void ReplaceMonitorWindows(HOSTAPP *app)
{
    const bool areShown = IsAnyMonitorWindowVisible();
    DestroyMonitorWindows();
    if (CreateMonitorWindows(&app->simulation, app->hInstance, app->hWnd) && areShown)
        ShowMonitorWindows();
}

static void FinishReload(HOSTAPP *app)
{
    std::string error;
    if (app->isEnding)
        return;
    app->isReloading = false;
    if (MonitorsInUse(app) != app->formerMonitors)
        ReplaceMonitorWindows(app);
    TellMonitors(app, app->reloadByHand);
    if (LoadPlugin(app->options.plugin, &app->plugin, &error) && StartPlugin(app)) {
        AwaitStartUp(app);
        return;
    }
    LogEvent("the plug-in does not start again: " + error);
    TellFailure(app, L"プラグインを開始できません。\n" + Widen(error));
}

static void OnLooked(HOSTAPP *app, const LOOK &look)
{
    if (CanDetect(app) && IsChange(MonitorsInUse(app), look.seen, look.isLast))
        BeginReload(app, false);
}

void StartDetection(HOSTAPP *app)
{
    app->hNotify = RegisterDisplayEvents(app->hWnd);
    app->watch.look = [app] { return LookForMonitors(app); };
    app->watch.find = [app] { FindMonitors(app); };
    app->watch.looked = [app](const LOOK &look) { RunOnWindow(app, [app, look] { OnLooked(app, look); }); };
    app->watch.found = [app] { RunOnWindow(app, [app] { FinishReload(app); }); };
    StartMonitorWatch(&app->watch);
}

void OnDisplayEvent(HOSTAPP *app)
{
    if (app->keepsMonitors || app->isEnding)
        return;
    LogEvent("the displays may have changed");
    WatchMonitors(&app->watch);
}

// With --quit or presses to come, the monitors at the start are those that the command line is about.
bool CanDetect(const HOSTAPP *app)
{
    const bool hasCommandLine = !app->options.commands.empty() || !app->options.presses.empty();
    const bool isAtCommandLine =
        hasCommandLine && (!app->commandsDone || app->presses.done < app->options.presses.size());
    return !app->isReloading && !app->isEnding && !app->options.quit && !isAtCommandLine && !app->keepsMonitors;
}

void DetectMonitors(HOSTAPP *app)
{
    if (CanDetect(app))
        BeginReload(app, true);
}

void StopDetection(HOSTAPP *app)
{
    UnregisterDisplayEvents(app->hNotify);
    app->hNotify = nullptr;
    StopMonitorWatch(&app->watch);
}
