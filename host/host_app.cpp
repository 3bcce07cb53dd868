// The running host: the order in which its parts start and stop, and which of them gets which message.
#include "host/host_app.h"

#include "host/base/console.h"
#include "host/base/packet_log.h"
#include "host/base/resource.h"
#include "host/base/text.h"
#include "host/console_end.h"
#include "host/display_events.h"
#include "host/menu_commands.h"
#include "host/simulated/monitor_window.h"
#include "host/tray.h"

// ---- Messages -------------------------------------------------------------------------------------------------------

static void OnTray(HOSTAPP *app, LPARAM mouseMessage)
{
    if (mouseMessage == WM_RBUTTONUP)
        OpenHostMenu(&app->window, &app->reload);
    else if (mouseMessage == WM_LBUTTONDBLCLK)
        RunMenuCommand(&app->window, &app->plugin, &app->reload, IDM_OPEN_PANEL);
}

// Who began with windows ends with the last one: where there is no notification area, nothing else would be left to
// see.
static void OnMonitorClosed(HOSTAPP *app)
{
    if ((app->options.windows || !app->tray.isThere) && !IsAnyMonitorWindowVisible())
        EndHost(&app->window, 0);
}

static void OnTimer(HOSTAPP *app, WPARAM timer)
{
    switch (timer) {
    case TIMER_START_UP:
        OnStartUpTimer(&app->startUp);
        break;
    case TIMER_PRESS:
        OnPressTimer(&app->startUp);
        break;
    case TIMER_TRAY:
        OnTrayTimer(&app->tray);
        break;
    default:
        break;
    }
}

// The sender waits, so the panel comes after the answer.
static LRESULT OnShow(HOSTAPP *app)
{
    if (app->window.isEnding)
        return 0;
    LogEvent("a second start wishes the panel");
    PostMessageW(app->window.hWnd, WM_COMMAND, IDM_OPEN_PANEL, 0);
    return 1;
}

// Windows may end the process as soon as this is over, so the plug-in stops here: in order, as at any end.
static void OnSessionEnd(HOSTAPP *app)
{
    LogEvent("the session ends");
    app->window.isEnding = true;
    StopRunningPlugin(&app->plugin, &app->monitors);
    EndHost(&app->window, 0);
}

static void OnSessionChange(HOSTAPP *app, SESSIONCHANGE change)
{
    if (change == SESSION_SAME || app->window.isEnding)
        return;
    LogEvent(change == SESSION_RESTS ? "the monitors are left alone" : "the monitors may be used");
    LeaveMonitorsAlone(&app->monitors, change == SESSION_RESTS);
    if (change == SESSION_RESTS)
        PauseDetection(&app->reload);
    else
        OnDisplayEvent(&app->reload);
}

static bool TakeMessage(void *context, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result)
{
    HOSTAPP *app = static_cast<HOSTAPP *>(context);
    if (message == TaskbarCreatedMessage()) {
        OnTaskbarCreated(&app->tray);
        return true;
    }
    OnSessionChange(app, TakeSessionEvent(&app->session, message, wParam, lParam));
    if (IsDisplayEvent(message, wParam, lParam) && MayAccessMonitors(app->session))
        OnDisplayEvent(&app->reload);
    switch (message) {
    case WM_HOST_PACKET:
        *result = RouterTakePacket(&app->plugin.router, reinterpret_cast<const HOSTPACKET *>(lParam));
        return true;
    case WM_HOST_REPLY:
        *result = RouterTakeReply(&app->plugin.router, reinterpret_cast<const HOSTPACKET *>(lParam));
        return true;
    case WM_HOST_SHOW:
        *result = OnShow(app);
        return true;
    case WM_TRAY:
        OnTray(app, lParam);
        return true;
    case WM_MONITOR_MENU:
        OpenHostMenu(&app->window, &app->reload);
        return true;
    case WM_MONITOR_CLOSED:
        OnMonitorClosed(app);
        return true;
    case WM_COMMAND:
        RunMenuCommand(&app->window, &app->plugin, &app->reload, LOWORD(wParam));
        return true;
    case WM_TIMER:
        OnTimer(app, wParam);
        return true;
    case WM_QUERYENDSESSION:
        *result = TRUE; // nothing is asked: every change is kept already
        return true;
    case WM_ENDSESSION:
        if (wParam)
            OnSessionEnd(app);
        return true;
    case WM_CLOSE:
        EndHost(&app->window, 0);
        return true;
    default:
        return false;
    }
}

static int RunMessageLoop()
{
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

// ---- Start and stop -------------------------------------------------------------------------------------------------

// What the command line names and may be wrong about. Returns false with the reason in *error.
static bool OpenInputs(HOSTAPP *app, std::string *error)
{
    if (!OpenMonitors(&app->monitors, app->options, error))
        return false;
    for (const PRESS &press : app->options.presses) {
        if (!FindPressedButton(&app->monitors.simulation, press, error)) {
            *error = "--press " + press.text + ": " + *error;
            return false;
        }
    }
    if (!app->options.log.empty() && !OpenPacketLog(app->options.log, error)) {
        *error = app->options.log + ": the log cannot be written: " + *error;
        return false;
    }
    if (!LoadPlugin(app->options.plugin, &app->plugin.library, error))
        return false;
    FindMonitors(&app->monitors, false);
    return true;
}

static bool StartWindows(HOSTAPP *app)
{
    app->window.take = TakeMessage;
    app->window.context = app;
    if (!CreateHostWindow(&app->window, app->hInstance, app->options.another) ||
        !CreateMonitorWindows(&app->monitors.simulation, app->hInstance, app->window.hWnd))
        return false;
    if (!app->options.noTray)
        StartTray(&app->tray, app->window.hWnd, app->hInstance);
    TellTrouble(&app->tray, MonitorTrouble(&app->monitors));
    if (app->options.windows || !app->tray.isThere)
        ShowMonitorWindows();
    return true;
}

// The plug-in first, while the router still answers it; then the router, so that no thread is in the plug-in when it
// goes.
static void StopAll(HOSTAPP *app)
{
    StopRunningPlugin(&app->plugin, &app->monitors);
    StopDetection(&app->reload);
    UnloadStoppedPlugin(&app->plugin);
    StopTray(&app->tray);
    UnregisterSessionEvents(&app->sessionEvents);
    DestroyMonitorWindows();
    DestroyHostWindow(&app->window);
    app->isDriverStuck = !CloseMonitors(&app->monitors);
    ClosePacketLog();
    FinishConsoleEnd();
}

static int Fail(HOSTAPP *app, const std::string &reason, int status)
{
    ConsoleError(reason);
    StopAll(app);
    return status;
}

int RunHost(HOSTAPP *app)
{
    std::string error;
    if (!OpenInputs(app, &error))
        return Fail(app, error, 2);
    if (!StartWindows(app))
        return Fail(app, "the host's windows cannot be made: " + SystemErrorText(GetLastError()), 1);
    if (app->prepare && !app->prepare(app, &error))
        return Fail(app, error, 1);
    StartDetection(&app->reload);
    RegisterSessionEvents(&app->sessionEvents, app->window.hWnd);
    StartConsoleEnd(&app->window);
    if (!StartPlugin(&app->plugin, app->window.hWnd, app->monitors))
        return Fail(app, app->options.plugin + ": the plug-in does not start", 1);
    if (app->begin)
        app->begin(app);
    else
        AwaitStartUp(&app->startUp);
    if (app->leavesConsole)
        LeaveConsole();
    app->status = RunMessageLoop();
    StopAll(app);
    return app->status;
}
