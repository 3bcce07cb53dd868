// A program with windows, for tests of the program in front. Started under any name, it shows a window of class
// "lvkernel_front" and makes a hidden one of class "lvkernel_front_dialog" that is owned by it. Ends when the first is
// closed.
#include <windows.h>

static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_DESTROY && !GetWindow(window, GW_OWNER))
        PostQuitMessage(0);
    return DefWindowProcA(window, message, wParam, lParam);
}

static HWND MakeWindow(HINSTANCE instance, LPCSTR className, HWND owner, DWORD style)
{
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = WindowProc;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = className;
    RegisterClassA(&windowClass);
    return CreateWindowA(className, className, style, 20, 20, 200, 100, owner, nullptr, instance, nullptr);
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    const HWND window = MakeWindow(instance, "lvkernel_front", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    MakeWindow(instance, "lvkernel_front_dialog", window, WS_POPUP | WS_CAPTION);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
    return 0;
}
