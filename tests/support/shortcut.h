// Shortcut files.
#pragma once

#include <string>

// Makes a shortcut as the shell does. With an empty target it leads to no path.
void MakeShortcut(const std::string &link, const std::string &target);
