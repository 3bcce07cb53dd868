// Candidates in list boxes.
#include "panel/candidate_list.h"

#include "launcher/candidates.h"
#include "settings/registry.h"

int FillCandidateList(HWND hPage, int nList)
{
    char name[SETTING_TEXT_SIZE];
    for (int slot = 0; slot < CANDIDATE_COUNT; ++slot)
        if (ReadCandidateName(slot, name) &&
            SendDlgItemMessageA(hPage, nList, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name)) < 0)
            return 0;
    return 1;
}

int ReadListText(HWND hPage, int nList, LRESULT index, char *lpszText)
{
    lpszText[0] = '\0';
    const LRESULT length = SendDlgItemMessageA(hPage, nList, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
    if (length < 0 || length >= static_cast<LRESULT>(SETTING_TEXT_SIZE))
        return 0;
    SendDlgItemMessageA(hPage, nList, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(lpszText));
    return 1;
}

int ReadSelectedText(HWND hPage, int nList, char *lpszText)
{
    return ReadListText(hPage, nList, SendDlgItemMessageA(hPage, nList, LB_GETCURSEL, 0, 0), lpszText);
}
