// The host window: never shown, gets the plug-in's packets, the icon's and Windows' messages, and runs functions that
// other threads hand over to its own.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <mutex>

#define HOST_WINDOW_CLASS L"TrayhubHost"
#define HOST_WINDOW_TITLE L"Trayhub"
#define HOST_MUTEX L"Trayhub"

// From a second start to the window of the first: open the panel. Returns 1 unless the host is ending.
constexpr UINT WM_HOST_SHOW = WM_APP + 13;

struct HOSTWINDOW {
    HWND hWnd;
    HINSTANCE hInstance;
    bool isEnding; // the end was asked for: nothing new is begun. The window's thread

    // Takes every message but those of the functions below. Returns false for one that Windows is to handle, else true
    // with the result in *result. On the window's thread.
    bool (*take)(void *context, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);
    void *context;

    std::mutex callMutex;                    // guards calls
    std::deque<std::function<void()>> calls; // of RunOnWindow, in order
};

// Makes the window, whose messages go to `take` from then on. A host that runs beside others has another title, so that
// a second start does not find it. Returns false when that fails.
bool CreateHostWindow(HOSTWINDOW *window, HINSTANCE hInstance, bool isBesideOthers);

// Harmless when there is no window.
void DestroyHostWindow(HOSTWINDOW *window);

// Runs a function on the window's thread and returns when it is done. Any other thread.
void CallOnWindow(HOSTWINDOW *window, const std::function<void()> &function);

// The same without waiting, and from any thread; never, when the host ends before.
void RunOnWindow(HOSTWINDOW *window, std::function<void()> function);

// Has the message loop of the window's thread end with this status. Any thread.
void EndHost(HOSTWINDOW *window, int status);
