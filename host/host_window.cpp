// The host window, and the functions that it runs for other threads.
#include "host/host_window.h"

#include <initializer_list>

#include "host/base/resource.h"
#include "host/tray.h"

constexpr UINT WM_HOST_CALL = WM_APP + 10; // lParam: the std::function to run
constexpr UINT WM_HOST_END = WM_APP + 11;  // wParam: the exit status
constexpr UINT WM_HOST_RUN = WM_APP + 12;  // the next of the window's calls is to be run

static void RunNextCall(HOSTWINDOW *window)
{
    std::unique_lock lock(window->callMutex);
    if (window->calls.empty())
        return;
    const std::function<void()> function = std::move(window->calls.front());
    window->calls.pop_front();
    lock.unlock();
    function();
}

static LRESULT CALLBACK HostWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    HOSTWINDOW *window = reinterpret_cast<HOSTWINDOW *>(GetWindowLongPtrW(hWnd, GWLP_USERDATA));
    if (!window)
        return DefWindowProcW(hWnd, message, wParam, lParam);
    switch (message) {
    case WM_HOST_CALL:
        (*reinterpret_cast<const std::function<void()> *>(lParam))();
        return 0;
    case WM_HOST_RUN:
        RunNextCall(window);
        return 0;
    case WM_HOST_END:
        window->isEnding = true;
        PostQuitMessage(static_cast<int>(wParam));
        return 0;
    default:
        break;
    }
    LRESULT result = 0;
    if (window->take(window->context, message, wParam, lParam, &result))
        return result;
    return DefWindowProcW(hWnd, message, wParam, lParam);
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

bool CreateHostWindow(HOSTWINDOW *window, HINSTANCE hInstance, bool isBesideOthers)
{
    LetMessagesIn();
    window->hInstance = hInstance;
    const wchar_t *title = isBesideOthers ? HOST_WINDOW_TITLE L" (another)" : HOST_WINDOW_TITLE;
    WNDCLASSW wndClass = {};
    wndClass.lpfnWndProc = HostWndProc;
    wndClass.hInstance = hInstance;
    wndClass.hIcon = LoadIconW(hInstance, MAKEINTRESOURCEW(IDI_TRAYHUB));
    wndClass.lpszClassName = HOST_WINDOW_CLASS;
    if (!RegisterClassW(&wndClass))
        return false;
    window->hWnd = CreateWindowExW(0, HOST_WINDOW_CLASS, title, WS_OVERLAPPED, CW_USEDEFAULT, CW_USEDEFAULT, 100, 100,
                                   nullptr, nullptr, hInstance, nullptr);
    if (!window->hWnd)
        return false;
    SetWindowLongPtrW(window->hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(window));
    return true;
}

void DestroyHostWindow(HOSTWINDOW *window)
{
    if (window->hWnd)
        DestroyWindow(window->hWnd);
    window->hWnd = nullptr;
    UnregisterClassW(HOST_WINDOW_CLASS, window->hInstance);
}

void CallOnWindow(HOSTWINDOW *window, const std::function<void()> &function)
{
    SendMessageW(window->hWnd, WM_HOST_CALL, 0, reinterpret_cast<LPARAM>(&function));
}

void RunOnWindow(HOSTWINDOW *window, std::function<void()> function)
{
    {
        std::lock_guard lock(window->callMutex);
        window->calls.push_back(std::move(function));
    }
    PostMessageW(window->hWnd, WM_HOST_RUN, 0, 0);
}

void EndHost(HOSTWINDOW *window, int status)
{
    PostMessageW(window->hWnd, WM_HOST_END, static_cast<WPARAM>(status), 0);
}
