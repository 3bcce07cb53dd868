// A window per simulated monitor: shows its picture, presses its buttons, hides when it is closed.
#include "host/simulated/monitor_window.h"

#include <windowsx.h>

#include <vector>

#include "host/base/resource.h"
#include "host/base/text.h"
#include "host/simulated/monitor_picture.h"
#include "host/simulated/press.h"

constexpr UINT WM_MONITOR_CHANGED = WM_APP + 3; // to a monitor's own window: repaint
static const wchar_t s_szClass[] = L"TrayhubMonitor";

static SIMULATION *s_pSimulation;   // whose monitors are shown
static std::vector<HWND> s_windows; // one per monitor, in order
static HWND s_hOwner;               // the host's window
static int s_nHeldButton;           // the button that the mouse went down on, 0 for none
static bool s_bHeldInside;          // whether the mouse is still on it

static int MonitorOf(HWND hWnd)
{
    return static_cast<int>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
}

// On whatever thread changed the value; the painting waits for the window's own.
static void OnMonitorChanged(void *, int monitor)
{
    if (const HWND hWnd = MonitorWindow(monitor))
        PostMessageW(hWnd, WM_MONITOR_CHANGED, 0, 0);
}

static void OnPaint(HWND hWnd)
{
    PAINTSTRUCT paint;
    const HDC hDC = BeginPaint(hWnd, &paint);
    const HDC hMemory = CreateCompatibleDC(hDC);
    const HBITMAP bitmap = CreateCompatibleBitmap(hDC, MONITOR_PICTURE_WIDTH, MONITOR_PICTURE_HEIGHT);
    const HGDIOBJ oldBitmap = SelectObject(hMemory, bitmap);
    const bool isHeldHere = GetCapture() == hWnd && s_bHeldInside;
    DrawMonitor(hMemory, GetMonitorState(s_pSimulation, MonitorOf(hWnd)), isHeldHere ? s_nHeldButton : 0);
    BitBlt(hDC, 0, 0, MONITOR_PICTURE_WIDTH, MONITOR_PICTURE_HEIGHT, hMemory, 0, 0, SRCCOPY);
    SelectObject(hMemory, oldBitmap);
    DeleteObject(bitmap);
    DeleteDC(hMemory);
    EndPaint(hWnd, &paint);
}

static int ButtonUnder(HWND hWnd, LPARAM position)
{
    return MonitorButtonAt(GetMonitorState(s_pSimulation, MonitorOf(hWnd)),
                           {GET_X_LPARAM(position), GET_Y_LPARAM(position)});
}

static void OnButtonDown(HWND hWnd, LPARAM position)
{
    s_nHeldButton = ButtonUnder(hWnd, position);
    if (!s_nHeldButton)
        return;
    s_bHeldInside = true;
    SetCapture(hWnd);
    InvalidateRect(hWnd, nullptr, FALSE);
}

static void OnMouseMove(HWND hWnd, LPARAM position)
{
    if (GetCapture() != hWnd)
        return;
    const bool inside = ButtonUnder(hWnd, position) == s_nHeldButton;
    if (inside != s_bHeldInside)
        InvalidateRect(hWnd, nullptr, FALSE);
    s_bHeldInside = inside;
}

// As with any button: it counts when the mouse goes up where it went down.
static void OnButtonUp(HWND hWnd, LPARAM position)
{
    if (GetCapture() != hWnd)
        return;
    const int button = s_nHeldButton;
    ReleaseCapture();
    if (ButtonUnder(hWnd, position) == button)
        PressAndLog(s_pSimulation, MonitorOf(hWnd), button);
}

static void OnCaptureLost(HWND hWnd)
{
    s_nHeldButton = 0;
    InvalidateRect(hWnd, nullptr, FALSE);
}

static void OnClose(HWND hWnd)
{
    ShowWindow(hWnd, SW_HIDE);
    PostMessageW(s_hOwner, WM_MONITOR_CLOSED, static_cast<WPARAM>(MonitorOf(hWnd)), 0);
}

