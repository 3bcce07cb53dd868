// Controls that are disabled or covered under the user's hands.
#include "panel/page_focus.h"

void EnablePageControl(HWND hPage, int nControl, BOOL bEnable)
{
    const HWND control = GetDlgItem(hPage, nControl);
    if (!control)
        return;
    if (!bEnable && GetFocus() == control)
        SendMessageA(hPage, WM_NEXTDLGCTL, 0, FALSE);
    EnableWindow(control, bEnable);
}

static void SetTabStop(HWND control, bool reached)
{
    const LONG style = GetWindowLongA(control, GWL_STYLE);
    const LONG wanted = reached ? style | WS_TABSTOP : style & ~WS_TABSTOP;
    if (wanted != style)
        SetWindowLongA(control, GWL_STYLE, wanted);
}

// Every control of a page has a tab stop that is not a mere label or frame.
static void FollowEdge(HWND hPage, LONG edge)
{
    for (HWND control = GetWindow(hPage, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        if (SendMessageA(control, WM_GETDLGCODE, 0, 0) & DLGC_STATIC)
            continue;
        RECT place;
        GetWindowRect(control, &place);
        SetTabStop(control, place.left < edge);
    }
}

void FollowPanelEdge(HWND hPanel)
{
    RECT client;
    GetClientRect(hPanel, &client);
    MapWindowPoints(hPanel, HWND_DESKTOP, reinterpret_cast<POINT *>(&client), 2);
    for (HWND child = GetWindow(hPanel, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        if (GetWindowLongA(child, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) // a page
            FollowEdge(child, client.right);
}
