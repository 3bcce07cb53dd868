// Bitmaps on controls.
#include "panel/resources/images.h"

#include "kernel/base/plugin_state.h"
#include "panel/resources/resource.h"

static HANDLE s_Images[IDB_LAST - IDB_FIRST + 1]; // loaded so far; kept for good, as LR_SHARED says

// The system shares icons, but makes another bitmap at each call: pages opened again and again would use them up.
static HANDLE LoadSharedBitmap(UINT image)
{
    if (image < IDB_FIRST || image > IDB_LAST)
        return nullptr;
    HANDLE &loaded = s_Images[image - IDB_FIRST];
    if (!loaded)
        loaded = LoadImageA(g_hInstance, MAKEINTRESOURCEA(image), IMAGE_BITMAP, 0, 0,
                            LR_SHARED | LR_LOADMAP3DCOLORS | LR_DEFAULTSIZE | LR_LOADTRANSPARENT);
    return loaded;
}

bool SetControlImage(HWND hDlg, int nControl, UINT uMessage, UINT uImage)
{
    const HANDLE image = LoadSharedBitmap(uImage);
    if (!image)
        return false;
    SendDlgItemMessageA(hDlg, nControl, uMessage, IMAGE_BITMAP, reinterpret_cast<LPARAM>(image));
    return true;
}
