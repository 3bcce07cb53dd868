// Where the running program stands.
#pragma once

#include <string>

// The full path of the running program.
std::wstring ProgramPath();

// The folder of the running program, without a backslash at its end.
std::string ProgramFolder();
