// The panel dialog's own controls; its tree and its pages have files of their own.
#include "panel/panel.h"

#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/no_monitor_page.h"
#include "panel/page_tree.h"
#include "panel/pages.h"
#include "panel/panel_width.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "panel/tooltips.h"
#include "panel/web_page.h"
#include "settings/ini.h"
#include "timer/scheduler.h"

#include <commctrl.h>
#include <shellapi.h>

#define HELP_FILE "lumvanap.chm"

static bool s_Opening = false; // the panel is being made, and may be asking its questions

// ---- Monitor list -------------------------------------------------------------------------------------------------

// The string with the name of an input (VCP 0x60 value). Result: its identifier; 0 for an input without a name here.
static UINT InputString(LONG input)
{
    static const UINT strings[] = {0, IDS_INPUT_ANALOG, IDS_INPUT_ANALOG2, IDS_INPUT_DIGITAL, IDS_INPUT_DIGITAL2};
    return input >= 1 && input < static_cast<LONG>(ARRAYSIZE(strings)) ? strings[input] : 0;
}

void FillMonitorCombo(HWND hPanel)
{
    for (LONG i = 1; i <= g_nMonitor; ++i) {
        char input[64] = "Undefined";
        if (const UINT string = InputString(GetVCP(i - 1, VCP_INPUT_SOURCE, nullptr)))
            LoadText(string, input, sizeof input);
        char text[128];
        wsprintfA(text, "%d: %s (%s) ", i, g_Monitor[i - 1].szModel, input);
        InsertComboEntry(hPanel, IDC_PANEL_MONITOR, i - 1, text);
    }
}

// Whatever the list notifies of: only another selection counts.
static void OnMonitorCombo(HWND hPanel)
{
    const LONG selected = SelectedComboEntry(hPanel, IDC_PANEL_MONITOR);
    if (!IsMonitorIndex(selected) || selected == g_nCurMonitor)
        return;
    g_nCurMonitor = selected;
    // Takes the selection to the root, which closes a page that is open.
    CollapsePageTree(hPanel);
    SetPanelWidening(hPanel, 0);
    ClearPageTree(hPanel);
    RebuildPageTree(hPanel);
}

// ---- Commands -----------------------------------------------------------------------------------------------------

static void OnHelp(HWND hPanel)
{
    char directory[MAX_PATH];
    BuildIniPath(directory, "");
    ShellExecuteA(hPanel, "open", HELP_FILE, "", directory, SW_SHOW);
}

static INT_PTR OnCommand(HWND hPanel, WORD control, WORD notification)
{
    switch (control) {
    case IDC_PANEL_MONITOR:
        OnMonitorCombo(hPanel);
        return TRUE;
    case IDC_PANEL_HELP:
        OnHelp(hPanel);
        return TRUE;
    case IDC_PANEL_LOGO:
        if (notification == STN_CLICKED) // a double click comes with a click of its own
            OpenWebPage(hPanel, WEB_PAGE_SUPPORT);
        return TRUE;
    case IDC_PANEL_UPDATE:
        EnableWindow(GetDlgItem(hPanel, IDC_PANEL_UPDATE), FALSE);
        return TRUE;
    }
    return FALSE;
}

static INT_PTR OnNotify(HWND hPanel, const NMHDR *header)
{
    if (header->idFrom != IDC_PANEL_TREE || header->code != TVN_SELCHANGEDA)
        return FALSE;
    SelectPage(hPanel, SelectedTreeItem(hPanel));
    return TRUE;
}

// ---- Life ---------------------------------------------------------------------------------------------------------

static INT_PTR OnInitNoMonitor(HWND hPanel)
{
    TakePanelSize(hPanel);
    EnableWindow(GetDlgItem(hPanel, IDC_PANEL_MONITOR), FALSE);
    BuildNoMonitorTree(hPanel);
    return TRUE;
}

static INT_PTR OnInitNormal(HWND hPanel)
{
    g_nCurMonitor = 0;
    FillMonitorCombo(hPanel);
    SelectComboEntry(hPanel, IDC_PANEL_MONITOR, g_nCurMonitor);
    BuildPageTree(hPanel);
    TakePanelSize(hPanel);
    return CheckPassedReservations(hPanel) && IsWindow(hPanel) && InitPanelToolTips(hPanel);
}

static INT_PTR OnInit(HWND hPanel)
{
    return g_bNoMonitor ? OnInitNoMonitor(hPanel) : OnInitNormal(hPanel);
}

// Comes for every window inside the panel, before it goes; only pages are remembered and have controls.
static void OnPageEnds(HWND hPage)
{
    ForgetPage(hPage);
    RemoveToolTips(hPage);
}

static void OnDestroy()
{
    DestroyNoMonitorPage();
    ForgetPages();
    ForgetPageTree();
    DestroyToolTip();
    g_hPanelDlg = nullptr;
}

INT_PTR CALLBACK PanelDlgProc(HWND hPanel, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        return OnInit(hPanel);
    case WM_COMMAND:
        return OnCommand(hPanel, LOWORD(wParam), HIWORD(wParam));
    case WM_NOTIFY:
        return OnNotify(hPanel, reinterpret_cast<const NMHDR *>(lParam));
    case WM_PARENTNOTIFY:
        if (LOWORD(wParam) == WM_DESTROY)
            OnPageEnds(reinterpret_cast<HWND>(lParam));
        return FALSE;
    case WM_CLOSE:
        DestroyWindow(hPanel);
        return TRUE;
    case WM_DESTROY:
        OnDestroy();
        return TRUE;
    }
    return FALSE;
}

int ShowPanel(HWND hOwner)
{
    if (g_hPanelDlg) {
        SetForegroundWindow(g_hPanelDlg);
        return 0;
    }
    if (s_Opening)
        return 0;
    // The questions of the opening dispatch messages. To a reservation that ends then the panel is not open yet: it has
    // no page whose list could show the end. Nor is one open that was closed behind its questions.
    s_Opening = true;
    const HWND hPanel = CreateDialogParamA(g_hInstance, MAKEINTRESOURCEA(IDD_PANEL), hOwner, PanelDlgProc, 0);
    s_Opening = false;
    if (!hPanel || !IsWindow(hPanel))
        return 0;
    g_hPanelDlg = hPanel;
    ShowWindow(hPanel, SW_SHOW);
    UpdateWindow(hPanel);
    return 1;
}
