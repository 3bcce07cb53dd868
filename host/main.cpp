// trayhub.exe: reads the command line and runs the host.
#include <windows.h>

#include <algorithm>

#include "host/console.h"
#include "host/host_app.h"
#include "host/windows_monitors/monitor_report.h"

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int)
{
    const std::vector<std::string> words = CommandLineWords();
    const bool isTour = std::find(words.begin(), words.end(), "--tour") != words.end();
    OpenConsole(!isTour);

    HOSTAPP app = {};
    std::string error;
    app.hInstance = hInstance;
    if (!ParseOptions(words, &app.options, &error)) {
        ConsoleError(error);
        return 2;
    }
    if (app.options.help) {
        ConsoleText(HelpText());
        return 0;
    }
    if (app.options.list)
        return ListMonitors(app.options);
    if (!app.options.report.empty())
        return WriteMonitorReport(app.options);
    const int status = RunHost(&app);
    if (app.isDriverStuck)
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    return status;
}
