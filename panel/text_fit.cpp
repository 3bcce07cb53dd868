// Narrower fonts for texts that are too long.
#include "panel/text_fit.h"

constexpr int TEXT_SIZE = 256;
constexpr int CHECK_GAP = 6;     // pixels between a check mark and its text, with some to spare
constexpr LONG LEAST_WIDTH = 2;  // of a character, in pixels: narrower ones cannot be read
constexpr LONG WIDTH_STEPS = 16; // at most so many pixels are tried

static HFONT FontOf(HWND hWnd)
{
    return reinterpret_cast<HFONT>(SendMessageA(hWnd, WM_GETFONT, 0, 0));
}

static LONG RoomFor(HWND hControl)
{
    char name[16] = "";
    RECT client;
    GetClassNameA(hControl, name, sizeof name);
    GetClientRect(hControl, &client);
    return lstrcmpiA(name, "Button") == 0 ? client.right - GetSystemMetrics(SM_CXMENUCHECK) - CHECK_GAP : client.right;
}

// width receives that of an average character.
static LONG TextWidth(HDC hdc, HFONT font, LPCSTR text, LONG *width)
{
    const HGDIOBJ before = SelectObject(hdc, font);
    TEXTMETRICA metric;
    SIZE size = {};
    GetTextMetricsA(hdc, &metric);
    GetTextExtentPoint32A(hdc, text, lstrlenA(text), &size);
    SelectObject(hdc, before);
    *width = metric.tmAveCharWidth;
    return size.cx;
}

// Result: null when the text fits as it is, or in no font.
static HFONT MakeFittingFont(HDC hdc, HFONT font, LPCSTR text, LONG room)
{
    LOGFONTA description;
    LONG width, tried;
    if (TextWidth(hdc, font, text, &width) <= room || !GetObjectA(font, sizeof description, &description))
        return nullptr;
    for (LONG step = 0; step < WIDTH_STEPS && --width >= LEAST_WIDTH; ++step) {
        description.lfWidth = width;
        const HFONT narrower = CreateFontIndirectA(&description);
        if (!narrower || TextWidth(hdc, narrower, text, &tried) <= room)
            return narrower;
        DeleteObject(narrower);
    }
    return nullptr;
}

void FitText(HWND hDlg, int nControl)
{
    const HWND hControl = GetDlgItem(hDlg, nControl);
    const HDC hdc = hControl ? GetDC(hControl) : nullptr;
    if (!hdc)
        return;
    char text[TEXT_SIZE] = "";
    GetWindowTextA(hControl, text, sizeof text);
    const HFONT font = MakeFittingFont(hdc, FontOf(hDlg), text, RoomFor(hControl));
    ReleaseDC(hControl, hdc);
    if (font)
        SendMessageA(hControl, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
}

void ReleaseFittedText(HWND hDlg, int nControl)
{
    const HFONT font = FontOf(GetDlgItem(hDlg, nControl));
    if (font && font != FontOf(hDlg))
        DeleteObject(font);
}
