// Start, message loop and stop of the kernel thread, and the window classes that it registers.
#include "kernel/kernel_thread.h"

#include "kernel/base/plugin_state.h"
#include "kernel/kernel_window.h"
#include "server/server_link.h"

// The thread's control block, on the heap while it runs.
struct KERNELTHREADCTX {
    SHAREDFLAG bStop; // 1 makes the thread end
    HWND hHostWnd;    // recorded only
    HANDLE hThread;
    DWORD dwThreadId;
};

static KERNELTHREADCTX *g_lpKernelThread = nullptr;

constexpr LANGID LANGUAGE_JAPANESE = 1041;
constexpr DWORD LOOP_PAUSE_MS = 10; // bounds both the reaction to bStop and the idle load
constexpr DWORD JOIN_ROUND_MS = 50;
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

bool IsKernelThreadRunning()
{
    return g_lpKernelThread && WaitForSingleObject(g_lpKernelThread->hThread, 0) == WAIT_TIMEOUT;
}

static void ForgetKernelThread()
{
    CloseHandle(g_lpKernelThread->hThread);
    HeapFree(GetProcessHeap(), 0, g_lpKernelThread);
    g_lpKernelThread = nullptr;
}

int StartKernelThread(HWND hHostWnd)
{
    // Nobody could end the first thread any more, and the host would unload its code under it.
    if (IsKernelThreadRunning())
        return 0;
    if (g_lpKernelThread)
        ForgetKernelThread();
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

// Ends the loop of a message box, which does not know the flag: the box closes, unanswered, and whatever box stands
// behind it. Posted anew until the thread has ended: it may have no queue yet to post to, or may open another box.
static void PostQuit(const KERNELTHREADCTX *context)
{
    PostThreadMessageA(context->dwThreadId, WM_QUIT, 0, 0);
}

// Waits for the thread and still serves it: its shutdown sends packets to the host's window, which may belong to the
// very thread that waits here.
static void JoinWhileServingSentMessages(const KERNELTHREADCTX *context)
{
    MSG message;
    while (WaitForSingleObject(context->hThread, 0) == WAIT_TIMEOUT) {
        PostQuit(context);
        if (MsgWaitForMultipleObjects(1, &context->hThread, FALSE, JOIN_ROUND_MS, QS_SENDMESSAGE) == WAIT_FAILED)
            Sleep(JOIN_ROUND_MS);
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE); // delivers what was sent, leaves what was posted
    }
}

int StopKernelThread()
{
    if (!g_lpKernelThread)
        return 0;
    g_lpKernelThread->bStop = 1;
    JoinWhileServingSentMessages(g_lpKernelThread);
    ForgetKernelThread();
    return 1;
}
