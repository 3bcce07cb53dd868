// The icon in the notification area, its balloons and its menu.
#include "host/tray.h"

#include <shellapi.h>
#include <shlwapi.h>

#include "host/base/resource.h"

constexpr UINT TRAY_ICON_ID = 1;

static NOTIFYICONDATAW IconData(HWND hWnd)
{
    NOTIFYICONDATAW data = {};
    data.cbSize = NOTIFYICONDATAW_V1_SIZE;
    data.hWnd = hWnd;
    data.uID = TRAY_ICON_ID;
    return data;
}

// ---- The icon -------------------------------------------------------------------------------------------------------

// A notification area that was too busy to answer may have taken the icon all the same, and refuses it a second time.
bool AddTrayIcon(HWND hWnd, HINSTANCE hInstance)
{
    NOTIFYICONDATAW data = IconData(hWnd);
    data.uFlags = NIF_ICON | NIF_MESSAGE | NIF_TIP;
    data.uCallbackMessage = WM_TRAY;
    data.hIcon =
        static_cast<HICON>(LoadImageW(hInstance, MAKEINTRESOURCEW(IDI_TRAYHUB), IMAGE_ICON,
                                      GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    lstrcpynW(data.szTip, L"Trayhub", ARRAYSIZE(data.szTip));
    return Shell_NotifyIconW(NIM_ADD, &data) || Shell_NotifyIconW(NIM_MODIFY, &data);
}

void RemoveTrayIcon(HWND hWnd)
{
    NOTIFYICONDATAW data = IconData(hWnd);
    Shell_NotifyIconW(NIM_DELETE, &data);
}

UINT TaskbarCreatedMessage()
{
    static const UINT message = RegisterWindowMessageW(L"TaskbarCreated");
    return message;
}

// ---- Balloons -------------------------------------------------------------------------------------------------------

// Windows 95 and NT 4 have no such function.
static DWORD ShellVersion()
{
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"shell32.dll"), "DllGetVersion");
    const auto getVersion = reinterpret_cast<DLLGETVERSIONPROC>(reinterpret_cast<void *>(found));
    DLLVERSIONINFO version = {sizeof version, 0, 0, 0, 0};
    return getVersion && SUCCEEDED(getVersion(&version)) ? version.dwMajorVersion : 4;
}

DWORD NotifyIconDataSize(DWORD shellVersion)
{
    if (shellVersion < 5)
        return NOTIFYICONDATAW_V1_SIZE;
    return shellVersion == 5 ? NOTIFYICONDATAW_V2_SIZE : sizeof(NOTIFYICONDATAW);
}

static bool IsLowSurrogate(wchar_t c)
{
    return c >= 0xDC00 && c <= 0xDFFF;
}

std::wstring CutBalloonText(const std::wstring &text, size_t limit)
{
    if (text.size() < limit)
        return text;
    size_t end = limit - 2; // room for the ellipsis and the terminator
    const size_t line = text.rfind(L'\n', end);
    if (line != std::wstring::npos && line > 0)
        end = line;
    else if (IsLowSurrogate(text[end]))
        end--;
    return text.substr(0, end) + L'…';
}

void ShowBalloon(HWND hWnd, const BALLOON &balloon)
{
    NOTIFYICONDATAW data = IconData(hWnd);
    data.cbSize = NotifyIconDataSize(ShellVersion());
    if (data.cbSize == NOTIFYICONDATAW_V1_SIZE)
        return;
    data.uFlags = NIF_INFO;
    data.dwInfoFlags = balloon.isWarning ? NIIF_WARNING : NIIF_INFO;
    data.uTimeout = 15000; // of a shell that does not decide this by itself
    lstrcpynW(data.szInfoTitle, CutBalloonText(balloon.title, ARRAYSIZE(data.szInfoTitle)).c_str(),
              ARRAYSIZE(data.szInfoTitle));
    lstrcpynW(data.szInfo, CutBalloonText(balloon.text, ARRAYSIZE(data.szInfo)).c_str(), ARRAYSIZE(data.szInfo));
    Shell_NotifyIconW(NIM_MODIFY, &data);
}

// ---- The menu -------------------------------------------------------------------------------------------------------

static void EnableItem(HMENU menu, UINT item, bool isEnabled)
{
    EnableMenuItem(menu, item, static_cast<UINT>(MF_BYCOMMAND | (isEnabled ? MF_ENABLED : MF_GRAYED)));
}

void OpenTrayMenu(HWND hWnd, HINSTANCE hInstance, const TRAYMENU &state)
{
    const HMENU menu = LoadMenuW(hInstance, MAKEINTRESOURCEW(IDR_TRAY_MENU));
    const HMENU popup = GetSubMenu(menu, 0);
    SetMenuDefaultItem(popup, IDM_OPEN_PANEL, FALSE);
    EnableItem(popup, IDM_SHOW_MONITORS, state.hasMonitorWindows);
    EnableItem(popup, IDM_DETECT_MONITORS, state.canDetect);
    CheckMenuItem(popup, IDM_AUTOSTART,
                  static_cast<UINT>(MF_BYCOMMAND | (state.autostart ? MF_CHECKED : MF_UNCHECKED)));
    POINT mouse = {};
    GetCursorPos(&mouse);
    // Without the foreground the menu would stay open when the user clicks elsewhere, and without the message after it
    // would not open a second time.
    SetForegroundWindow(hWnd);
    TrackPopupMenu(popup, TPM_RIGHTBUTTON, mouse.x, mouse.y, 0, hWnd, nullptr);
    PostMessageW(hWnd, WM_NULL, 0, 0);
    DestroyMenu(menu);
}
