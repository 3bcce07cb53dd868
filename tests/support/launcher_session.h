// The fixture of the launcher's pages: the panel open with the launcher in its tree, and the launcher's values.
#pragma once

#include "support/panel_session.h"

#include <optional>
#include <string>

using StoredNumber = std::optional<DWORD>;
using StoredText = std::optional<std::string>;

class LauncherPagesTest : public PanelTest {
protected:
    // Opens the panel and changes the monitor to and fro, with which the launcher comes into the tree. The button poll,
    // if one is started, does not tick.
    void OpenPanel(int monitor = 0);

    // Opens a page; the log then begins with what is done on it.
    HWND OpenPage(TREEITEM item);

    // The user's launcher values; texts as their bytes.
    static void Put(const std::string &name, DWORD value);
    static void Put(const std::string &name, const std::string &text);
    static StoredNumber Number(const std::string &name);
    static StoredText Text(const std::string &name);
    static void Remove(const std::string &name);
};
