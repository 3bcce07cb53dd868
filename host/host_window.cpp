// The host window: gets the plug-in's packets, the icon's and Windows' messages, and what the user chooses in the menu.
#include "host/host_window.h"
#include "host/base/program_path.h"

#include "host/autostart.h"
#include "host/base/packet_log.h"
#include "host/base/resource.h"
#include "host/base/text.h"
#include "host/display_events.h"
#include "host/reload.h"
#include "host/simulated/monitor_window.h"
#include "host/start_up.h"
#include "host/tray.h"
#include "host/tray_upkeep.h"

#include <initializer_list>

constexpr UINT WM_HOST_CALL = WM_APP + 10; // lParam: the std::function to run
constexpr UINT WM_HOST_END = WM_APP + 11;  // wParam: the exit status
constexpr UINT WM_HOST_RUN = WM_APP + 12;  // the next of app->calls is to be run

// ---- What the user asks for -----------------------------------------------------------------------------------------

void OpenPanel(HOSTAPP *app)
{
    app->panelWish = app->isReloading || !HasNotice(&app->router, HOST_NOTICE_STARTED);
    if (!app->isRunning)
        return;
    const int result = app->plugin.slots[PLUGIN_SLOT_OPEN_PANEL](nullptr);
    app->panelDeferred = app->panelWish && result == 1;
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
    if (!app->plugin.hModule)
        return;
    const PLUGINTEXTS texts = GetPluginTexts(&app->plugin);
    const std::wstring text = texts.title + L"\n\n" + texts.description + L"\n\nバージョン " + texts.version;
    MessageBoxW(app->hWnd, text.c_str(), L"プラグインについて", MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND);
}

static void OnAutostart(HOSTAPP *app)
{
    const std::wstring program = ProgramPath();
    const DWORD error = SetAutostart(program, !IsAutostartOn(program));
    if (error)
        MessageBoxW(app->hWnd, (L"起動時の設定を変更できません。\n" + Widen(SystemErrorText(error))).c_str(),
                    L"Trayhub", MB_OK | MB_ICONSTOP | MB_SETFOREGROUND);
}

static void OpenMenu(HOSTAPP *app)
{
    OpenTrayMenu(app->hWnd, app->hInstance, {HasMonitorWindows(), CanDetect(app), IsAutostartOn(ProgramPath())});
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
    case IDM_DETECT_MONITORS:
        DetectMonitors(app);
        break;
    case IDM_ABOUT:
        OnAbout(app);
        break;
    case IDM_AUTOSTART:
        OnAutostart(app);
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
        OpenMenu(app);
    else if (mouseMessage == WM_LBUTTONDBLCLK)
        OnOpenPanelByHand(app);
}

// Who began with windows ends with the last one: where there is no notification area, nothing else would be left to
// see.
static void OnMonitorClosed(HOSTAPP *app)
{
    if ((app->options.windows || !app->hasTray) && !IsAnyMonitorWindowVisible())
        EndHost(app, 0);
}

static void OnTimer(HOSTAPP *app, WPARAM timer)
{
    switch (timer) {
    case TIMER_START_UP:
        OnStartUpTimer(app);
        break;
    case TIMER_PRESS:
        OnPressTimer(app);
        break;
    case TIMER_TRAY:
        OnTrayTimer(app);
        break;
    default:
        break;
    }
}

// The sender waits, so the panel comes after the answer.
static LRESULT OnShow(HOSTAPP *app)
{
    if (app->isEnding)
        return 0;
    LogEvent("a second start wishes the panel");
    PostMessageW(app->hWnd, WM_COMMAND, IDM_OPEN_PANEL, 0);
    return 1;
}

// Windows may end the process as soon as this is over, so the plug-in stops here: in order, as at any end.
static void OnSessionEnd(HOSTAPP *app)
{
    LogEvent("the session ends");
    app->isEnding = true;
    StopRunningPlugin(app);
    EndHost(app, 0);
}

// ---- The window -----------------------------------------------------------------------------------------------------

static void RunNextCall(HOSTAPP *app)
{
    std::unique_lock lock(app->callMutex);
    if (app->calls.empty())
        return;
    const std::function<void()> function = std::move(app->calls.front());
    app->calls.pop_front();
    lock.unlock();
    function();
}

