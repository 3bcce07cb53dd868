// Takes up the monitors anew while the host runs.
#include "host/reload.h"

#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "host/display_events.h"
#include "host/panel_window.h"
#include "host/simulated/monitor_window.h"

// Until FinishReload there is no plug-in. Its panel goes with it.
static void BeginReload(RELOAD *reload, bool byHand)
{
    RUNNINGPLUGIN *plugin = reload->plugin;
    LogEvent(byHand ? "the monitors are detected again, as the user wishes" : "there is a new monitor");
    reload->isUnderWay = true;
    reload->isByHand = byHand;
    reload->formerMonitors = MonitorsInUse(reload->monitors);
    plugin->panelWish = plugin->panelWish || FindPanel();
    CancelStartUp(reload->startUp);
    StopRunningPlugin(plugin, reload->monitors);
    UnloadStoppedPlugin(plugin);
    AskToFindMonitors(&reload->watch);
}

static void ReplaceMonitorWindows(const RELOAD *reload)
{
    const bool areShown = IsAnyMonitorWindowVisible();
    DestroyMonitorWindows();
    if (CreateMonitorWindows(&reload->monitors->simulation, reload->window->hInstance, reload->window->hWnd) &&
        areShown)
        ShowMonitorWindows();
}

static void FinishReload(RELOAD *reload)
{
    RUNNINGPLUGIN *plugin = reload->plugin;
    std::string error;
    if (reload->window->isEnding)
        return;
    reload->isUnderWay = false;
    if (MonitorsInUse(reload->monitors) != reload->formerMonitors)
        ReplaceMonitorWindows(reload);
    TellMonitors(reload->tray, CountMonitors(reload->monitors), MonitorTrouble(reload->monitors), reload->isByHand);
    if (LoadPlugin(reload->options->plugin, &plugin->library, &error) &&
        StartPlugin(plugin, reload->window->hWnd, *reload->monitors)) {
        AwaitStartUp(reload->startUp);
        return;
    }
    LogEvent("the plug-in does not start again: " + error);
    TellFailure(reload->tray, L"プラグインを開始できません。\n" + Widen(error));
}

static void OnLooked(RELOAD *reload, const LOOK &look)
{
    if (CanDetect(reload) && IsAnyNew(MonitorsInUse(reload->monitors), look.seen, look.isLast))
        BeginReload(reload, false);
}

void StartDetection(RELOAD *reload)
{
    HOSTWINDOW *window = reload->window;
    reload->hNotify = RegisterDisplayEvents(window->hWnd);
    reload->watch.look = [reload] { return LookForMonitors(reload->monitors); };
    reload->watch.find = [reload] { FindMonitors(reload->monitors, !reload->isByHand); };
    reload->watch.looked = [=](const LOOK &look) { RunOnWindow(window, [reload, look] { OnLooked(reload, look); }); };
    reload->watch.found = [=] { RunOnWindow(window, [reload] { FinishReload(reload); }); };
    StartMonitorWatch(&reload->watch);
}

void OnDisplayEvent(RELOAD *reload)
{
    if (reload->keepsMonitors || reload->window->isEnding)
        return;
    LogEvent("the displays may have changed");
    WatchMonitors(&reload->watch);
}

void PauseDetection(RELOAD *reload)
{
    CancelLooks(&reload->watch);
}

// With --quit or presses to come, the monitors at the start are those that the command line is about.
bool CanDetect(const RELOAD *reload)
{
    return !reload->isUnderWay && !reload->window->isEnding && !reload->options->quit &&
           !IsAtCommandLine(reload->startUp) && !reload->keepsMonitors;
}

void DetectMonitors(RELOAD *reload)
{
    if (CanDetect(reload))
        BeginReload(reload, true);
}

void StopDetection(RELOAD *reload)
{
    UnregisterDisplayEvents(reload->hNotify);
    reload->hNotify = nullptr;
    StopMonitorWatch(&reload->watch);
}
