// The icon in the notification area and its menu.
#include "host/tray.h"

#include <shellapi.h>

#include "host/resource.h"

constexpr UINT TRAY_ICON_ID = 1;

static NOTIFYICONDATAW IconData(HWND hWnd)
{
    NOTIFYICONDATAW data = {};
    data.cbSize = NOTIFYICONDATAW_V1_SIZE;
    data.hWnd = hWnd;
    data.uID = TRAY_ICON_ID;
    return data;
}

bool AddTrayIcon(HWND hWnd, HINSTANCE hInstance)
{
    NOTIFYICONDATAW data = IconData(hWnd);
    data.uFlags = NIF_ICON | NIF_MESSAGE | NIF_TIP;
    data.uCallbackMessage = WM_TRAY;
    data.hIcon =
        static_cast<HICON>(LoadImageW(hInstance, MAKEINTRESOURCEW(IDI_TRAYHUB), IMAGE_ICON,
                                      GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    lstrcpynW(data.szTip, L"Trayhub", ARRAYSIZE(data.szTip));
    return Shell_NotifyIconW(NIM_ADD, &data) != FALSE;
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

void OpenTrayMenu(HWND hWnd, HINSTANCE hInstance)
{
    const HMENU menu = LoadMenuW(hInstance, MAKEINTRESOURCEW(IDR_TRAY_MENU));
    POINT mouse = {};
    GetCursorPos(&mouse);
    // Without the foreground the menu would stay open when the user clicks elsewhere, and without the message after it
    // would not open a second time.
    SetForegroundWindow(hWnd);
    TrackPopupMenu(GetSubMenu(menu, 0), TPM_RIGHTBUTTON, mouse.x, mouse.y, 0, hWnd, nullptr);
    PostMessageW(hWnd, WM_NULL, 0, 0);
    DestroyMenu(menu);
}
