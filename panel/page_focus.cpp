// Controls that are disabled under the user's hands.
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
