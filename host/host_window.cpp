// The host window: gets the plug-in's packets, the icon's and Windows' messages, and what the user chooses in the menu.
#include "host/host_window.h"

#include "host/monitor_window.h"
#include "host/packet_log.h"
#include "host/resource.h"
#include "host/start_up.h"
#include "host/text.h"
#include "host/tray.h"

constexpr UINT WM_HOST_CALL = WM_APP + 10; // lParam: the std::function to run
constexpr UINT WM_HOST_END = WM_APP + 11;  // wParam: the exit status

static const wchar_t s_szClass[] = L"TrayhubHost";

// ---- What the user asks for -----------------------------------------------------------------------------------------

void OpenPanel(HOSTAPP *app)
{
    const int result = app->plugin.slots[PLUGIN_SLOT_OPEN_PANEL](nullptr);
    LogLine("host>plugin", "slot", Format("slot=%d result=%d", PLUGIN_SLOT_OPEN_PANEL, result));
}

// Its window opens when the plug-in has found monitors, so without any the wish would seem to get lost.
static void OnOpenPanelByHand(HOSTAPP *app)
{
    SetForegroundWindow(app->hWnd); // or the panel would come up behind the program that the user was at
    OpenPanel(app);
    if (!HasNotice(&app->router, HOST_NOTICE_STARTED) && MillisecondsSincePacket(&app->router) > QUIET_TIME)
        MessageBoxW(app->hWnd, L"モニタがまだ見つかっていません。\nパネルは、モニタが見つかると開きます。", L"Trayhub",
                    MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND);
}

static void OnAbout(HOSTAPP *app)
{
    const PLUGINTEXTS texts = GetPluginTexts(&app->plugin);
    const std::wstring text = texts.title + L"\n\n" + texts.description + L"\n\nバージョン " + texts.version;
    MessageBoxW(app->hWnd, text.c_str(), L"プラグインについて", MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND);
}

static void OnCommand(HOSTAPP *app, WORD command)
{
    switch (command) {
    case IDM_OPEN_PANEL:
        OnOpenPanelByHand(app);
        break;
    case IDM_SHOW_MONITORS:
        ShowMonitorWindows();
        break;
    case IDM_ABOUT:
        OnAbout(app);
        break;
    case IDM_QUIT:
        EndHost(app, 0);
        break;
    default:
        break;
    }
}

static void OnTray(HOSTAPP *app, LPARAM mouseMessage)
{
    if (mouseMessage == WM_RBUTTONUP)
        OpenTrayMenu(app->hWnd, app->hInstance);
    else if (mouseMessage == WM_LBUTTONDBLCLK)
        OnOpenPanelByHand(app);
}

// Who began with windows ends with the last one: where there is no notification area, nothing else would be left to
// see.
static void OnMonitorClosed(HOSTAPP *app)
{
    if ((app->options.windows || !app->hasTray) && !IsAnyMonitorWindowVisible() && app->options.tour.empty())
        EndHost(app, 0);
}

// ---- The window -----------------------------------------------------------------------------------------------------

static LRESULT CALLBACK HostWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    HOSTAPP *app = reinterpret_cast<HOSTAPP *>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    if (!app)
        return DefWindowProcW(hWnd, message, wParam, lParam);
    if (message == TaskbarCreatedMessage() && app->hasTray) {
        AddTrayIcon(hWnd, app->hInstance);
        return 0;
    }
    switch (message) {
    case WM_HOST_PACKET:
        return RouterTakePacket(&app->router, reinterpret_cast<const HOSTPACKET *>(lParam));
    case WM_HOST_REPLY:
        return RouterTakeReply(&app->router, reinterpret_cast<const HOSTPACKET *>(lParam));
    case WM_HOST_CALL:
        (*reinterpret_cast<const std::function<void()> *>(lParam))();
        return 0;
    case WM_HOST_END:
        PostQuitMessage(static_cast<int>(wParam));
        return 0;
    case WM_TRAY:
        OnTray(app, lParam);
        return 0;
    case WM_MONITOR_MENU:
        OpenTrayMenu(hWnd, app->hInstance);
        return 0;
    case WM_MONITOR_CLOSED:
        OnMonitorClosed(app);
        return 0;
    case WM_COMMAND:
        OnCommand(app, LOWORD(wParam));
        return 0;
    case WM_TIMER:
        if (wParam == TIMER_PRESS)
            OnPressTimer(app);
        else
            OnStartUpTimer(app);
        return 0;
    case WM_ENDSESSION:
        if (wParam)
            StopRunningPlugin(app);
        return 0;
    case WM_CLOSE:
        EndHost(app, 0);
        return 0;
    default:
        return DefWindowProcW(hWnd, message, wParam, lParam);
    }
}

bool CreateHostWindow(HOSTAPP *app)
{
    WNDCLASSW wndClass = {};
    wndClass.lpfnWndProc = HostWndProc;
    wndClass.hInstance = app->hInstance;
    wndClass.hIcon = LoadIconW(app->hInstance, MAKEINTRESOURCEW(IDI_TRAYHUB));
    wndClass.lpszClassName = s_szClass;
    if (!RegisterClassW(&wndClass))
        return false;
    app->hWnd = CreateWindowExW(0, s_szClass, L"Trayhub", WS_OVERLAPPED, CW_USEDEFAULT, CW_USEDEFAULT, 100, 100,
                                nullptr, nullptr, app->hInstance, nullptr);
    if (!app->hWnd)
        return false;
    SetWindowLongPtrW(app->hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(app));
    return true;
}

void DestroyHostWindow(HOSTAPP *app)
{
    if (app->hWnd)
        DestroyWindow(app->hWnd);
    app->hWnd = nullptr;
    UnregisterClassW(s_szClass, app->hInstance);
}

void CallOnWindow(HOSTAPP *app, const std::function<void()> &function)
{
    SendMessageW(app->hWnd, WM_HOST_CALL, 0, reinterpret_cast<LPARAM>(&function));
}

void EndHost(HOSTAPP *app, int status)
{
    PostMessageW(app->hWnd, WM_HOST_END, static_cast<WPARAM>(status), 0);
}
