// The fixture of all tests that have to do with the panel: the plug-in started, its panel open, and the hands of a
// user.
#pragma once

#include "panel/page_tree.h"
#include "panel/pages.h"
#include "support/hands.h"
#include "support/plugin_session.h"

#include <string>
#include <vector>

class PanelTest : public PluginTest {
protected:
    // Two monitors, "NRV-PA1" and "NRV-PA2", with all that a page can be about: ECO mode, a button lock, a press
    // register that names all bits, and, the first, a tuner with two video inputs. "Launcher.ini" labels their buttons
    // "B1" to "B5" and "POWER".
    PanelTest();

    // Starts the plug-in and opens the panel as the host does. False when it did not come.
    bool Open();

    // Closes the panel by its close box.
    void Close();

    // Chooses an item of the tree, as a click does; the choice is done when this returns.
    void Choose(TREEITEM item);

    // Chooses a monitor in the list, as a click does.
    void ChooseMonitor(int monitor);

    HWND Panel() const;
    HWND Page(TREEITEM item) const; // the page that the item opens; null when it is not open

    // What the host was asked since the last look, with '|' behind each request.
    std::string Requests();

    // The width of the panel beyond the width that it opened with.
    int Widening() const;

private:
    int m_width = 0;
};
