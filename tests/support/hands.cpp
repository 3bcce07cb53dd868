// The messages that a user's hands cause, and what eyes read.
#include "support/hands.h"

#include "kernel/base/plugin_state.h"
#include "panel/resources/resource.h"
#include "support/text.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <map>

// ---- The tree -----------------------------------------------------------------------------------------------------

static std::string Utf8(const std::wstring &text)
{
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(), size, nullptr, nullptr);
    return utf8;
}

static HTREEITEM NextItem(HWND tree, UINT relation, HTREEITEM item)
{
    return reinterpret_cast<HTREEITEM>(SendMessageA(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

static void AddItemLines(HWND tree, HTREEITEM item, const std::string &indent, Lines *lines)
{
    for (; item; item = NextItem(tree, TVGN_NEXT, item)) {
        wchar_t text[128] = L"";
        TVITEMW entry = {};
        entry.mask = TVIF_TEXT;
        entry.hItem = item;
        entry.pszText = text;
        entry.cchTextMax = ARRAYSIZE(text);
        SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&entry));
        lines->push_back(indent + Utf8(text));
        AddItemLines(tree, NextItem(tree, TVGN_CHILD, item), indent + "  ", lines);
    }
}

Lines TreeLines(HWND tree)
{
    Lines lines;
    AddItemLines(tree, NextItem(tree, TVGN_ROOT, nullptr), "", &lines);
    return lines;
}

// ---- Hands --------------------------------------------------------------------------------------------------------

static void Notify(HWND dialog, int control, UINT notification)
{
    SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(control, notification),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, control)));
}

void Click(HWND dialog, int control)
{
    if (IsEnabled(dialog, control))
        SendDlgItemMessageA(dialog, control, BM_CLICK, 0, 0);
}

void Type(HWND dialog, int control, const std::string &text)
{
    SetDlgItemTextA(dialog, control, Sjis(text).c_str()); // notifies of the change
    Notify(dialog, control, EN_KILLFOCUS);
}

void Pick(HWND dialog, int combo, int position)
{
    SendDlgItemMessageA(dialog, combo, CB_SETCURSEL, static_cast<WPARAM>(position), 0);
    Notify(dialog, combo, CBN_SELCHANGE);
}

void PickInList(HWND dialog, int list, int position)
{
    SendDlgItemMessageA(dialog, list, LB_SETCURSEL, static_cast<WPARAM>(position), 0);
    Notify(dialog, list, LBN_SELCHANGE);
}

void Slide(HWND dialog, int slider, int position)
{
    SendDlgItemMessageA(dialog, slider, TBM_SETPOS, TRUE, position);
    SendMessageA(dialog, WM_HSCROLL, MAKEWPARAM(TB_THUMBTRACK, position),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, slider)));
}

void DropFiles(HWND dialog, int control, const std::vector<std::string> &paths)
{
    std::string names;
    for (const std::string &path : paths)
        names += path + '\0';
    // Two, since a list of no name is one empty name to Wine, which looks behind it for the next.
    names.append(2, '\0');
    const HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + names.size());
    DROPFILES *drop = static_cast<DROPFILES *>(GlobalLock(memory));
    drop->pFiles = sizeof(DROPFILES);
    memcpy(drop + 1, names.data(), names.size());
    GlobalUnlock(memory);
    SendDlgItemMessageA(dialog, control, WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
}

// ---- Eyes ---------------------------------------------------------------------------------------------------------

std::string TextOf(HWND dialog, int control)
{
    wchar_t text[1024] = L"";
    GetDlgItemTextW(dialog, control, text, ARRAYSIZE(text));
    return Utf8(text);
}

