// The panel opened, and pages chosen in it.
#include "support/panel_session.h"

#include "kernel/plugin.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"

PanelTest::PanelTest()
{
    host.monitors = {ColorMonitor("NRV-PA1"), ColorMonitor("NRV-PA2")};
    for (TestMonitor &monitor : host.monitors)
        monitor.features[VCP_BUTTON_PRESSED] = {BUTTON_PRESSED_NONE, 0xFF00};
    host.monitors[0].capabilities = "(vcp(10 12 14(01 05 08 0B) 16 18 1A 60(01 03 05 07 09) E0 E8 F2 F4))";
    std::string labels;
    for (const char *model : {"NRV-PA1", "NRV-PA2"}) {
        labels += std::string("[") + model + "]\r\n";
        for (int button = 1; button <= 5; ++button)
            labels += "button" + std::to_string(button) + "=B" + std::to_string(button) + "\r\n";
        labels += "button6=POWER\r\n";
    }
    IniFolder::Write("Launcher.ini", labels);
}

static int WidthOf(HWND window)
{
    RECT place = {};
    GetWindowRect(window, &place);
    return place.right - place.left;
}

bool PanelTest::Open()
{
    if (!g_hKernelWnd) {
        if (!Start())
            return false;
        StartUp();
    }
    host.Run([] { PluginOpenPanel(nullptr); });
    m_width = WidthOf(g_hPanelDlg);
    return g_hPanelDlg != nullptr;
}

void PanelTest::Close()
{
    SendMessageA(g_hPanelDlg, WM_CLOSE, 0, 0);
}

void PanelTest::Choose(TREEITEM item)
{
    SendDlgItemMessageA(g_hPanelDlg, IDC_PANEL_TREE, TVM_SELECTITEM, TVGN_CARET,
                        reinterpret_cast<LPARAM>(TreeItemHandle(item)));
}

void PanelTest::ChooseMonitor(int monitor)
{
    Pick(g_hPanelDlg, IDC_PANEL_MONITOR, monitor);
}

HWND PanelTest::Panel() const
{
    return g_hPanelDlg;
}

HWND PanelTest::Page(TREEITEM item) const
{
    return PageWindow(item);
}

std::string PanelTest::Requests()
{
    std::string requests;
    for (const std::string &line : host.TakeLog())
        requests += line + "|";
    return requests;
}

int PanelTest::Widening() const
{
    return WidthOf(g_hPanelDlg) - m_width;
}
