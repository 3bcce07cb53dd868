// The prompt of a reservation that has fallen due.
#include "timer/reserve_prompt.h"

#include "kernel/base/plugin_state.h"
#include "panel/resources/controls.h"
#include "panel/resources/images.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "timer/reservation_input.h"
#include "timer/reservation_store.h"
#include "timer/shown_reservation.h"

#include <cstring>

// The window, what it asks about, and which of its faces it shows.
HWND g_hReservePrompt = nullptr;
LONG g_nPromptIndex = 0;
LONG g_nPromptCrt = 0;
LONG g_nPromptChannel = 0;
LONG g_nPromptInput = 0;
char g_szPrevInput[INPUT_LABEL_SIZE] = "";
static bool s_QuestionOpen = false;
static RESERVATION s_Asked; // the reservation as it was when the question was shown

void SetPromptReservation(LONG nSlot, LONG nMonitor, LONG nChannel, LONG nInput, LPCSTR lpszLabel)
{
    g_nPromptIndex = nSlot;
    g_nPromptCrt = nMonitor;
    g_nPromptChannel = nChannel;
    g_nPromptInput = nInput;
    lstrcpynA(g_szPrevInput, lpszLabel, sizeof g_szPrevInput);
}

// ---- Faces --------------------------------------------------------------------------------------------------------

// A button that is only hidden keeps the focus, and Space would still press it.
static void ShowButton(HWND hDlg, int button, bool shown)
{
    const HWND hButton = GetDlgItem(hDlg, button);
    ShowWindow(hButton, shown ? SW_SHOW : SW_HIDE);
    EnableWindow(hButton, shown);
}

static void FocusFace(HWND hDlg)
{
    SetFocus(GetDlgItem(hDlg, s_QuestionOpen ? IDC_PROMPT_SWITCH : IDC_PROMPT_OK));
}

static void ShowFace(HWND hDlg, bool question)
{
    const bool focused = IsChild(hDlg, GetFocus());
    s_QuestionOpen = question;
    SetControlString(hDlg, IDC_PROMPT_TEXT, question ? IDS_PROMPT_QUESTION : IDS_PROMPT_DELETED);
    ShowButton(hDlg, IDC_PROMPT_SWITCH, question);
    ShowButton(hDlg, IDC_PROMPT_DELETE, question);
    ShowButton(hDlg, IDC_PROMPT_OK, !question);
    if (focused)
        FocusFace(hDlg);
}

// ---- What its messages do -----------------------------------------------------------------------------------------

// Whether the slot still holds what was asked about: it may have been deleted on its page, and another one entered.
static bool IsReservationThere()
{
    const RESERVATION *slot = &g_Reservation[g_nPromptIndex];
    return slot->szSection[0] && strcmp(slot->szDate, s_Asked.szDate) == 0 &&
           strcmp(slot->szTime, s_Asked.szTime) == 0 && strcmp(slot->szEndDate, s_Asked.szEndDate) == 0 &&
           strcmp(slot->szEndTime, s_Asked.szEndTime) == 0;
}

static void OnInit(HWND hDlg)
{
    nChangeMsg = CHANGE_ASKING;
    SetControlImage(hDlg, IDC_PROMPT_PICTURE, STM_SETIMAGE, IDB_RESERVE_PROMPT);
    ShowFace(hDlg, true);
}

static void OnDestroy()
{
    g_hReservePrompt = nullptr;
    s_QuestionOpen = false;
    nChangeMsg = CHANGE_ASK_FIRST;
}

static void OnSwitch(HWND hDlg)
{
    if (IsReservationThere())
        SwitchInput(g_nPromptCrt, g_nPromptChannel, static_cast<WORD>(g_nPromptInput), 0);
    // Once more: the host may have asked for the panel meanwhile, and a question there has deleted it.
    if (IsReservationThere()) {
        StoreReservationChannel(g_nPromptIndex, g_szPrevInput);
        MarkReservationStarted(g_nPromptIndex);
    }
    DestroyWindow(hDlg);
}

// With the panel open it goes by the page's list: on another page the reservation stays, for the check of passed ones.
static void DeleteAsked()
{
    if (!IsReservationThere())
        return;
    if (g_hPanelDlg)
        DeleteShownReservation(g_nPromptIndex, 0, 0);
    else
        DeleteReservation(g_nPromptIndex);
}

static void OnDelete(HWND hDlg)
{
    DeleteAsked();
    DestroyWindow(hDlg);
}

// Deletes by way of the page's list alone: without the page the reservation stays, for the check of passed ones.
static void OnCancel(HWND hDlg)
{
    if (IsReservationThere())
        DeleteShownReservation(g_nPromptIndex, 0, 0);
    nChangeMsg = CHANGE_ASK_FIRST;
    ShowFace(hDlg, false);
}

// Alt+F4 is no answer to the question, and OK on the notice. Left to the dialog manager it would come back as IDCANCEL
// and delete the reservation.
static void OnClose(HWND hDlg)
{
    if (!s_QuestionOpen)
        DestroyWindow(hDlg);
}

static INT_PTR OnCommand(HWND hDlg, WORD control)
{
    switch (control) {
    case IDC_PROMPT_SWITCH:
        OnSwitch(hDlg);
        return TRUE;
    case IDC_PROMPT_DELETE:
        OnDelete(hDlg);
        return TRUE;
    case IDC_PROMPT_OK:
        DestroyWindow(hDlg);
        return TRUE;
    case IDCANCEL:
        OnCancel(hDlg);
        return FALSE;
    }
    return FALSE;
}

INT_PTR CALLBACK ReservePromptProc(HWND hDlg, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG:
        OnInit(hDlg);
        return TRUE;
    case WM_COMMAND:
        return OnCommand(hDlg, LOWORD(wParam));
    case WM_ACTIVATE:
        // Left to the dialog manager the focus would go back to a button that the other face had.
        if (LOWORD(wParam) == WA_INACTIVE)
            return FALSE;
        FocusFace(hDlg);
        return TRUE;
    case WM_CLOSE:
        OnClose(hDlg);
        return TRUE;
    case WM_DESTROY:
        OnDestroy();
        return TRUE;
    }
    return FALSE;
}

// ---- Life ---------------------------------------------------------------------------------------------------------

int ShowReservePrompt(HWND hParent)
{
    s_Asked = g_Reservation[g_nPromptIndex];
    if (g_hReservePrompt) {
        ShowFace(g_hReservePrompt, true);
        return 1;
    }
    g_hReservePrompt =
        CreateDialogParamA(g_hInstance, MAKEINTRESOURCEA(IDD_RESERVE_PROMPT), hParent, ReservePromptProc, 0);
    if (!g_hReservePrompt)
        return 0;
    ShowWindow(g_hReservePrompt, SW_SHOW);
    UpdateWindow(g_hReservePrompt);
    return 1;
}

bool IsReserveQuestionOpen()
{
    return s_QuestionOpen;
}

bool IsPromptAbout(int n)
{
    return s_QuestionOpen && g_nPromptIndex == n && IsReservationThere();
}

void CheckReservePrompt()
{
    if (s_QuestionOpen && !IsReservationThere())
        CloseReservePrompt();
}

void CancelReservePrompt()
{
    SendMessageA(g_hReservePrompt, WM_COMMAND, IDCANCEL, 0);
}

void CloseReservePrompt()
{
    if (g_hReservePrompt)
        DestroyWindow(g_hReservePrompt);
}
