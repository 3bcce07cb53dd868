// Creation of a page's window.
#include "panel/page_window.h"

#include "kernel/base/plugin_state.h"
#include "panel/page_focus.h"

constexpr int PAGE_LEFT = 178; // pixels from the left of the panel's client area

HWND CreatePageWindow(HWND hPanel, TREEITEM item)
{
    const PAGEROW *row = PageRow(item);
    const HWND hPage = CreateDialogParamA(g_hInstance, MAKEINTRESOURCEA(row->dialog), hPanel, row->proc, 0);
    if (!hPage)
        return nullptr;
    RECT place;
    GetWindowRect(hPage, &place);
    OffsetRect(&place, PAGE_LEFT, 0);
    MapWindowPoints(HWND_DESKTOP, hPage, reinterpret_cast<POINT *>(&place), 2);
    MoveWindow(hPage, place.left, place.top, place.right - place.left, place.bottom - place.top, FALSE);
    FollowPanelEdge(hPanel);
    ShowWindow(hPage, SW_SHOW);
    InvalidateRect(hPanel, nullptr, TRUE);
    return hPage;
}
