// The plug-in's panel as the tour sees it: found among this program's windows and used through the screen.
//
// Functions that return bool return false with a reason in the tour. The tour's thread.
#pragma once

#include <windows.h>

#include <string>

#include "host/panel_window.h"
#include "tour/tour_steps.h"

// The page that it shows beside its tree; null without one.
HWND FindPage();

// The panel's width beyond the one that it has without a page, in pixels.
int PanelWidening();

// The texts of the tree's items, in order, whether their parents are open or not.
std::vector<std::string> TreeTexts();

// Opens what hides an item of the tree, clicks it and waits until its page stands. For the root: until no page does.
bool ChoosePage(TOUR *tour, const std::string &text);

// The same, and a picture of the panel.
bool ShowPage(TOUR *tour, const std::string &text, const std::string &picture);

// Chooses a monitor, from 0 on, in the panel's list.
bool ChooseMonitor(TOUR *tour, int monitor);

// Shows that the tree of the present monitor lacks an item, for a reason that the monitor has, with a picture of the
// tree. When it is there all the same, the step is left out for that reason.
STEPRESULT ShowNotOffered(TOUR *tour, const std::string &item, const std::string &why, const std::string &picture);

// Takes a picture of the panel alone.
void TakePanelPicture(TOUR *tour, const std::string &name);
