// The running host: its window, what it owns, and the order in which all of it starts and stops.
#include "host/host_app.h"

#include "host/base/console.h"
#include "host/base/packet_log.h"
#include "host/base/text.h"
#include "host/host_monitors.h"
#include "host/host_window.h"
#include "host/reload.h"
#include "host/simulated/monitor_window.h"
#include "host/start_up.h"
#include "host/tray_upkeep.h"

// What the command line names and may be wrong about. Returns false with the reason in *error.
static bool OpenInputs(HOSTAPP *app, std::string *error)
{
    if (!OpenMonitors(app, error))
        return false;
    for (const PRESS &press : app->options.presses) {
        if (!FindPressedButton(&app->simulation, press, error)) {
            *error = "--press " + press.text + ": " + *error;
            return false;
        }
    }
    if (!app->options.log.empty() && !OpenPacketLog(app->options.log, error)) {
        *error = app->options.log + ": the log cannot be written: " + *error;
        return false;
    }
    if (!LoadPlugin(app->options.plugin, &app->plugin, error))
        return false;
    FindMonitors(app);
    return true;
}

static bool StartWindows(HOSTAPP *app)
{
    if (!CreateHostWindow(app) || !CreateMonitorWindows(&app->simulation, app->hInstance, app->hWnd))
        return false;
    StartTray(app);
    TellTrouble(app);
    if (app->options.windows || !app->hasTray)
        ShowMonitorWindows();
    return true;
}

bool StartPlugin(HOSTAPP *app)
{
    StartRouter(&app->router, app->plugin.slots, app->monitors.backend);
    app->isRunning = InitPlugin(&app->plugin, app->hWnd, PLUGIN_ENDPOINT_ID);
    if (app->isRunning)
        GreetPlugin(&app->router);
    return app->isRunning;
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

int StopRunningPlugin(HOSTAPP *app)
{
    if (!app->isRunning)
        return 0;
    app->isRunning = false;
    EndMonitorAccesses(app);
    return StopPlugin(&app->plugin);
}

// The plug-in first, while the router still answers it; then the router, so that no thread is in the plug-in when it
// goes.
static void StopAll(HOSTAPP *app)
{
    StopRunningPlugin(app);
    StopDetection(app);
    StopRouter(&app->router);
    UnloadPlugin(&app->plugin);
    StopTray(app);
    DestroyMonitorWindows();
    DestroyHostWindow(app);
    CloseMonitors(app);
    ClosePacketLog();
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
    OpenSimulation(&app->simulation);
    if (!OpenInputs(app, &error))
        return Fail(app, error, 2);
    if (!StartWindows(app))
        return Fail(app, "the host's windows cannot be made: " + SystemErrorText(GetLastError()), 1);
    if (app->prepare && !app->prepare(app, &error))
        return Fail(app, error, 1);
    StartDetection(app);
    if (!StartPlugin(app))
        return Fail(app, app->options.plugin + ": the plug-in does not start", 1);
    if (app->begin)
        app->begin(app);
    else
        AwaitStartUp(app);
    app->status = RunMessageLoop();
    StopAll(app);
    return app->status;
}
