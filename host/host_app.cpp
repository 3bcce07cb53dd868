// The running host: its window, what it owns, and the order in which all of it starts and stops.
#include "host/host_app.h"

#include "host/console.h"
#include "host/monitor_window.h"
#include "host/packet_log.h"
#include "host/resource.h"
#include "host/text.h"
#include "host/tour/tour.h"
#include "host/tour/tour_settings.h"
#include "host/tray.h"

constexpr UINT WM_HOST_CALL = WM_APP + 10; // lParam: the std::function to run
constexpr UINT WM_HOST_END = WM_APP + 11;  // wParam: the exit status
constexpr UINT_PTR TIMER_START_UP = 1;     // looks whether the plug-in has started
constexpr UINT START_UP_PERIOD = 200;      // ms
constexpr UINT_PTR TIMER_PRESS = 2;        // makes the presses of the command line
constexpr UINT PRESS_PERIOD = 50;          // ms

static const wchar_t s_szClass[] = L"TrayhubHost";

// ---- What the user asks for -----------------------------------------------------------------------------------------

static void OnOpenPanel(HOSTAPP *app)
{
    const int result = app->plugin.slots[PLUGIN_SLOT_OPEN_PANEL](nullptr);
    LogLine("host>plugin", "slot", Format("slot=%d result=%d", PLUGIN_SLOT_OPEN_PANEL, result));
}