static LRESULT CALLBACK MonitorWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_PAINT:
        OnPaint(hWnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        OnButtonDown(hWnd, lParam);
        return 0;
    case WM_MOUSEMOVE:
        OnMouseMove(hWnd, lParam);
        return 0;
    case WM_LBUTTONUP:
        OnButtonUp(hWnd, lParam);
        return 0;
    case WM_CAPTURECHANGED:
        OnCaptureLost(hWnd);
        return 0;
    case WM_RBUTTONUP:
        PostMessageW(s_hOwner, WM_MONITOR_MENU, static_cast<WPARAM>(MonitorOf(hWnd)), 0);
        return 0;
    case WM_MONITOR_CHANGED:
        InvalidateRect(hWnd, nullptr, FALSE);
        return 0;
    case WM_CLOSE:
        OnClose(hWnd);
        return 0;
    default:
        return DefWindowProcW(hWnd, message, wParam, lParam);
    }
}

static bool RegisterMonitorClass(HINSTANCE hInstance)
{
    WNDCLASSW wndClass = {};
    wndClass.style = CS_HREDRAW | CS_VREDRAW;
    wndClass.lpfnWndProc = MonitorWndProc;
    wndClass.hInstance = hInstance;
    wndClass.hIcon = LoadIconW(hInstance, MAKEINTRESOURCEW(IDI_TRAYHUB));
    wndClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    wndClass.lpszClassName = s_szClass;
    return RegisterClassW(&wndClass) != 0;
}

// Side by side from the upper left corner of the work area, row after row; what no longer fits begins there again, a
// bit further down.
static POINT PlaceOf(int monitor, const SIZE &size)
{
    RECT area = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const int columns = std::max(1L, (area.right - area.left) / size.cx);
    const int rows = std::max(1L, (area.bottom - area.top) / size.cy);
    const int place = monitor % (columns * rows), layer = monitor / (columns * rows);
    return {area.left + place % columns * size.cx + layer * 24, area.top + place / columns * size.cy + layer * 24};
}

bool CreateMonitorWindows(SIMULATION *simulation, HINSTANCE hInstance, HWND owner)
{
    constexpr DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
    s_pSimulation = simulation;
    s_hOwner = owner;
    if (!RegisterMonitorClass(hInstance))
        return false;
    RECT frame = {0, 0, MONITOR_PICTURE_WIDTH, MONITOR_PICTURE_HEIGHT};
    AdjustWindowRect(&frame, style, FALSE);
    const SIZE size = {frame.right - frame.left, frame.bottom - frame.top};
    const int count = static_cast<int>(simulation->monitors.size());
    for (int i = 0; i < count; i++) {
        const std::wstring title =
            L"モニタ " + std::to_wstring(i + 1) + L" - " + Widen(GetMonitorState(simulation, i).model);
        const POINT place = PlaceOf(i, size);
        const HWND hWnd = CreateWindowExW(0, s_szClass, title.c_str(), style, place.x, place.y, size.cx, size.cy,
                                          nullptr, nullptr, hInstance, nullptr);
        if (!hWnd)
            return false;
        SetWindowLongPtrW(hWnd, GWLP_USERDATA, i);
        s_windows.push_back(hWnd);
    }
    simulation->changed = OnMonitorChanged;
    return true;
}

void ShowMonitorWindows()
{
    for (const HWND hWnd : s_windows)
        ShowWindow(hWnd, IsIconic(hWnd) ? SW_RESTORE : SW_SHOW);
}

bool HasMonitorWindows()
{
    return !s_windows.empty();
}

bool IsAnyMonitorWindowVisible()
{
    for (const HWND hWnd : s_windows)
        if (IsWindowVisible(hWnd))
            return true;
    return false;
}

HWND MonitorWindow(int monitor)
{
    return monitor >= 0 && monitor < static_cast<int>(s_windows.size()) ? s_windows[static_cast<size_t>(monitor)]
                                                                        : nullptr;
}

void DestroyMonitorWindows()
{
    if (s_pSimulation)
        s_pSimulation->changed = nullptr;
    for (const HWND hWnd : s_windows)
        DestroyWindow(hWnd);
    s_windows.clear();
    UnregisterClassW(s_szClass, GetModuleHandleW(nullptr));
}
