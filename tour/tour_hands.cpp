// Mouse, keyboard, and the controls that they reach.
#include "tour/tour_hands.h"

#include <windows.h>

#include <commctrl.h>
#include <dlgs.h>

#include "host/base/console.h"
#include "host/base/text.h"
#include "tour/tour_panel.h"

constexpr DWORD INPUT_PATIENCE = 10000; // ms for whoever gives the input
constexpr int DIALOG_TEXT = 0xFFFF;     // the text in a message box

static const wchar_t s_szDone[] = L"\\done"; // the file that tells that the input was given

bool WaitUntil(const std::function<bool()> &isSo, DWORD patience)
{
    const DWORD start = GetTickCount();
    while (!isSo()) {
        if (GetTickCount() - start > patience)
            return false;
        Sleep(TOUR_POLL_TIME);
    }
    return true;
}

LRESULT Ask(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    DWORD_PTR result = 0;
    SendMessageTimeoutW(hWnd, message, wParam, lParam, SMTO_NORMAL, HANDS_PATIENCE, &result);
    return static_cast<LRESULT>(result);
}

std::string TextOf(HWND hWnd)
{
    wchar_t text[1024] = L"";
    Ask(hWnd, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
    return Narrow(text);
}

static bool Fail(TOUR *tour, const std::string &reason)
{
    FailStep(tour, reason);
    return false;
}

// ---- Mouse and keyboard ---------------------------------------------------------------------------------------------

// Prints the request and waits until it was carried out, which a file tells.
static bool Request(TOUR *tour, const std::string &line)
{
    const std::wstring done = Widen(tour->folder) + s_szDone;
    DeleteFileW(done.c_str());
    ConsoleLine(line);
    if (WaitUntil([&] { return GetFileAttributesW(done.c_str()) != INVALID_FILE_ATTRIBUTES; }, INPUT_PATIENCE))
        return true;
    return Fail(tour, "nobody carried out the input '" + line + "'");
}

bool ClickAt(TOUR *tour, POINT point)
{
    return Request(tour, Format("CLICK %ld %ld", point.x, point.y));
}

bool RightClickAt(TOUR *tour, POINT point)
{
    return Request(tour, Format("RIGHT-CLICK %ld %ld", point.x, point.y));
}

bool Drag(TOUR *tour, POINT from, POINT to)
{
    return Request(tour, Format("DRAG %ld %ld %ld %ld", from.x, from.y, to.x, to.y));
}

bool ParkMouse(TOUR *tour)
{
    return Request(tour, Format("MOVE %d %d", GetSystemMetrics(SM_CXSCREEN) - 2, GetSystemMetrics(SM_CYSCREEN) - 2));
}

bool PressKeys(TOUR *tour, const std::string &keys)
{
    return Request(tour, "KEY " + keys);
}

bool TypeKeys(TOUR *tour, const std::string &text)
{
    return Request(tour, "TYPE " + text);
}

// ---- Controls -------------------------------------------------------------------------------------------------------

static POINT Middle(const RECT &rect)
{
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

static RECT ScreenRect(HWND hWnd)
{
    RECT rect = {};
    GetWindowRect(hWnd, &rect);
    return rect;
}

// A part of a window, in its client coordinates, on the screen.
static POINT ScreenMiddle(HWND hWnd, const RECT &part)
{
    POINT middle = Middle(part);
    ClientToScreen(hWnd, &middle);
    return middle;
}

// Whether a click there reaches this window. Of the same dialog is enough: a group box may be named in the place of
// what it frames.
static bool IsFree(HWND hWnd, POINT point)
{
    return GetAncestor(WindowFromPoint(point), GA_ROOT) == GetAncestor(hWnd, GA_ROOT);
}

bool ClickWindow(TOUR *tour, HWND hWnd, const std::string &name)
{
    if (!WaitUntil([&] { return IsWindowVisible(hWnd) && IsWindowEnabled(hWnd); }))
        return Fail(tour, name + (IsWindowVisible(hWnd) ? " is disabled" : " is not there"));
    const POINT middle = Middle(ScreenRect(hWnd));
    // A balloon goes when the mouse leaves what it tells about.
    if (!IsFree(hWnd, middle) && !ParkMouse(tour))
        return false;
    if (!WaitUntil([&] { return IsFree(hWnd, middle); }))
        return Fail(tour, name + " lies under the window '" + TextOf(WindowFromPoint(middle)) + "'");
    return ClickAt(tour, middle);
}

bool ClickControl(TOUR *tour, HWND dialog, int control, const std::string &name)
{
    return ClickWindow(tour, GetDlgItem(dialog, control), name);
}

bool TypeInto(TOUR *tour, HWND edit, const std::string &text, const std::string &name)
{
    if (!ClickWindow(tour, edit, name) || !PressKeys(tour, "Home shift+End"))
        return false;
    if (!TypeKeys(tour, text))
        return false;
    if (WaitUntil([&] { return TextOf(edit) == text; }))
        return true;
    return Fail(tour, Format("%s shows '%s' after '%s' was typed", name.c_str(), TextOf(edit).c_str(), text.c_str()));
}

bool PasteInto(TOUR *tour, HWND edit, const std::string &text, const std::string &name)
{
    if (!ClickWindow(tour, edit, name))
        return false;
    const std::wstring wide = Widen(text);
    Ask(edit, EM_SETSEL, 0, -1);
    Ask(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(wide.c_str()));
    return TextOf(edit) == text ||
           Fail(tour, Format("%s shows '%s' and not '%s'", name.c_str(), TextOf(edit).c_str(), text.c_str()));
}

// Clicks an entry of a list, open or dropped down, if it is in sight. *clicked tells.
static bool ClickEntry(TOUR *tour, HWND list, int index, bool *clicked)
{
    RECT entry = {}, client = {};
    GetClientRect(list, &client);
    *clicked = Ask(list, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&entry)) != LB_ERR &&
               entry.top >= 0 && entry.bottom <= client.bottom;
    return !*clicked || ClickAt(tour, ScreenMiddle(list, entry));
}

bool ChooseInCombo(TOUR *tour, HWND dialog, int control, int index, const std::string &name)
{
    const HWND combo = GetDlgItem(dialog, control);
    COMBOBOXINFO info = {};
    info.cbSize = sizeof info;
    if (!ClickWindow(tour, combo, name))
        return false;
    if (!WaitUntil([&] { return Ask(combo, CB_GETDROPPEDSTATE) != 0; }) || !GetComboBoxInfo(combo, &info))
        return Fail(tour, name + " does not drop down");
    bool clicked = false;
    if (!ClickEntry(tour, info.hwndList, index, &clicked))
        return false;
    std::string keys = "Home";
    for (int i = 0; i < index; i++)
        keys += " Down";
    if (!clicked && !PressKeys(tour, keys + " Return"))
        return false;
    if (WaitUntil([&] { return !Ask(combo, CB_GETDROPPEDSTATE) && Ask(combo, CB_GETCURSEL) == index; }))
        return true;
    return Fail(tour, Format("%s has entry %ld selected and not %d", name.c_str(), Ask(combo, CB_GETCURSEL), index));
}

bool ChooseInList(TOUR *tour, HWND dialog, int control, int index, const std::string &name)
{
    const HWND list = GetDlgItem(dialog, control);
    bool clicked = false;
    if (!ClickEntry(tour, list, index, &clicked))
        return false;
    if (clicked && WaitUntil([&] { return Ask(list, LB_GETCURSEL) == index; }))
        return true;
    return Fail(tour, Format("%s has no entry %d that can be chosen", name.c_str(), index));
}

// ---- Boxes ----------------------------------------------------------------------------------------------------------

static BOOL CALLBACK TakeIfBox(HWND hWnd, LPARAM result)
{
    DWORD process = 0;
    wchar_t name[32] = L"";
    GetWindowThreadProcessId(hWnd, &process);
    GetClassNameW(hWnd, name, ARRAYSIZE(name));
    if (process != GetCurrentProcessId() || lstrcmpW(name, L"#32770") != 0 || !IsWindowVisible(hWnd) ||
        hWnd == FindPanel())
        return TRUE;
    *reinterpret_cast<HWND *>(result) = hWnd;
    return FALSE;
}

HWND FindBox()
{
    HWND found = nullptr;
    EnumWindows(TakeIfBox, reinterpret_cast<LPARAM>(&found));
    return found;
}

bool AnswerBox(TOUR *tour, int button, std::string *text)
{
    HWND box = nullptr;
    if (!WaitUntil([&] { return (box = FindBox()) != nullptr; }))
        return Fail(tour, "a message box was to come up");
    if (text)
        *text = TextOf(GetDlgItem(box, DIALOG_TEXT));
    if (!ClickControl(tour, box, button, "the button of the message box '" + TextOf(box) + "'"))
        return false;
    return WaitUntil([&] { return !IsWindow(box); }) || Fail(tour, "the message box does not go away");
}

bool AnswerFileDialog(TOUR *tour, const std::string &path, const std::string &picture)
{
    HWND box = nullptr;
    // A plain edit, or the one of a list of file names.
    const auto nameEdit = [&] {
        const HWND list = GetDlgItem(GetDlgItem(box, cmb13), cmb13);
        return list ? GetDlgItem(list, cmb13) : GetDlgItem(box, edt1);
    };
    if (!WaitUntil([&] { return (box = FindBox()) && IsWindowVisible(nameEdit()); }))
        return Fail(tour, "the dialog that opens a file was to come up");
    if (!TypeInto(tour, nameEdit(), path, "the file name"))
        return false;
    TakePicture(tour, picture);
    if (!PressKeys(tour, "Return"))
        return false;
    return WaitUntil([&] { return !IsWindow(box); }) || Fail(tour, "the dialog does not take the file " + path);
}
