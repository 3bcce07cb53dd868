// Whether Windows starts the program at log-on: the user's own list of such programs in the registry.
#pragma once

#include <windows.h>

#include <string>

// What the list holds for a program: its path in double quotes.
std::wstring AutostartCommand(const std::wstring &program);

// Whether this very program is started at log-on: the list has it, and the user has not switched it off in the task
// manager. An entry for a copy of it in another folder does not count.
bool IsAutostartOn(const std::wstring &program);

// Puts the program into the list, in the place of any copy of it, or takes it out. Returns 0 or Windows' error code.
DWORD SetAutostart(const std::wstring &program, bool on);