static LRESULT CALLBACK HostWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    HOSTAPP *app = reinterpret_cast<HOSTAPP *>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    if (!app)
        return DefWindowProcW(hWnd, message, wParam, lParam);
    if (message == TaskbarCreatedMessage()) {
        OnTaskbarCreated(app);
        return 0;
    }
    if (IsDisplayEvent(message, wParam, lParam))
        OnDisplayEvent(app);
    switch (message) {
    case WM_HOST_PACKET:
        return RouterTakePacket(&app->router, reinterpret_cast<const HOSTPACKET *>(lParam));
    case WM_HOST_REPLY:
        return RouterTakeReply(&app->router, reinterpret_cast<const HOSTPACKET *>(lParam));
    case WM_HOST_CALL:
        (*reinterpret_cast<const std::function<void()> *>(lParam))();
        return 0;
    case WM_HOST_SHOW:
        return OnShow(app);
    case WM_HOST_RUN:
        RunNextCall(app);
        return 0;
    case WM_HOST_END:
        app->isEnding = true;
        PostQuitMessage(static_cast<int>(wParam));
        return 0;
    case WM_TRAY:
        OnTray(app, lParam);
        return 0;
    case WM_MONITOR_MENU:
        OpenMenu(app);
        return 0;
    case WM_MONITOR_CLOSED:
        OnMonitorClosed(app);
        return 0;
    case WM_COMMAND:
        OnCommand(app, LOWORD(wParam));
        return 0;
    case WM_TIMER:
        OnTimer(app, wParam);
        return 0;
    case WM_QUERYENDSESSION:
        return TRUE; // nothing is asked: every change is kept already
    case WM_ENDSESSION:
        if (wParam)
            OnSessionEnd(app);
        return 0;
    case WM_CLOSE:
        EndHost(app, 0);
        return 0;
    default:
        return DefWindowProcW(hWnd, message, wParam, lParam);
    }
}

// Windows keeps messages of programs with fewer rights from one that runs as administrator. Explorer is such a one.
// Windows before Vista keeps nothing, and has no such function.
static void LetMessagesIn()
{
    typedef BOOL(WINAPI * CHANGEFILTER)(UINT, DWORD);
    constexpr DWORD ADD = 1;
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"user32.dll"), "ChangeWindowMessageFilter");
    const auto changeFilter = reinterpret_cast<CHANGEFILTER>(reinterpret_cast<void *>(found));
    if (!changeFilter)
        return;
    for (const UINT message : {TaskbarCreatedMessage(), WM_TRAY, WM_HOST_SHOW})
        changeFilter(message, ADD);
}

bool CreateHostWindow(HOSTAPP *app)
{
    LetMessagesIn();
    const wchar_t *title = app->options.another ? HOST_WINDOW_TITLE L" (another)" : HOST_WINDOW_TITLE;
    WNDCLASSW wndClass = {};
    wndClass.lpfnWndProc = HostWndProc;
    wndClass.hInstance = app->hInstance;
    wndClass.hIcon = LoadIconW(app->hInstance, MAKEINTRESOURCEW(IDI_TRAYHUB));
    wndClass.lpszClassName = HOST_WINDOW_CLASS;
    if (!RegisterClassW(&wndClass))
        return false;
    app->hWnd = CreateWindowExW(0, HOST_WINDOW_CLASS, title, WS_OVERLAPPED, CW_USEDEFAULT, CW_USEDEFAULT, 100, 100,
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
    UnregisterClassW(HOST_WINDOW_CLASS, app->hInstance);
}

void CallOnWindow(HOSTAPP *app, const std::function<void()> &function)
{
    SendMessageW(app->hWnd, WM_HOST_CALL, 0, reinterpret_cast<LPARAM>(&function));
}

void RunOnWindow(HOSTAPP *app, std::function<void()> function)
{
    {
        std::lock_guard lock(app->callMutex);
        app->calls.push_back(std::move(function));
    }
    PostMessageW(app->hWnd, WM_HOST_RUN, 0, 0);
}

void EndHost(HOSTAPP *app, int status)
{
    PostMessageW(app->hWnd, WM_HOST_END, static_cast<WPARAM>(status), 0);
}
