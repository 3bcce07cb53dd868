// The panel as a user goes through it.
#include "stress/panel_hands.h"

#include "kernel/base/plugin_state.h"
#include "kernel/plugin.h"
#include "launcher/button_poll.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "support/faults.h"
#include "support/ini_folder.h"

static TestMonitor FullMonitor(const std::string &model)
{
    TestMonitor monitor = ColorMonitor(model);
    monitor.capabilities = "(vcp(10 12 14(01 05 08 0B) 16 18 1A 60(01 03 05 07 09) E0 E8 F2 F4))";
    monitor.features[VCP_BUTTON_PRESSED] = {BUTTON_PRESSED_NONE, 0xFF00};
    monitor.features[VCP_TV_CHANNEL] = {777, 999};
    return monitor;
}

std::vector<TestMonitor> FullMonitors()
{
    return {FullMonitor("NRV-PA1"), FullMonitor("NRV-PA2")};
}

void WriteMonitorFiles()
{
    std::string capabilities, labels;
    for (const char *model : {"NRV-PA1", "NRV-PA2"}) {
        capabilities += std::string("[") + model + "]\r\nCapability=F2 F4\r\n";
        labels += std::string("[") + model + "]\r\n";
        for (int button = 1; button <= 6; ++button)
            labels += "button" + std::to_string(button) + "=B" + std::to_string(button) + "\r\n";
    }
    IniFolder::Write("lvcap.ini", capabilities);
    IniFolder::Write("Launcher.ini", labels);
}

bool OpenPanel(TestHost *host)
{
    host->Run([] {
        const PluginCode slot;
        PluginOpenPanel(nullptr);
    });
    return g_hPanelDlg != nullptr;
}

bool IsPageShown()
{
    for (int item = TREE_ROOT; item < TREE_ITEM_COUNT; ++item)
        if (IsWindowVisible(PageWindow(static_cast<TREEITEM>(item))))
            return true;
    return false;
}

void ChooseItem(TREEITEM item)
{
    SendDlgItemMessageA(g_hPanelDlg, IDC_PANEL_TREE, TVM_SELECTITEM, TVGN_CARET,
                        reinterpret_cast<LPARAM>(TreeItemHandle(item)));
}

int ChooseAllItems()
{
    int pages = 0;
    for (int item = TREE_ROOT + 1; item < TREE_ITEM_COUNT && g_hPanelDlg; ++item) {
        if (!TreeItemHandle(static_cast<TREEITEM>(item)))
            continue;
        ChooseItem(static_cast<TREEITEM>(item));
        pages += IsPageShown();
    }
    return pages;
}

HWND OpenPage(TestHost *host, TREEITEM item)
{
    ClosePanel();
    if (!OpenPanel(host))
        return nullptr;
    ChooseMonitor(1);
    ChooseMonitor(0);
    ChooseItem(item);
    return PageWindow(item);
}

void ChooseMonitor(int monitor)
{
    Pick(g_hPanelDlg, IDC_PANEL_MONITOR, monitor);
}

void ClosePanel()
{
    if (g_hPanelDlg)
        SendMessageA(g_hPanelDlg, WM_CLOSE, 0, 0);
}