// Its window opens when the plug-in has found monitors, so without any the wish would seem to get lost.
static void OnOpenPanelByHand(HOSTAPP *app)
{
    SetForegroundWindow(app->hWnd); // or the panel would come up behind the program that the user was at
    OnOpenPanel(app);
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

// ---- Commands and presses of the command line -----------------------------------------------------------------------

static void EndOfCommandLine(HOSTAPP *app)
{
    if (app->options.quit)
        EndHost(app, app->isTrouble ? 1 : 0);
}

static void RunCommands(HOSTAPP *app)
{
    for (const HOSTCOMMAND &command : app->options.commands) {
        const HOSTANSWER answer = SendHostCommand(&app->router, command);
        ConsoleLine(command.text + ": " + DescribeHostAnswer(command, answer));
        app->isTrouble = app->isTrouble || !WentWell(command, answer);
    }
    app->commandTick = GetTickCount();
    if (app->options.presses.empty())
        EndOfCommandLine(app);
    else
        SetTimer(app->hWnd, TIMER_PRESS, PRESS_PERIOD, nullptr);
}

// The plug-in clears the button registers at the end of its start-up, so the first press waits until that is over.
static void OnPressTimer(HOSTAPP *app)
{
    const DWORD now = GetTickCount();
    const bool hasBegun = app->presses.waits || app->presses.done > 0;
    if (!hasBegun && !IsLinkQuiet(&app->router, QUIET_TIME) && now - app->commandTick < START_PATIENCE)
        return;
    if (!StepPresses(&app->presses, app->options.presses, &app->simulation, now))
        return;
    KillTimer(app->hWnd, TIMER_PRESS);
    app->isTrouble = app->isTrouble || app->presses.failed;
    EndOfCommandLine(app);
}

// Until the plug-in has found its monitors, which it tells with a notice. It goes on asking for a moment after it; the
// commands may come between, as the user's could.
static void OnStartUpTimer(HOSTAPP *app)
{
    if (app->commandsDone)
        return;
    const bool started = HasNotice(&app->router, HOST_NOTICE_STARTED);
    if (!started && MillisecondsSincePacket(&app->router) < START_PATIENCE)
        return;
    KillTimer(app->hWnd, TIMER_START_UP);
    app->commandsDone = true;
    if (started) {
        LogEvent("the plug-in has started");
        if (app->options.panel)
            OnOpenPanel(app);
        RunCommands(app);
        return;
    }
    LogEvent("the plug-in has not started");
    if (app->options.quit || !app->options.commands.empty() || !app->options.presses.empty())
        ConsoleError("the plug-in did not report that it has found its monitors; no command was given and no button "
                     "pressed");
    if (app->options.quit)
        EndHost(app, 1);
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

static bool CreateHostWindow(HOSTAPP *app)
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

void CallOnWindow(HOSTAPP *app, const std::function<void()> &function)
{
    SendMessageW(app->hWnd, WM_HOST_CALL, 0, reinterpret_cast<LPARAM>(&function));
}

void EndHost(HOSTAPP *app, int status)
{
    PostMessageW(app->hWnd, WM_HOST_END, static_cast<WPARAM>(status), 0);
}

// ---- Start and stop -------------------------------------------------------------------------------------------------

static void OpenMonitors(HOSTAPP *app)
{
    WINDOWSMONITOROPTIONS options = DefaultWindowsMonitorOptions();
    options.fresh = app->options.fresh;
    app->monitors = OpenWindowsMonitors(options);
    FindWindowsMonitors(app->monitors);
    for (const std::string &line : SplitAt(WindowsMonitorsTroubleInEnglish(app->monitors), '\n')) {
        ConsoleLine("trayhub: " + line);
        LogEvent(line);
    }
}

static MONITORBACKEND Backend(HOSTAPP *app)
{
    return app->monitors ? WindowsBackend(app->monitors) : SimulationBackend(&app->simulation);
}

// What the command line names and may be wrong about. Returns false with the reason in *error.
static bool OpenInputs(HOSTAPP *app, std::string *error)
{
    std::vector<MONITORFILE> files;
    if (!ReadMonitorFiles(app->options.monitors, &files, error))
        return false;
    for (const MONITORFILE &file : files)
        AddSimulatedMonitor(&app->simulation, file);
    for (const PRESS &press : app->options.presses) {
        if (!FindPressedButton(&app->simulation, press, error)) {
            *error = "--press " + press.text + ": " + *error;
            return false;
        }
    }
    if (!app->options.log.empty() && !OpenPacketLog(app->options.log, error)) {
        *error = app->options.log + ": the log cannot be written: " + *error;
        return false;
    }
    if (!LoadPlugin(app->options.plugin, &app->plugin, error))
        return false;
    if (app->options.windowsMonitors)
        OpenMonitors(app);
    return true;
}

static bool StartWindows(HOSTAPP *app)
{
    if (!CreateHostWindow(app) || !CreateMonitorWindows(&app->simulation, app->hInstance, app->hWnd))
        return false;
    const bool wantsTray = !app->options.noTray && app->options.tour.empty();
    app->hasTray = wantsTray && AddTrayIcon(app->hWnd, app->hInstance);
    if (app->options.windows || (!app->hasTray && app->options.tour.empty()))
        ShowMonitorWindows();
    return true;
}

static bool StartPlugin(HOSTAPP *app)
{
    StartRouter(&app->router, app->plugin.slots, Backend(app));
    app->isRunning = InitPlugin(&app->plugin, app->hWnd, PLUGIN_ENDPOINT_ID);
    if (app->isRunning)
        GreetPlugin(&app->router);
    return app->isRunning;
}

static int RunMessageLoop()
{
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

int StopRunningPlugin(HOSTAPP *app)
{
    if (!app->isRunning)
        return 0;
    app->isRunning = false;
    EndSimulationDelays(&app->simulation);
    if (app->monitors)
        StopWindowsMonitorAccesses(app->monitors);
    return StopPlugin(&app->plugin);
}

// The plug-in first, while the router still answers it; then the router, so that no thread is in the plug-in when it
// goes.
static void StopAll(HOSTAPP *app)
{
    StopRunningPlugin(app);
    StopRouter(&app->router);
    UnloadPlugin(&app->plugin);
    CloseTourSettings();
    if (app->hasTray)
        RemoveTrayIcon(app->hWnd);
    DestroyMonitorWindows();
    if (app->hWnd)
        DestroyWindow(app->hWnd);
    UnregisterClassW(s_szClass, app->hInstance);
    CloseSimulation(&app->simulation);
    if (app->monitors)
        app->isDriverStuck = !CloseWindowsMonitors(app->monitors);
    app->monitors = nullptr;
    ClosePacketLog();
}

static int Fail(HOSTAPP *app, const std::string &reason, int status)
{
    ConsoleError(reason);
    StopAll(app);
    return status;
}

int RunHost(HOSTAPP *app)
{
    std::string error;
    OpenSimulation(&app->simulation);
    if (!OpenInputs(app, &error))
        return Fail(app, error, 2);
    if (!StartWindows(app))
        return Fail(app, "the host's windows cannot be made: " + SystemErrorText(GetLastError()), 1);
    if (!app->options.tour.empty() && !PrepareTour(app, &error))
        return Fail(app, error, 1);
    if (!StartPlugin(app))
        return Fail(app, app->options.plugin + ": the plug-in does not start", 1);
    if (app->options.tour.empty())
        SetTimer(app->hWnd, TIMER_START_UP, START_UP_PERIOD, nullptr);
    else
        app->tour = std::thread(RunTour, app);
    app->status = RunMessageLoop();
    if (app->tour.joinable())
        app->tour.join();
    StopAll(app);
    return app->status;
}
