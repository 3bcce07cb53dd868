// The details group of the button pages.
#include "panel/button_assignment.h"

#include "launcher/candidates.h"
#include "launcher/launcher_settings.h"
#include "monitor/selection.h"
#include "panel/candidate_list.h"
#include "panel/open_file.h"
#include "panel/resources/resource.h"
#include "profiles/app_path.h"

#include <cstring>
#include <initializer_list>

static void StoreText(SETTING setting, const BUTTONPAGE *page, LPCSTR text)
{
    WriteLauncherText(setting, text, g_nCurMonitor, page->button);
}

static void ShowText(HWND hPage, int edit, SETTING setting, const BUTTONPAGE *page)
{
    char text[SETTING_TEXT_SIZE];
    SendDlgItemMessageA(hPage, edit, EM_LIMITTEXT, sizeof text - 1, 0);
    if (ReadLauncherText(setting, text, g_nCurMonitor, page->button))
        SetDlgItemTextA(hPage, edit, text);
}

bool FillDetails(HWND hPage, const BUTTONPAGE *lpPage)
{
    if (!FillCandidateList(hPage, IDC_BUTTON_CANDIDATES))
        return false;
    ShowText(hPage, lpPage->program, SETTING_PROGRAM_NAME, lpPage);
    ShowText(hPage, lpPage->parameter, SETTING_PROGRAM_PARAMETER, lpPage);
    return true;
}

int IsProgramAssigned(HWND hPage, const BUTTONPAGE *lpPage)
{
    char name[SETTING_TEXT_SIZE];
    ReadLauncherText(SETTING_PROGRAM_NAME, name, g_nCurMonitor, lpPage->button);
    if (!MatchesFileSpec(name, "*.exe") && !MatchesFileSpec(name, "*.lnk"))
        return BROWSING_ALLOWED;
    EnableWindow(GetDlgItem(hPage, lpPage->browseProgram), FALSE);
    return 0;
}

void EnableDetails(HWND hPage, const BUTTONPAGE *lpPage, BOOL bEnable)
{
    for (HWND child = GetWindow(hPage, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const int control = GetDlgCtrlID(child);
        if (control != lpPage->enable && control != IDC_POWER_SHUTDOWN)
            EnableWindow(child,
                         control == lpPage->browseProgram ? bEnable && IsProgramAssigned(hPage, lpPage) : bEnable);
    }
}

// ---- Candidates ---------------------------------------------------------------------------------------------------

// By the last four characters in these spellings alone: ".Exe" and ".LNK" are documents.
static bool IsProgramName(LPCSTR name)
{
    const int length = lstrlenA(name);
    if (length < 4)
        return false;
    for (const LPCSTR extension : {".exe", ".EXE", ".lnk"})
        if (strcmp(name + length - 4, extension) == 0)
            return true;
    return false;
}

void AssignCandidate(HWND hPage, const BUTTONPAGE *lpPage)
{
    char name[SETTING_TEXT_SIZE];
    char path[SETTING_TEXT_SIZE];
    if (!ReadSelectedCandidate(hPage, IDC_BUTTON_CANDIDATES, name))
        return;
    const int slot = FindCandidate(name);
    if (slot == -1 || !ReadCandidatePath(slot, path))
        return;
    const bool program = IsProgramName(name);
    EnableWindow(GetDlgItem(hPage, lpPage->browseProgram), !program);
    if (!program)
        StoreText(SETTING_PROGRAM_PARAMETER, lpPage, path);
    StoreText(SETTING_PROGRAM_PATH, lpPage, path);
    StoreText(SETTING_PROGRAM_NAME, lpPage, name);
    SetDlgItemTextA(hPage, lpPage->program, name);
    SetDlgItemTextA(hPage, lpPage->parameter, program ? "" : path);
}

void OnCandidates(HWND hPage, const BUTTONPAGE *lpPage)
{
    AssignCandidate(hPage, lpPage);
    // Also the name of a candidate that is no longer stored.
    char name[SETTING_TEXT_SIZE];
    if (ReadSelectedCandidate(hPage, IDC_BUTTON_CANDIDATES, name) && name[0])
        StoreText(SETTING_PROGRAM_NAME, lpPage, name);
    SaveParameterText(hPage, lpPage);
}

// ---- Program and parameter ----------------------------------------------------------------------------------------

void BrowseApplication(HWND hPage, const BUTTONPAGE *lpPage)
{
    char path[MAX_PATH];
    char title[MAX_PATH];
    if (!ChooseFile(hPage, FILEKIND::Program, path, title) || !IsWindow(hPage))
        return;
    SetDlgItemTextA(hPage, lpPage->program, title);
    StoreText(SETTING_PROGRAM_NAME, lpPage, title);
    StoreText(SETTING_PROGRAM_PATH, lpPage, path);
}

void DeleteApplication(HWND hPage, const BUTTONPAGE *lpPage)
{
    SetDlgItemTextA(hPage, lpPage->program, "");
    DeleteSettingValue(SETTING_PROGRAM_NAME, g_nCurMonitor, lpPage->button);
    DeleteSettingValue(SETTING_PROGRAM_PATH, g_nCurMonitor, lpPage->button);
    EnableWindow(GetDlgItem(hPage, lpPage->browseProgram), TRUE);
}

void BrowseParameter(HWND hPage, const BUTTONPAGE *lpPage)
{
    char path[MAX_PATH];
    if (!ChooseFile(hPage, FILEKIND::Any, path, nullptr) || !IsWindow(hPage))
        return;
    SetDlgItemTextA(hPage, lpPage->parameter, path);
    StoreText(SETTING_PROGRAM_PARAMETER, lpPage, path);
}

void DeleteParameter(HWND hPage, const BUTTONPAGE *lpPage)
{
    // First: the edit's notification stores the empty text.
    SetDlgItemTextA(hPage, lpPage->parameter, "");
    DeleteSettingValue(SETTING_PROGRAM_PARAMETER, g_nCurMonitor, lpPage->button);
}

void SaveParameterText(HWND hPage, const BUTTONPAGE *lpPage)
{
    char text[SETTING_TEXT_SIZE] = "";
    GetDlgItemTextA(hPage, lpPage->parameter, text, sizeof text);
    StoreText(SETTING_PROGRAM_PARAMETER, lpPage, text);
}
