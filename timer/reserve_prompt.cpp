// The prompt of a reservation that has fallen due.
#include "timer/reserve_prompt.h"

#include "kernel/kernel_thread.h"
#include "kernel/plugin.h"
#include "panel/resources/images.h"
#include "panel/resources/resource.h"
#include "timer/reservation_input.h"
#include "timer/reservation_rows.h"
#include "timer/reservation_store.h"

// The window, what it asks about, and which of its faces it shows.
HWND g_hReservePrompt = nullptr;
LONG g_nPromptIndex = 0;
LONG g_nPromptCrt = 0;
LONG g_nPromptChannel = 0;
LONG g_nPromptInput = 0;
char g_szPrevInput[INPUT_LABEL_SIZE] = "";
static bool s_QuestionOpen = false;

void SetPromptReservation(LONG nSlot, LONG nMonitor, LONG nChannel, LONG nInput, LPCSTR lpszLabel)
{
    g_nPromptIndex = nSlot;
    g_nPromptCrt = nMonitor;
    g_nPromptChannel = nChannel;
    g_nPromptInput = nInput;
    lstrcpynA(g_szPrevInput, lpszLabel, sizeof g_szPrevInput);
}

// ---- Faces --------------------------------------------------------------------------------------------------------

static void SetPromptText(HWND hDlg, UINT string)
{
    char text[256] = "";
    LoadStringA(g_hInstance, string, text, sizeof text);
    SetDlgItemTextA(hDlg, IDC_PROMPT_TEXT, text);
}

static void ShowFace(HWND hDlg, bool question)
{
    s_QuestionOpen = question;
    SetPromptText(hDlg, question ? IDS_PROMPT_QUESTION : IDS_PROMPT_DELETED);
    ShowWindow(GetDlgItem(hDlg, IDC_PROMPT_SWITCH), question ? SW_SHOW : SW_HIDE);
    ShowWindow(GetDlgItem(hDlg, IDC_PROMPT_DELETE), question ? SW_SHOW : SW_HIDE);
    ShowWindow(GetDlgItem(hDlg, IDC_PROMPT_OK), question ? SW_HIDE : SW_SHOW);
}

// ---- What its messages do -----------------------------------------------------------------------------------------

// The reservation may have been deleted on its page while the question was open.
static bool IsReservationThere()
{
    return g_Reservation[g_nPromptIndex].szSection[0] != '\0';
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
    SwitchInput(g_nPromptCrt, g_nPromptChannel, static_cast<WORD>(g_nPromptInput), 0);
    if (IsReservationThere()) {
        StoreReservationChannel(g_nPromptIndex, g_szPrevInput);
        MarkReservationStarted(g_nPromptIndex);
    }
    DestroyWindow(hDlg);
}

static void OnDelete(HWND hDlg)
{
    if (g_hPanelDlg)
        DeleteReservationAndRestore(g_hReservationPage, g_nPromptIndex, 0, 0);
    else if (IsReservationThere())
        DeleteReservation(g_nPromptIndex);
    DestroyWindow(hDlg);
}

// Deletes by way of the page's list alone: without the page the reservation stays, for the check of passed ones.
static void OnCancel(HWND hDlg)
{
    DeleteReservationAndRestore(g_hReservationPage, g_nPromptIndex, 0, 0);
    nChangeMsg = CHANGE_ASK_FIRST;
    ShowFace(hDlg, false);
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
    case WM_CLOSE:
        // Alt+F4 is no answer. Left to the dialog manager it would come back as IDCANCEL and delete the reservation.
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

int IsReserveQuestionOpen()
{
    return s_QuestionOpen ? 1 : 0;
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
