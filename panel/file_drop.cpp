// A list box that hands dropped files to its dialog: Windows gives them to the very window that they fell on.
#include "panel/file_drop.h"

static LRESULT CALLBACK DropListProc(HWND hList, UINT message, WPARAM wParam, LPARAM lParam)
{
    const WNDPROC before = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(hList, GWLP_USERDATA));
    switch (message) {
    case WM_DROPFILES:
        return SendMessageA(GetParent(hList), WM_DROPFILES, wParam, lParam);
    case WM_NCDESTROY:
        SetWindowLongPtrA(hList, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before));
        break;
    }
    return CallWindowProcA(before, hList, message, wParam, lParam);
}

void PassDropsToDialog(HWND hDlg, int nList)
{
    const HWND hList = GetDlgItem(hDlg, nList);
    // The list's own procedure is kept with the list.
    SetWindowLongPtrA(hList, GWLP_USERDATA, GetWindowLongPtrA(hList, GWLP_WNDPROC));
    SetWindowLongPtrA(hList, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(DropListProc));
}
