// The plug-in of a run: started, told to open its panel, stopped.
#include "host/running_plugin.h"

#include "host/base/packet_log.h"
#include "host/base/text.h"

bool StartPlugin(RUNNINGPLUGIN *plugin, HWND hWnd, const HOSTMONITORS &monitors)
{
    StartRouter(&plugin->router, plugin->library.slots, monitors.source.backend);
    plugin->isRunning = InitPlugin(&plugin->library, hWnd, PLUGIN_ENDPOINT_ID);
    if (plugin->isRunning)
        GreetPlugin(&plugin->router);
    return plugin->isRunning;
}

void OpenPanel(RUNNINGPLUGIN *plugin)
{
    plugin->panelWish = !plugin->isRunning || !HasNotice(&plugin->router, HOST_NOTICE_STARTED);
    if (!plugin->isRunning)
        return;
    const int result = plugin->library.slots[PLUGIN_SLOT_OPEN_PANEL](nullptr);
    plugin->panelDeferred = plugin->panelWish && result == 1;
    LogLine("host>plugin", "slot", Format("slot=%d result=%d", PLUGIN_SLOT_OPEN_PANEL, result));
}

int StopRunningPlugin(RUNNINGPLUGIN *plugin, HOSTMONITORS *monitors)
{
    if (!plugin->isRunning)
        return 0;
    plugin->isRunning = false;
    EndMonitorAccesses(monitors);
    return StopPlugin(&plugin->library);
}

void UnloadStoppedPlugin(RUNNINGPLUGIN *plugin)
{
    StopRouter(&plugin->router);
    UnloadPlugin(&plugin->library);
}
