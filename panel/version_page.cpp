// The version page's dialog procedure.
#include "panel/page_table.h"

#include "panel/resources/images.h"
#include "panel/resources/resource.h"

INT_PTR CALLBACK VersionDlgProc(HWND hPage, UINT message, WPARAM, LPARAM)
{
    if (message == WM_INITDIALOG)
        SetControlImage(hPage, IDC_VERSION_PICTURE, STM_SETIMAGE, IDB_VERSION_PICTURE);
    return message == WM_INITDIALOG || message == WM_DESTROY;
}
