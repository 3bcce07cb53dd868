// The only place where a message box is shown.
#include "kernel/base/texts.h"
#include "kernel/base/plugin_state.h"

constexpr int BOX_TEXT_SIZE = 512;

void LoadText(UINT nString, char *lpszBuffer, int cbBuffer)
{
    lpszBuffer[0] = '\0';
    LoadStringA(g_hInstance, nString, lpszBuffer, cbBuffer);
}

int ShowBox(HWND hOwner, LPCSTR lpszText, LPCSTR lpszCaption, UINT nStyle)
{
    if (g_bAbort)
        return ANSWER_NONE;
    const int answer = MessageBoxA(hOwner, lpszText, lpszCaption, nStyle);
    return g_bAbort ? ANSWER_NONE : answer;
}

int ShowStringBox(HWND hOwner, UINT nString, LPCSTR lpszCaption, UINT nStyle)
{
    char text[BOX_TEXT_SIZE];
    LoadText(nString, text, sizeof text);
    return ShowBox(hOwner, text, lpszCaption, nStyle);
}
