// The network page's controls. Its ports are stored and shown; the link itself always uses its own.
#include "panel/network_page.h"

#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"
#include "panel/page_focus.h"
#include "panel/pages.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "panel/tooltips.h"
#include "server/identity.h"
#include "server/server_link.h"
#include "server/server_state.h"
#include "settings/setting_table.h"

#include <cstring>
#include <initializer_list>

HWND g_hNetworkPage = nullptr;

// ---- What is shown ------------------------------------------------------------------------------------------------

static void ShowNames(HWND hPage)
{
    SetDlgItemTextA(hPage, IDC_NETWORK_USER_NAME, g_szUserName);
    SetDlgItemTextA(hPage, IDC_NETWORK_GROUP_NAME, g_szGroupName);
}

static void EnableNames(HWND hPage, BOOL bEnable)
{
    for (const int control : {IDC_NETWORK_USER_NAME, IDC_NETWORK_GROUP_NAME, IDC_NETWORK_APPLY})
        EnablePageControl(hPage, control, bEnable);
}

static bool MayChangeNames()
{
    const LONG allowed = ReadSettingNumber(SETTING_ENABLE_CHANGE_NAME);
    return allowed != 0 && allowed != -1; // -1: not there
}

// What can be pressed next is enabled first, so that the focus can go there.
static void ShowLinkState(HWND hPage)
{
    const bool active = g_bCommActive == 1;
    if (active)
        EnablePageControl(hPage, IDC_NETWORK_STOP, TRUE);
    for (const int control : {IDC_NETWORK_UDP_PORT, IDC_NETWORK_TCP_PORT, IDC_NETWORK_START, IDC_NETWORK_DEFAULTS})
        EnablePageControl(hPage, control, !active);
    if (!active)
        EnablePageControl(hPage, IDC_NETWORK_STOP, FALSE);
    char status[64] = "";
    if (active)
        wsprintfA(status, "Server IP Address : %.15s", g_szServerAddr);
    SetDlgItemTextA(hPage, IDC_NETWORK_LOG, status);
}

static void RefreshNetworkPage(HWND hPage)
{
    SetDlgItemInt(hPage, IDC_NETWORK_UDP_PORT, g_wUdpPort, FALSE);
    SetDlgItemInt(hPage, IDC_NETWORK_TCP_PORT, g_wTcpPort, FALSE);
    ShowNames(hPage);
    EnableNames(hPage, MayChangeNames());
    ShowLinkState(hPage);
}

static int AddNetworkTips(HWND hPage)
{
    static const TOOLTIPENTRY entries[] = {
        {IDC_NETWORK_UDP_PORT, 0, 0, IDS_TIP_NETWORK_PORT},
        {IDC_NETWORK_TCP_PORT, 0, 0, IDS_TIP_NETWORK_PORT},
        {IDC_NETWORK_DEFAULTS, 0, 0, IDS_TIP_NETWORK_DEFAULTS},
        {IDC_NETWORK_START, 0, 0, IDS_TIP_NETWORK_START},
        {IDC_NETWORK_STOP, 0, 0, IDS_TIP_NETWORK_STOP},
        {IDC_NETWORK_USER_NAME, 0, 0, IDS_TIP_NETWORK_USER_NAME},
        {IDC_NETWORK_GROUP_NAME, 0, 0, IDS_TIP_NETWORK_GROUP_NAME},
        {IDC_NETWORK_LOG, 0, 0, IDS_TIP_NETWORK_LOG},
        {IDC_NETWORK_APPLY, 0, 0, IDS_TIP_NETWORK_APPLY},
        {IDC_NETWORK_TOGGLE, 0, 0, IDS_TIP_NETWORK_TOGGLE},
    };
    return AddToolTips(hPage, entries, ARRAYSIZE(entries));
}

// ---- The link -----------------------------------------------------------------------------------------------------

static void OnDefaults(HWND hPage)
{
    g_wUdpPort = SERVER_PORT;
    g_wTcpPort = SERVER_PORT;
    RefreshNetworkPage(hPage);
}

static void OnStop(HWND hPage)
{
    StopServerLink();
    g_bCommActive = 0;
    RefreshNetworkPage(hPage);
}

