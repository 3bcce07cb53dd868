// Start, message loop and stop of the kernel thread, and the window classes that it registers.
#include "kernel/kernel_thread.h"

#include "kernel/kernel_window.h"
#include "kernel/plugin.h"
#include "server/server_link.h"

// The thread's control block, on the heap while it runs.
struct KERNELTHREADCTX {
    SHAREDFLAG bStop; // 1 makes the thread end
    HWND hHostWnd;    // recorded only
    HANDLE hThread;
    DWORD dwThreadId;
};

SHAREDWND g_hKernelWnd = nullptr;
HWND g_hPanelDlg = nullptr;
SHAREDFLAG g_bNotJapanese = 1;
static KERNELTHREADCTX *g_lpKernelThread = nullptr;

constexpr LANGID LANGUAGE_JAPANESE = 1041;
constexpr DWORD LOOP_PAUSE_MS = 10; // bounds both the reaction to bStop and the idle load
constexpr DWORD EXIT_FAILED = static_cast<DWORD>(-1);

// ---- Window -------------------------------------------------------------------------------------------------------

static bool RegisterKernelClass(HINSTANCE hInstance, LPCSTR lpszClass, WNDPROC lpfnProc)
{
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = lpfnProc;
    windowClass.hInstance = hInstance;
    // We ship no icon under the standard identifier, so both stay null: the windows are never seen.
    windowClass.hIcon = LoadIconA(hInstance, MAKEINTRESOURCEA(32512));
    windowClass.hIconSm = windowClass.hIcon;
    windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszClassName = lpszClass;
    return RegisterClassExA(&windowClass) != 0;
}

static bool RegisterKernelClasses(HINSTANCE hInstance, LPCSTR lpszKernelClass)
{
    return RegisterKernelClass(hInstance, lpszKernelClass, KernelWndProc) &&
           RegisterKernelClass(hInstance, SERVER_LINK_WINDOW_CLASS, ServerLinkWndProc);
}

// A class must not outlive the module that holds its window procedure.
static void UnregisterKernelClasses(HINSTANCE hInstance)
{
    UnregisterClassA(KERNEL_WINDOW_CLASS, hInstance);
    UnregisterClassA(SERVER_LINK_WINDOW_CLASS, hInstance);
}

static HWND CreateKernelWindow(HINSTANCE hInstance)
{
    const HWND hWnd = CreateWindowExA(0, KERNEL_WINDOW_CLASS, "Lumivane 2 Kernel Plugin", WS_CAPTION | WS_THICKFRAME,
                                      CW_USEDEFAULT, CW_USEDEFAULT, 480, 80, nullptr, nullptr, hInstance, nullptr);
    // The creation sequence may have destroyed the window again.
    if (!hWnd || !IsWindow(hWnd))
        return nullptr;
    ShowWindow(hWnd, SW_HIDE);
    return hWnd;
}

// ---- Thread -------------------------------------------------------------------------------------------------------

static void HandleMessage(MSG *message)
{
    if (IsDialogMessageA(g_hPanelDlg, message))
        return;
    TranslateMessage(message);
    DispatchMessageA(message);
}

// Polls, so that the host's thread stops it by a plain flag.
static DWORD RunMessageLoop(const KERNELTHREADCTX *context)
{
    MSG message;
    for (;;) {
        while (!PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE) && !context->bStop)
            Sleep(LOOP_PAUSE_MS);
        if (context->bStop)
            return DestroyWindow(g_hKernelWnd) ? 0 : EXIT_FAILED;
        if (GetMessageA(&message, nullptr, 0, 0) == -1)
            return EXIT_FAILED;
        HandleMessage(&message);
        // The stop posts one, too: that one is no end of its own.
        if (message.message == WM_QUIT && !context->bStop)
            return static_cast<DWORD>(message.wParam);
    }
}

static DWORD RunKernelWindow(const KERNELTHREADCTX *context)
{
    if (!RegisterKernelClasses(g_hInstance, KERNEL_WINDOW_CLASS))
        return EXIT_FAILED;
    const HWND hWnd = CreateKernelWindow(g_hInstance);
    g_hKernelWnd = hWnd;
    return hWnd ? RunMessageLoop(context) : EXIT_FAILED;
}

static DWORD WINAPI KernelThreadProc(void *parameter)
{
    g_bNotJapanese = GetSystemDefaultLangID() == LANGUAGE_JAPANESE ? 0 : 1;
    const DWORD exitCode = RunKernelWindow(static_cast<const KERNELTHREADCTX *>(parameter));
    UnregisterKernelClasses(g_hInstance);
    return exitCode;
}

int StartKernelThread(HWND hHostWnd)
{
    void *memory = HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(KERNELTHREADCTX));
    g_lpKernelThread = static_cast<KERNELTHREADCTX *>(memory);
    if (!g_lpKernelThread)
        return 0;
    g_lpKernelThread->hHostWnd = hHostWnd;
    g_lpKernelThread->hThread =
        CreateThread(nullptr, 0, KernelThreadProc, g_lpKernelThread, 0, &g_lpKernelThread->dwThreadId);
    if (g_lpKernelThread->hThread)
        return 1;
    HeapFree(GetProcessHeap(), 0, g_lpKernelThread);
    g_lpKernelThread = nullptr;
    return 0;
}

// Waits for a thread and still serves it: its shutdown sends packets to the host's window, which may belong to the very
// thread that waits here.
static void JoinWhileServingSentMessages(HANDLE hThread)
{
    MSG message;
    while (MsgWaitForMultipleObjects(1, &hThread, FALSE, INFINITE, QS_SENDMESSAGE) == WAIT_OBJECT_0 + 1)
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE); // delivers what was sent, leaves what was posted
    WaitForSingleObject(hThread, INFINITE);                 // over, unless the wait above failed
}

int StopKernelThread()
{
    if (!g_lpKernelThread)
        return 0;
    g_lpKernelThread->bStop = 1;
    // The loop of a message box does not know the flag. This ends it, unanswered, and whatever box stands behind it.
    PostThreadMessageA(g_lpKernelThread->dwThreadId, WM_QUIT, 0, 0);
    JoinWhileServingSentMessages(g_lpKernelThread->hThread);
    CloseHandle(g_lpKernelThread->hThread);
    HeapFree(GetProcessHeap(), 0, g_lpKernelThread);
    g_lpKernelThread = nullptr;
    return 1;
}
