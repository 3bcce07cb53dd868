// DirectLink at start and stop, and the question before colours change.
#include "profiles/foreground.h"

#include "kernel/plugin.h"
#include "monitor/monitor_table.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "settings/registry.h"

SHAREDFLAG g_bDirectLink = 0;
SHAREDFLAG g_bAllMonitors = 0;
SHAREDFLAG g_bForeIdle = 1;

void InitForeground()
{
    g_bForeIdle = 1;
    g_bAllMonitors = 0;
}

void ResetForegroundState() {}

void StartDirectLink()
{
    if (ReadSettingDword(SUBKEY_GENERAL, REG_DWORD, "DirectLink") != 1)
        return;
    g_bDirectLink = 1;
    NotifyDirectLink(1);
}

void NotifyDirectLink(LONG bOn)
{
    SetDirectLink(g_bAllMonitors ? -1 : g_nCurMonitor.load(), bOn);
}

void ForegroundCheck(HWND) {}

int AskColorChange(HWND)
{
    DWORD noAsk = 0;
    REGENTRY entry = {SUBKEY_GENERAL, "NoAskDialog", REG_DWORD, &noAsk, sizeof noAsk};
    if (ReadSetting(&entry) && noAsk != 0)
        return 1;
    char question[256] = "";
    LoadStringA(g_hInstance, IDS_ASK_COLOR_CHANGE, question, sizeof question);
    return MessageBoxA(nullptr, question, PRODUCT_TITLE, MB_YESNO | MB_TASKMODAL | MB_SETFOREGROUND) == IDYES;
}
