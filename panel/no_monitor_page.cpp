// The no-monitor page and its two web addresses.
#include "panel/no_monitor_page.h"

#include "panel/page_window.h"
#include "panel/resources/resource.h"
#include "panel/web_page.h"

static HWND s_hNoMonitorPage = nullptr; // as far as the panel knows

INT_PTR CALLBACK NoMonitorDlgProc(HWND hPage, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDC_NO_MONITOR_LIST)
            OpenWebPage(hPage, WEB_PAGE_MONITOR_LIST);
        if (LOWORD(wParam) == IDC_NO_MONITOR_DOWNLOAD)
            OpenWebPage(hPage, WEB_PAGE_DOWNLOAD);
        s_hNoMonitorPage = nullptr; // any command ends the panel's hold on the page
        return TRUE;
    case WM_DESTROY:
        s_hNoMonitorPage = nullptr;
        return TRUE;
    }
    return FALSE;
}

void CreateNoMonitorPage(HWND hPanel)
{
    s_hNoMonitorPage = CreatePageWindow(hPanel, TREE_ROOT);
}

void DestroyNoMonitorPage()
{
    if (s_hNoMonitorPage)
        DestroyWindow(s_hNoMonitorPage);
    s_hNoMonitorPage = nullptr;
}

bool IsNoMonitorPageOpen()
{
    return s_hNoMonitorPage != nullptr;
}
