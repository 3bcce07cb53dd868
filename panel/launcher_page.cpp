// The launcher settings page: the candidates that buttons can be given, and what every button starts.
#include "panel/page_table.h"

#include "kernel/base/texts.h"
#include "launcher/candidates.h"
#include "launcher/launch.h"
#include "launcher/launcher_settings.h"
#include "monitor/selection.h"
#include "panel/candidate_list.h"
#include "panel/file_drop.h"
#include "panel/open_file.h"
#include "panel/resources/controls.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "panel/tooltips.h"
#include "profiles/app_path.h"
#include "settings/ini.h"

#include <commctrl.h>
#include <shellapi.h>

// By button number - 1.
static const int s_TestButtons[LAUNCHER_BUTTON_COUNT] = {IDC_LAUNCHER_TEST_1, IDC_LAUNCHER_TEST_2,
                                                         IDC_LAUNCHER_TEST_3, IDC_LAUNCHER_TEST_4,
                                                         IDC_LAUNCHER_TEST_5, IDC_LAUNCHER_TEST_POWER};

// ---- Present assignments ------------------------------------------------------------------------------------------

static void AddColumns(HWND hPage)
{
    static const struct {
        LPCSTR title;
        int width;
    } columns[] = {{"ボタン", 50}, {"アプリケーション", 100}, {"パラメータ", 200}};
    for (int n = 0; n < static_cast<int>(ARRAYSIZE(columns)); ++n)
        AddReportColumn(hPage, IDC_LAUNCHER_ASSIGNMENTS, n, columns[n].title, columns[n].width, LVCFMT_LEFT);
}

// The button's row and its test button; the latter empty and disabled where the model has no such button.
static void ShowButton(HWND hPage, int button)
{
    char label[BUTTON_LABEL_SIZE];
    const int present = ReadButtonLabel(hPage, button, label, sizeof label);
    SetDlgItemTextA(hPage, s_TestButtons[button - 1], label);
    EnableWindow(GetDlgItem(hPage, s_TestButtons[button - 1]), present);
    if (present) // the number of its row lies beyond the end, which puts it behind the others
        InsertReportRow(hPage, IDC_LAUNCHER_ASSIGNMENTS, button, label, button);
}

// The row is found by trial, from the one that the button has on a model with all buttons up to two above. So behind a
// missing button the texts stand a row too low while there is a row; the test buttons above the list start what is
// really assigned.
static void ShowAssignment(HWND hPage, int button)
{
    char program[SETTING_TEXT_SIZE];
    char parameter[SETTING_TEXT_SIZE];
    ReadLauncherText(SETTING_PROGRAM_NAME, program, g_nCurMonitor, button);
    ReadLauncherText(SETTING_PROGRAM_PARAMETER, parameter, g_nCurMonitor, button);
    int row = button - 1;
    while (!SetReportCell(hPage, IDC_LAUNCHER_ASSIGNMENTS, row, 1, program) && row > button - 3)
        --row;
    SetReportCell(hPage, IDC_LAUNCHER_ASSIGNMENTS, row, 2, parameter);
}

static void FillAssignments(HWND hPage)
{
    AddColumns(hPage);
    for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
        ShowButton(hPage, button);
    for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
        ShowAssignment(hPage, button);
    SelectWholeRows(hPage, IDC_LAUNCHER_ASSIGNMENTS);
}

// ---- Candidates ---------------------------------------------------------------------------------------------------

static void Refuse(HWND hPage, LPCSTR text)
{
    ShowBox(hPage, text, PRODUCT_TITLE, MB_ICONHAND);
}

// One more fits than the messages say: with their number, one slot could never be used.
static bool IsListFull(HWND hPage)
{
    return ListEntryCount(hPage, IDC_LAUNCHER_CANDIDATES) >= CANDIDATE_COUNT;
}

// The last part of a path; empty for the root of a drive.
static LPCSTR NameOf(char *path)
{
    const char *backslash = LastBackslash(path);
    return backslash ? backslash + 1 : path;
}

// title: what must not be in the list yet, in any letter case.
static void AddCandidate(HWND hPage, char *path, LPCSTR title)
{
    if (FindListEntry(hPage, IDC_LAUNCHER_CANDIDATES, title) != LB_ERR) {
        Refuse(hPage, "すでに同名で登録されています");
        return;
    }
    const int slot = FindFreeCandidate();
    if (slot == -1 || !NameOf(path)[0])
        return;
    int entry = InsertListEntry(hPage, IDC_LAUNCHER_CANDIDATES, slot, NameOf(path));
    if (entry == LB_ERR) // the list lacks an entry that is still stored
        entry = AddListEntry(hPage, IDC_LAUNCHER_CANDIDATES, NameOf(path));
    char name[SETTING_TEXT_SIZE];
    if (ReadCandidateEntry(hPage, IDC_LAUNCHER_CANDIDATES, entry, name))
        WriteCandidate(slot, name, path);
}

