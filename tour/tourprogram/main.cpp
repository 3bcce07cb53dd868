// tour-program.exe: what a front-panel button starts on the tour, and whose colours DirectLink follows. Shows the
// command line that it got, for a while.
#include <windows.h>

#include <cwchar>

#include "tour/tourprogram/tour_program.h"

constexpr UINT_PTR TIMER_SECOND = 1;
constexpr int LIFE = 20; // s

static int s_nRemaining = LIFE; // s

static void ShowRemaining(HWND hDlg)
{
    wchar_t text[64];
    swprintf(text, 64, L"%d 秒後に自動的に閉じます。", s_nRemaining);
    SetDlgItemTextW(hDlg, IDC_TOUR_REMAINING, text);
}

// In the lower right corner, which the monitors' windows leave free longest.
static void Place(HWND hDlg)
{
    RECT area = {}, own = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    GetWindowRect(hDlg, &own);
    SetWindowPos(hDlg, HWND_TOP, area.right - (own.right - own.left) - 40, area.bottom - (own.bottom - own.top) - 60, 0,
                 0, SWP_NOSIZE);
}

static void OnInit(HWND hDlg)
{
    SetDlgItemTextW(hDlg, IDC_TOUR_COMMAND_LINE, GetCommandLineW());
    ShowRemaining(hDlg);
    Place(hDlg);
    SetTimer(hDlg, TIMER_SECOND, 1000, nullptr);
    SetFocus(GetDlgItem(hDlg, IDCANCEL)); // in the edit the text would be shown selected
}

static void OnSecond(HWND hDlg)
{
    if (--s_nRemaining <= 0)
        EndDialog(hDlg, 0);
    else
        ShowRemaining(hDlg);
}

static INT_PTR CALLBACK DialogProc(HWND hDlg, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        OnInit(hDlg);
        return FALSE;
    case WM_TIMER:
        OnSecond(hDlg);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDCANCEL)
            EndDialog(hDlg, 0);
        return TRUE;
    default:
        return FALSE;
    }
}

static bool RegisterDialogClass(HINSTANCE hInstance)
{
    WNDCLASSW wndClass = {};
    wndClass.lpfnWndProc = DefDlgProcW;
    wndClass.cbWndExtra = DLGWINDOWEXTRA;
    wndClass.hInstance = hInstance;
    wndClass.hIcon = LoadIconW(hInstance, MAKEINTRESOURCEW(IDI_TOUR_PROGRAM));
    wndClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    wndClass.lpszClassName = TOUR_PROGRAM_CLASS;
    return RegisterClassW(&wndClass) != 0;
}

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int)
{
    if (!RegisterDialogClass(hInstance))
        return 1;
    return DialogBoxW(hInstance, MAKEINTRESOURCEW(IDD_TOUR_PROGRAM), nullptr, DialogProc) == 0 ? 0 : 1;
}
