// The monitors that Windows has, for the host.
#include "host/windows_monitors/windows_source.h"

#include "host/windows_monitors/windows_monitors.h"

static WINDOWSMONITORS *Monitors(void *context)
{
    return static_cast<WINDOWSMONITORS *>(context);
}

static std::vector<MONITORIDENTITY> Look(void *context)
{
    return LookForWindowsMonitors(Monitors(context));
}

static std::vector<MONITORIDENTITY> InUse(void *context)
{
    return FoundWindowsMonitors(Monitors(context));
}

static void Find(void *context, bool keepsPlaces)
{
    FindWindowsMonitors(Monitors(context), keepsPlaces);
}

static std::string Trouble(void *context, bool inEnglish)
{
    return inEnglish ? WindowsMonitorsTroubleInEnglish(Monitors(context)) : WindowsMonitorsTrouble(Monitors(context));
}

static void Rest(void *context, bool rests)
{
    RestWindowsMonitors(Monitors(context), rests);
}

static void Stop(void *context)
{
    StopWindowsMonitorAccesses(Monitors(context));
}

static bool Close(void *context)
{
    return CloseWindowsMonitors(Monitors(context));
}

MONITORSOURCE OpenWindowsSource(bool fresh)
{
    WINDOWSMONITOROPTIONS options = DefaultWindowsMonitorOptions();
    options.fresh = fresh;
    WINDOWSMONITORS *monitors = OpenWindowsMonitors(options);
    return {monitors, WindowsBackend(monitors), Look, InUse, Find, Trouble, Rest, Stop, Close};
}
