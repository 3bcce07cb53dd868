// The file dialog.
#include "panel/open_file.h"

#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"
#include "panel/resources/strings.h"

#include <cderr.h>
#include <commdlg.h>

static_assert(sizeof(OPENFILENAMEA) == 88);

constexpr int FILTER_NAME_SIZE = 96;
constexpr int FILTER_SIZE = 128;

// The filter's name and pattern behind each other, with two NULs at the end. Not by wsprintf, which leaves NULs out.
static void BuildFilter(FILEKIND kind, char (&filter)[FILTER_SIZE])
{
    ZeroMemory(filter, sizeof filter);
    if (kind == FILEKIND::Program)
        LoadText(IDS_FILTER_PROGRAMS, filter, FILTER_NAME_SIZE);
    else
        lstrcpyA(filter, "すべてのファイル(*.*)");
    lstrcpyA(filter + lstrlenA(filter) + 1, kind == FILEKIND::Program ? "*.exe" : "*.*");
}

// The first systems of either family know the structure without its last fields only.
static BOOL ShowOpenFile(OPENFILENAMEA *dialog)
{
    dialog->lStructSize = sizeof *dialog;
    if (GetOpenFileNameA(dialog))
        return TRUE;
    if (CommDlgExtendedError() != CDERR_STRUCTSIZE)
        return FALSE;
    dialog->lStructSize = OPENFILENAME_SIZE_VERSION_400A;
    return GetOpenFileNameA(dialog);
}

bool ChooseFile(HWND hOwner, FILEKIND kind, char *lpszPath, char *lpszTitle)
{
    char filter[FILTER_SIZE];
    char caption[128];
    BuildFilter(kind, filter);
    LoadText(IDS_CHOOSE_PROGRAM, caption, sizeof caption);
    lpszPath[0] = '\0';
    if (lpszTitle)
        lpszTitle[0] = '\0';
    OPENFILENAMEA dialog = {};
    dialog.hwndOwner = hOwner;
    dialog.lpstrFilter = filter;
    dialog.lpstrFile = lpszPath;
    dialog.nMaxFile = MAX_PATH;
    dialog.lpstrFileTitle = lpszTitle;
    dialog.nMaxFileTitle = lpszTitle ? MAX_PATH : 0;
    dialog.lpstrTitle = caption;
    dialog.Flags = OFN_NONETWORKBUTTON | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    // A stop ends the dialog by a quit message, and the system may then report a choice, with an empty path.
    if (!g_bAbort && ShowOpenFile(&dialog) && !g_bAbort && lpszPath[0])
        return true;
    lpszPath[0] = '\0';
    if (lpszTitle)
        lpszTitle[0] = '\0';
    return false;
}
