// The panel's sliding animation.
#include "panel/panel_width.h"

#include "panel/page_focus.h"

constexpr DWORD SLIDE_PAUSE_MS = 1;

static RECT rcPanel; // the panel's window when it was opened

void TakePanelSize(HWND hPanel)
{
    GetWindowRect(hPanel, &rcPanel);
}

int PanelWidening(HWND hPanel)
{
    RECT now;
    GetWindowRect(hPanel, &now);
    return (now.right - now.left) - (rcPanel.right - rcPanel.left);
}

static void SetWidth(HWND hPanel, int nWidening)
{
    SetWindowPos(hPanel, nullptr, 0, 0, rcPanel.right - rcPanel.left + nWidening, rcPanel.bottom - rcPanel.top,
                 SWP_NOMOVE | SWP_NOOWNERZORDER | SWP_NOZORDER | SWP_NOACTIVATE);
}

void SetPanelWidening(HWND hPanel, int nWidening)
{
    SetWidth(hPanel, nWidening);
    FollowPanelEdge(hPanel);
}

void SlidePanel(HWND hPanel, int nFrom, int nTo)
{
    const int step = nTo < nFrom ? -SLIDE_STEP : SLIDE_STEP;
    for (int widening = nFrom;; widening += step) {
        SetWidth(hPanel, widening);
        Sleep(SLIDE_PAUSE_MS);
        if (step > 0 ? widening >= nTo : widening <= nTo)
            break;
    }
    FollowPanelEdge(hPanel);
}

void SlidePanelBy(HWND hPanel, int nDelta)
{
    const int from = PanelWidening(hPanel);
    SlidePanel(hPanel, from, from + nDelta);
}
