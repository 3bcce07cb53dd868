// The version page: it only shows its template and the product's picture.
#pragma once

#include <windows.h>

INT_PTR CALLBACK VersionDlgProc(HWND hPage, UINT message, WPARAM wParam, LPARAM lParam);
