// trayhub.exe: reads the command line and runs the host.
#include <windows.h>

#include "host/base/console.h"
#include "host/host_app.h"
#include "host/monitor_report.h"
#include "host/single_instance.h"

constexpr DWORD FIRST_PATIENCE = 10000; // ms in which an instance that is starting or ending has to come to something

// Runs the host, or has the one that runs already open its panel.
static int RunOnce(HOSTAPP *app)
{
    HANDLE hold = nullptr;
    INSTANCEROLE role = INSTANCE_FIRST;
    if (!app->options.another)
        role = JoinInstances({HOST_MUTEX, HOST_WINDOW_CLASS, HOST_WINDOW_TITLE, WM_HOST_SHOW}, FIRST_PATIENCE, &hold);
    if (role == INSTANCE_SECOND) {
        ConsoleLine("trayhub runs already, and opens its panel");
        return 0;
    }
    if (role == INSTANCE_STUCK) {
        ConsoleError("trayhub runs already, but does not answer; the task manager can end it");
        return 1;
    }
    const int status = RunHost(app);
    LeaveInstances(hold);
    return status;
}

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int)
{
    OpenConsole(true);

    HOSTAPP app = {};
    std::string error;
    app.hInstance = hInstance;
    if (!ParseOptions(CommandLineWords(), &app.options, &error)) {
        ConsoleError(error);
        return 2;
    }
    if (app.options.help) {
        ConsoleText(HelpText());
        return 0;
    }
    if (app.options.list)
        return ListMonitors(app.options);
    if (app.options.readCode >= 0)
        return ReadMonitors(app.options);
    if (!app.options.report.empty())
        return WriteMonitorReport(app.options);
    app.leavesConsole = !StaysAtConsole(app.options);
    const int status = RunOnce(&app);
    if (app.isDriverStuck)
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    return status;
}
