// Finds the plug-in's panel among this program's windows.
#include "host/panel_window.h"

#include "panel/resources/resource.h"

// Message boxes have the same class and title; the tree tells the panel from them.
static BOOL CALLBACK TakeIfPanel(HWND hWnd, LPARAM result)
{
    DWORD process = 0;
    wchar_t text[32] = L"";
    GetWindowThreadProcessId(hWnd, &process);
    if (process != GetCurrentProcessId() || !IsWindowVisible(hWnd) || !GetDlgItem(hWnd, IDC_PANEL_TREE))
        return TRUE;
    GetClassNameW(hWnd, text, ARRAYSIZE(text));
    if (lstrcmpW(text, L"#32770") != 0)
        return TRUE;
    GetWindowTextW(hWnd, text, ARRAYSIZE(text));
    if (lstrcmpW(text, L"Lumivane 2") != 0)
        return TRUE;
    *reinterpret_cast<HWND *>(result) = hWnd;
    return FALSE;
}

HWND FindPanel()
{
    HWND found = nullptr;
    EnumWindows(TakeIfPanel, reinterpret_cast<LPARAM>(&found));
    return found;
}