static void OnAdd(HWND hPage)
{
    if (IsListFull(hPage)) {
        Refuse(hPage, "追加できる候補は最大で32個です。");
        return;
    }
    char path[MAX_PATH];
    char title[MAX_PATH];
    if (FindFreeCandidate() != -1 && ChooseFile(hPage, FILEKIND::Any, path, title) && IsWindow(hPage))
        AddCandidate(hPage, path, title);
}

// Takes the path of the one file that was dropped. Result: why it is refused; null when it is not.
static LPCSTR TakeDroppedPath(HWND hPage, HDROP hDrop, char (&path)[MAX_PATH])
{
    if (IsListFull(hPage))
        return "追加できる数は最大で32個です。";
    if (DragQueryFileA(hDrop, 0xFFFFFFFF, nullptr, 0) > 1)
        return "一度にドロップできる数は一つだけです。";
    if (DragQueryFileA(hDrop, 0, nullptr, 0) >= sizeof path)
        return "ファイル名が長すぎます。";
    DragQueryFileA(hDrop, 0, path, sizeof path);
    return nullptr;
}

static void OnDrop(HWND hPage, HDROP hDrop)
{
    char path[MAX_PATH] = "";
    const LPCSTR refusal = TakeDroppedPath(hPage, hDrop, path);
    DragFinish(hDrop);
    if (refusal) {
        Refuse(hPage, refusal);
        return;
    }
    ResolveIfShortcut(path);
    AddCandidate(hPage, path, NameOf(path));
}

// What was assigned from the candidate stays assigned.
static void OnRemove(HWND hPage)
{
    char name[SETTING_TEXT_SIZE];
    const int entry = SelectedListEntry(hPage, IDC_LAUNCHER_CANDIDATES);
    if (!ReadCandidateEntry(hPage, IDC_LAUNCHER_CANDIDATES, entry, name))
        return;
    DeleteListEntry(hPage, IDC_LAUNCHER_CANDIDATES, entry);
    const int slot = FindCandidate(name);
    if (slot != -1)
        DeleteCandidate(slot);
}

// ---- Messages -----------------------------------------------------------------------------------------------------

static INT_PTR OnInit(HWND hPage)
{
    static const TOOLTIPENTRY entries[] = {
        {IDC_LAUNCHER_CANDIDATES, 0, 0, IDS_TIP_LAUNCHER_CANDIDATES},
        {IDC_LAUNCHER_ADD, 0, 0, IDS_TIP_LAUNCHER_ADD},
        {IDC_LAUNCHER_REMOVE, 0, 0, IDS_TIP_LAUNCHER_REMOVE},
        {IDC_LAUNCHER_ASSIGNMENTS, 0, 0, IDS_TIP_LAUNCHER_ASSIGNMENTS},
    };
    FillAssignments(hPage);
    FillCandidateList(hPage, IDC_LAUNCHER_CANDIDATES);
    PassDropsToDialog(hPage, IDC_LAUNCHER_CANDIDATES);
    AddToolTips(hPage, entries, ARRAYSIZE(entries));
    for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
        AddLabelToolTip(hPage, s_TestButtons[button - 1], button, IDS_TIP_LAUNCHER_TEST);
    return TRUE;
}

static INT_PTR OnCommand(HWND hPage, WORD control)
{
    switch (control) {
    case IDC_LAUNCHER_ADD:
        OnAdd(hPage);
        return TRUE;
    case IDC_LAUNCHER_REMOVE:
        OnRemove(hPage);
        return TRUE;
    }
    for (int button = 1; button <= LAUNCHER_BUTTON_COUNT; ++button)
        if (s_TestButtons[button - 1] == control) {
            LaunchButton(hPage, 0, button); // 0: the selected monitor
            return TRUE;
        }
    return FALSE;
}

INT_PTR CALLBACK LauncherPageProc(HWND hPage, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        return OnInit(hPage);
    case WM_COMMAND:
        return OnCommand(hPage, LOWORD(wParam));
    case WM_DROPFILES:
        OnDrop(hPage, reinterpret_cast<HDROP>(wParam));
        return TRUE;
    }
    return FALSE;
}
