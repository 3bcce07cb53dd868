// The acts on the pages of the panel: what a user does there, while calls fail.
#pragma once

#include "stress/panel_hands.h"
#include "stress/scenario.h"

// Bring the panel to the page, before an act.
void OpenColorPage(STAGE *stage);
void OpenLockPage(STAGE *stage);
void OpenButtonPage(STAGE *stage);
void OpenReservationPage(STAGE *stage);

void OpenPanelAtRoot(STAGE *stage);

// The acts, and what each leaves undone.
void OpenAndClosePanel(STAGE *stage);
std::string PanelNotOpened(STAGE *stage);
template <TREEITEM ITEM>
void ShowPage(STAGE *)
{
    ChooseItem(ITEM);
}
std::string PageNotShown(STAGE *stage);
void ChangeColors(STAGE *stage); // a profile chosen, the contrast moved, ECO switched
std::string ColorsNotChanged(STAGE *stage);
void StoreProfiles(STAGE *stage); // a colour profile and a program registered
std::string ProfilesNotStored(STAGE *stage);
void LockButton(STAGE *stage);
std::string ButtonNotLocked(STAGE *stage);
void EnableLauncher(STAGE *stage);
std::string LauncherNotEnabled(STAGE *stage);
void EnterReservation(STAGE *stage);
std::string ReservationNotEntered(STAGE *stage);
