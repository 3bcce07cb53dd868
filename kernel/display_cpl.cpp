// Opening the Display control panel and finding its property sheet among all windows.
#include "kernel/display_cpl.h"

#include "kernel/base/platform.h"
#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"

#include <commctrl.h>
#include <prsht.h>

static bool g_bEnumBusy = false; // a search is under way

constexpr UINT SEARCH_PERIOD_MS = 1000;
constexpr LPARAM DISPLAY_CPL_PAGE = 800; // resource identifier of the page
constexpr UINT SELECT_TIMEOUT_MS = 5000; // for a property sheet that does not answer

#define COMMON_CONTROLS_FILE "\\comctl32.dll"

// Whether a path contains a text, ignoring case.
static bool ContainsText(LPCSTR path, LPCSTR text)
{
    const int length = lstrlenA(text);
    for (; lstrlenA(path) >= length; ++path)
        if (CompareStringA(LOCALE_SYSTEM_DEFAULT, NORM_IGNORECASE, path, length, text, length) == CSTR_EQUAL)
            return true;
    return false;
}

// The file of the module that owns a window's instance, which on this family is known in the window's process alone.
static void InstanceFileNT(HWND hWnd, HMODULE hInstance, char (&path)[MAX_PATH])
{
    DWORD processId = 0;
    GetWindowThreadProcessId(hWnd, &processId);
    const HANDLE hProcess = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId);
    if (!hProcess)
        return;
    if (g_lpfnGetModuleFileNameExA && !g_lpfnGetModuleFileNameExA(hProcess, hInstance, path, sizeof path))
        path[0] = '\0';
    path[sizeof path - 1] = '\0'; // a path that was cut may come without
    CloseHandle(hProcess);
}

static bool BelongsToCommonControls(HWND hWnd)
{
    char path[MAX_PATH] = "";
    const HMODULE hInstance = reinterpret_cast<HMODULE>(GetWindowLongA(hWnd, GWL_HINSTANCE));
    if (GetPlatformId() == PLATFORM_NT) {
        InstanceFileNT(hWnd, hInstance, path);
        return ContainsText(path, COMMON_CONTROLS_FILE);
    }
    // One address space for all: the module is known here, too.
    char expected[MAX_PATH + sizeof COMMON_CONTROLS_FILE];
    GetModuleFileNameA(hInstance, path, sizeof path);
    path[sizeof path - 1] = '\0';
    if (GetSystemDirectoryA(expected, MAX_PATH) == 0)
        return false;
    lstrcatA(expected, COMMON_CONTROLS_FILE);
    return lstrcmpiA(path, expected) == 0;
}

static BOOL CALLBACK FindDisplayPropertiesProc(HWND hWnd, LPARAM hKernelWnd)
{
    if (!IsWindowVisible(hWnd) || !BelongsToCommonControls(hWnd))
        return TRUE;
    KillTimer(reinterpret_cast<HWND>(hKernelWnd), TIMER_DISPLAY_CPL);
    DWORD_PTR result;
    SendMessageTimeoutA(hWnd, PSM_SETCURSELID, 0, DISPLAY_CPL_PAGE, SMTO_ABORTIFHUNG, SELECT_TIMEOUT_MS, &result);
    if (g_hPanelDlg)
        SendMessageA(g_hPanelDlg, WM_CLOSE, 0, 0);
    return FALSE;
}

void SearchDisplayCpl(HWND hKernelWnd)
{
    if (g_bEnumBusy)
        return;
    g_bEnumBusy = true;
    EnumWindows(FindDisplayPropertiesProc, reinterpret_cast<LPARAM>(hKernelWnd));
    g_bEnumBusy = false;
}

void OpenDisplayCpl(HWND hKernelWnd)
{
    WinExec("control.exe desk.cpl", SW_SHOWNORMAL);
    g_bEnumBusy = false;
    if (!SetTimer(hKernelWnd, TIMER_DISPLAY_CPL, SEARCH_PERIOD_MS, nullptr))
        ShowBox(nullptr, "Fail to set timer", "MainPanelProc", MB_OK);
}
