// The server link's window class. No listener is started yet.
#include "server/server_link.h"

void InitServerLink() {}

HWND CreateServerLinkWindow(HWND)
{
    return nullptr;
}

LRESULT CALLBACK ServerLinkWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return DefWindowProcA(hWnd, message, wParam, lParam);
}
