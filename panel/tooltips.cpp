// Tooltips and images of the panel and its pages.
#include "panel/tooltips.h"

#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"
#include "launcher/launcher_settings.h"
#include "panel/resources/images.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"

#include <commctrl.h>

constexpr LPARAM DELAY_INITIAL_MS = 200;
constexpr LPARAM DELAY_AUTOPOP_MS = 3000;
constexpr LPARAM DELAY_RESHOW_MS = 500;
constexpr LPARAM MAX_TIP_WIDTH = 320;
constexpr int TIP_TEXT_SIZE = 512;
constexpr int LABEL_TEXT_SIZE = 260; // labels in tooltips are longer than on controls

static HWND s_hToolTip = nullptr;

int CreateToolTip(HWND hParent)
{
    s_hToolTip = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr,
                                 WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX | TTS_BALLOON, CW_USEDEFAULT, CW_USEDEFAULT,
                                 CW_USEDEFAULT, CW_USEDEFAULT, hParent, nullptr, g_hInstance, nullptr);
    if (!s_hToolTip)
        return 0;
    SendMessageA(s_hToolTip, TTM_SETDELAYTIME, TTDT_INITIAL, DELAY_INITIAL_MS);
    SendMessageA(s_hToolTip, TTM_SETDELAYTIME, TTDT_AUTOPOP, DELAY_AUTOPOP_MS);
    SendMessageA(s_hToolTip, TTM_SETDELAYTIME, TTDT_RESHOW, DELAY_RESHOW_MS);
    SendMessageA(s_hToolTip, TTM_SETMAXTIPWIDTH, 0, MAX_TIP_WIDTH);
    return 1;
}

void DestroyToolTip()
{
    if (s_hToolTip)
        DestroyWindow(s_hToolTip);
    s_hToolTip = nullptr;
}

static TOOLINFOA ToolOf(HWND hDlg, HWND hControl)
{
    TOOLINFOA tool = {};
    tool.cbSize = TTTOOLINFOA_V1_SIZE; // the size that every version of the common controls takes
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = hDlg;
    tool.uId = reinterpret_cast<UINT_PTR>(hControl);
    return tool;
}

int AddToolTip(HWND hDlg, int nControl, UINT uImageMessage, UINT uImage, LPCSTR lpszText)
{
    if (uImage && !SetControlImage(hDlg, nControl, uImageMessage, uImage))
        return 0;
    if (!lpszText)
        return 1;
    TOOLINFOA tool = ToolOf(hDlg, GetDlgItem(hDlg, nControl));
    tool.lpszText = const_cast<char *>(lpszText);
    SendMessageA(s_hToolTip, TTM_DELTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageA(s_hToolTip, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    return 1;
}

void RemoveToolTips(HWND hDlg)
{
    for (HWND hControl = GetWindow(hDlg, GW_CHILD); hControl; hControl = GetWindow(hControl, GW_HWNDNEXT)) {
        TOOLINFOA tool = ToolOf(hDlg, hControl);
        SendMessageA(s_hToolTip, TTM_DELTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    }
}

bool AddStringToolTip(HWND hDlg, int nControl, UINT uImageMessage, UINT uImage, UINT uString)
{
    char text[TIP_TEXT_SIZE] = "";
    if (uString)
        LoadText(uString, text, sizeof text);
    return AddToolTip(hDlg, nControl, uImageMessage, uImage, uString ? text : nullptr);
}

void AddLabelToolTip(HWND hDlg, int nControl, int nButton, UINT uString)
{
    char label[LABEL_TEXT_SIZE];
    char format[TIP_TEXT_SIZE];
    char text[LABEL_TEXT_SIZE + TIP_TEXT_SIZE];
    ReadButtonLabel(hDlg, nButton, label, sizeof label);
    LoadText(uString, format, sizeof format);
    wsprintfA(text, format, label);
    AddToolTip(hDlg, nControl, 0, 0, text);
}

bool AddToolTips(HWND hDlg, const TOOLTIPENTRY *lpEntries, int nEntries)
{
    for (int i = 0; i < nEntries; ++i)
        if (!AddStringToolTip(hDlg, lpEntries[i].control, lpEntries[i].imageMessage, lpEntries[i].image,
                              lpEntries[i].string))
            return false;
    return true;
}

int InitPanelToolTips(HWND hPanel)
{
    static const TOOLTIPENTRY entries[] = {
        {IDC_PANEL_LOGO, STM_SETIMAGE, IDB_LOGO, IDS_TIP_PANEL_LOGO},
        {IDC_PANEL_HELP, 0, 0, IDS_TIP_PANEL_HELP},
    };
    CreateToolTip(hPanel);
    return AddToolTips(hPanel, entries, ARRAYSIZE(entries));
}
