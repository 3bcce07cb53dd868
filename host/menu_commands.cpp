// What the user asks for at the icon and at the monitors' windows.
#include "host/menu_commands.h"

#include "host/autostart.h"
#include "host/base/program_path.h"
#include "host/base/resource.h"
#include "host/base/text.h"
#include "host/simulated/monitor_window.h"
#include "host/tray.h"

// Its window opens when the plug-in has found monitors, so without any the wish would seem to get lost.
static void OnOpenPanel(HWND hWnd, RUNNINGPLUGIN *plugin)
{
    SetForegroundWindow(hWnd); // or the panel would come up behind the program that the user was at
    OpenPanel(plugin);
    if (!HasNotice(&plugin->router, HOST_NOTICE_STARTED) && MillisecondsSincePacket(&plugin->router) > QUIET_TIME)
        MessageBoxW(hWnd, L"モニタがまだ見つかっていません。\nパネルは、モニタが見つかると開きます。", L"Trayhub",
                    MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND);
}

static void OnAbout(HWND hWnd, const RUNNINGPLUGIN *plugin)
{
    if (!plugin->library.hModule)
        return;
    const PLUGINTEXTS texts = GetPluginTexts(&plugin->library);
    const std::wstring text = texts.title + L"\n\n" + texts.description + L"\n\nバージョン " + texts.version;
    MessageBoxW(hWnd, text.c_str(), L"プラグインについて", MB_OK | MB_ICONINFORMATION | MB_SETFOREGROUND);
}

static void OnAutostart(HWND hWnd)
{
    const std::wstring program = ProgramPath();
    const DWORD error = SetAutostart(program, !IsAutostartOn(program));
    if (error)
        MessageBoxW(hWnd, (L"起動時の設定を変更できません。\n" + Widen(SystemErrorText(error))).c_str(), L"Trayhub",
                    MB_OK | MB_ICONSTOP | MB_SETFOREGROUND);
}

void OpenHostMenu(const HOSTWINDOW *window, const RELOAD *reload)
{
    OpenTrayMenu(window->hWnd, window->hInstance,
                 {HasMonitorWindows(), CanDetect(reload), IsAutostartOn(ProgramPath())});
}

void RunMenuCommand(HOSTWINDOW *window, RUNNINGPLUGIN *plugin, RELOAD *reload, WORD command)
{
    switch (command) {
    case IDM_OPEN_PANEL:
        OnOpenPanel(window->hWnd, plugin);
        break;
    case IDM_SHOW_MONITORS:
        ShowMonitorWindows();
        break;
    case IDM_DETECT_MONITORS:
        DetectMonitors(reload);
        break;
    case IDM_ABOUT:
        OnAbout(window->hWnd, plugin);
        break;
    case IDM_AUTOSTART:
        OnAutostart(window->hWnd);
        break;
    case IDM_QUIT:
        EndHost(window, 0);
        break;
    default:
        break;
    }
}