// Takes a port over from its edit. Without a port number there the user is told and sees the old one again. Port 0
// passes. False when nothing was taken over.
static bool ReadPort(HWND hPage, int control, WORD *port)
{
    constexpr UINT PORT_MAX = 65535;
    BOOL isNumber = FALSE;
    const UINT number = GetDlgItemInt(hPage, control, &isNumber, FALSE);
    if (!isNumber || number > PORT_MAX) {
        ShowStringBox(hPage, IDS_PORT_INVALID, PRODUCT_TITLE, MB_OK | MB_ICONHAND);
        SetDlgItemInt(hPage, control, *port, FALSE);
        return false;
    }
    *port = static_cast<WORD>(number);
    return true;
}

// The first port is kept also when the second one is wrong.
static void OnStart(HWND hPage)
{
    if (!ReadPort(hPage, IDC_NETWORK_UDP_PORT, &g_wUdpPort) || !ReadPort(hPage, IDC_NETWORK_TCP_PORT, &g_wTcpPort))
        return;
    g_bCommActive = 1;
    CreateServerLinkWindow(g_hKernelWnd); // one more listener beside those that run
    RefreshNetworkPage(hPage);
}

// ---- Names --------------------------------------------------------------------------------------------------------

// Takes a name over from its edit: as many whole characters as fit, the rest of the buffer zero, since all of it is
// stored. What the system itself cuts may end with the first half of a character.
static void ReadName(HWND hPage, int control, char (&szName)[SERVER_NAME_SIZE])
{
    char text[2 * SERVER_NAME_SIZE] = "";
    GetDlgItemTextA(hPage, control, text, sizeof text);
    size_t length = 0;
    for (const char *next; text[length]; length = static_cast<size_t>(next - text)) {
        next = CharNextA(text + length);
        if (static_cast<size_t>(next - text) >= sizeof szName)
            break;
    }
    memset(text + length, 0, sizeof text - length);
    memcpy(szName, text, sizeof szName);
}

static void ChangeNames(HWND hPage)
{
    EnableNames(hPage, FALSE);
    ReadName(hPage, IDC_NETWORK_USER_NAME, g_szUserName);
    ReadName(hPage, IDC_NETWORK_GROUP_NAME, g_szGroupName);
    WriteSettingString(SETTING_USER_NAME, g_szUserName, sizeof g_szUserName);
    WriteSettingString(SETTING_GROUP_NAME, g_szGroupName, sizeof g_szGroupName);
    WriteSettingNumber(SETTING_ENABLE_CHANGE_NAME, 0);
    PluginSendIdentity(nullptr);
}

// Asks until there is an answer, unless page or plug-in go while the question is open.
static void OnApply(HWND hPage)
{
    int answer;
    do
        answer = ShowStringBox(hPage, IDS_ASK_NAME_CHANGE, PRODUCT_TITLE, MB_YESNO | MB_TASKMODAL | MB_SETFOREGROUND);
    while (answer != IDYES && answer != IDNO && IsWindow(hPage) && !g_bAbort);
    if (answer == IDYES)
        ChangeNames(hPage);
    else if (answer == IDNO)
        ShowNames(hPage);
}

// ---- Page ---------------------------------------------------------------------------------------------------------

static INT_PTR OnInit(HWND hPage)
{
    g_hNetworkPage = hPage;
    if (!AddNetworkTips(hPage))
        return FALSE;
    for (const int control : {IDC_NETWORK_USER_NAME, IDC_NETWORK_GROUP_NAME})
        SendDlgItemMessageA(hPage, control, EM_LIMITTEXT, SERVER_NAME_SIZE - 1, 0);
    RefreshNetworkPage(hPage);
    return TRUE;
}

static INT_PTR OnCommand(HWND hPage, WORD control)
{
    switch (control) {
    case IDC_NETWORK_DEFAULTS:
        OnDefaults(hPage);
        return TRUE;
    case IDC_NETWORK_STOP:
        OnStop(hPage);
        return TRUE;
    case IDC_NETWORK_START:
        OnStart(hPage);
        return TRUE;
    case IDC_NETWORK_APPLY:
        OnApply(hPage);
        return TRUE;
    case IDC_NETWORK_TOGGLE:
        TogglePageHalf(hPage, TREE_COMM_LOG);
        return TRUE;
    }
    return FALSE;
}

INT_PTR CALLBACK NetworkPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        return OnInit(hPage);
    case WM_COMMAND:
        return OnCommand(hPage, LOWORD(wParam));
    case WM_CLOSE:
        DestroyWindow(hPage);
        return TRUE;
    case WM_DESTROY:
        g_hNetworkPage = nullptr;
        return TRUE;
    }
    return FALSE;
}