Lines RowsOf(HWND dialog, int list, int columns)
{
    Lines rows;
    const HWND window = GetDlgItem(dialog, list);
    const int count = static_cast<int>(SendMessageA(window, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) {
        char text[300];
        LVITEMA item = {};
        item.iItem = row;
        item.mask = LVIF_PARAM;
        SendMessageA(window, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
        std::string line = std::to_string(item.lParam) + ": ";
        for (item.iSubItem = 0; item.iSubItem < columns; ++item.iSubItem) {
            item.pszText = text;
            item.cchTextMax = sizeof text;
            SendMessageA(window, LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
            line += (item.iSubItem ? "|" : "") + std::string(text);
        }
        rows.push_back(line);
    }
    return rows;
}

bool IsEnabled(HWND dialog, int control)
{
    return IsWindowEnabled(GetDlgItem(dialog, control)) != FALSE;
}

bool IsChecked(HWND dialog, int control)
{
    return IsDlgButtonChecked(dialog, control) == BST_CHECKED;
}

bool IsReachedByTab(HWND panel, HWND control)
{
    HWND next = nullptr;
    for (int round = 0; round < 100 && (next != control || !next); ++round)
        next = GetNextDlgTabItem(panel, next, FALSE);
    return control && next == control;
}

bool IsShown(HWND dialog, int control)
{
    return (GetWindowLongA(GetDlgItem(dialog, control), GWL_STYLE) & WS_VISIBLE) != 0;
}

static bool IsCombo(HWND control)
{
    char name[32] = "";
    GetClassNameA(control, name, sizeof name);
    return lstrcmpiA(name, "ComboBox") == 0;
}

Lines EntriesOf(HWND dialog, int listOrCombo)
{
    const HWND control = GetDlgItem(dialog, listOrCombo);
    const bool combo = IsCombo(control);
    Lines entries;
    const int count = static_cast<int>(SendMessageW(control, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0));
    for (int n = 0; n < count; ++n) {
        wchar_t text[512] = L"";
        SendMessageW(control, combo ? CB_GETLBTEXT : LB_GETTEXT, static_cast<WPARAM>(n),
                     reinterpret_cast<LPARAM>(text));
        entries.push_back(Utf8(text));
    }
    return entries;
}

int SelectionOf(HWND dialog, int listOrCombo)
{
    const HWND control = GetDlgItem(dialog, listOrCombo);
    return static_cast<int>(SendMessageA(control, IsCombo(control) ? CB_GETCURSEL : LB_GETCURSEL, 0, 0));
}

struct TipSearch {
    TOOLINFOW tool;
    wchar_t text[512];
};

// The tree has a tooltip window of its own beside that of the panel: the one that knows the control answers.
static BOOL CALLBACK AskTip(HWND window, LPARAM parameter)
{
    TipSearch *search = reinterpret_cast<TipSearch *>(parameter);
    char name[32] = "";
    GetClassNameA(window, name, sizeof name);
    if (lstrcmpiA(name, TOOLTIPS_CLASSA) == 0)
        SendMessageW(window, TTM_GETTEXTW, 0, reinterpret_cast<LPARAM>(&search->tool));
    return search->text[0] == L'\0';
}

std::string TipOf(HWND dialog, int control)
{
    TipSearch search = {};
    search.tool.cbSize = TTTOOLINFOW_V1_SIZE;
    search.tool.uFlags = TTF_IDISHWND;
    search.tool.hwnd = dialog;
    search.tool.uId = reinterpret_cast<UINT_PTR>(GetDlgItem(dialog, control));
    search.tool.lpszText = search.text;
    EnumThreadWindows(GetWindowThreadProcessId(dialog, nullptr), AskTip, reinterpret_cast<LPARAM>(&search));
    return Utf8(search.text);
}

// ---- The sheet of a dialog ----------------------------------------------------------------------------------------

static std::string BitsOf(HGDIOBJ bitmap)
{
    BITMAP description = {};
    GetObjectA(bitmap, sizeof description, &description);
    std::string bits(static_cast<size_t>(description.bmWidthBytes * description.bmHeight), '\0');
    GetBitmapBits(static_cast<HBITMAP>(bitmap), static_cast<LONG>(bits.size()), bits.data());
    return std::to_string(description.bmWidth) + bits;
}

// The resource that a control shows; 0 for none.
static int PictureOf(HWND control, bool button)
{
    const auto shown =
        reinterpret_cast<HBITMAP>(SendMessageA(control, button ? BM_GETIMAGE : STM_GETIMAGE, IMAGE_BITMAP, 0));
    static std::map<std::string, int> known; // by their bits
    for (int picture = known.empty() ? IDB_FIRST : IDB_LAST + 1; picture <= IDB_LAST; ++picture) {
        const HGDIOBJ bitmap = LoadImageA(g_hInstance, MAKEINTRESOURCEA(picture), IMAGE_BITMAP, 0, 0,
                                          LR_LOADMAP3DCOLORS | LR_LOADTRANSPARENT);
        if (bitmap)
            known.emplace(BitsOf(bitmap), picture);
        DeleteObject(bitmap);
    }
    return shown ? known[BitsOf(shown)] : 0;
}

static std::string ColumnsOf(HWND list)
{
    std::string columns;
    wchar_t text[64] = L"";
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    column.pszText = text;
    column.cchTextMax = ARRAYSIZE(text);
    for (WPARAM n = 0; SendMessageW(list, LVM_GETCOLUMNW, n, reinterpret_cast<LPARAM>(&column)); ++n)
        columns +=
            " [" + Utf8(text) + " " + std::to_string(column.cx) + (column.fmt & LVCFMT_CENTER ? " centred]" : "]");
    return columns;
}

Lines SheetOf(HWND dialog)
{
    Lines sheet;
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        char kind[32] = "";
        GetClassNameA(child, kind, sizeof kind);
        const int id = GetDlgCtrlID(child);
        const bool button = lstrcmpA(kind, "Button") == 0;
        std::string line = std::to_string(id) + " " + kind + ColumnsOf(child);
        if (button || lstrcmpA(kind, "Static") == 0) {
            wchar_t text[256] = L"";
            GetWindowTextW(child, text, ARRAYSIZE(text));
            const int picture = PictureOf(child, button);
            line += picture ? " picture " + std::to_string(picture) : " " + Utf8(text);
        }
        if (!(GetWindowLongA(child, GWL_STYLE) & WS_VISIBLE))
            line += " (hidden)";
        const std::string tip = id > 0 ? TipOf(dialog, id) : "";
        line += tip.empty() ? "" : ": " + tip;
        for (char &c : line)
            c = c == '\n' || c == '\r' ? '/' : c;
        sheet.push_back(line);
    }
    return sheet;
}
