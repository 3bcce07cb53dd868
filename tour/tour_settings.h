// The settings that a tour works on: a scratch place in the registry, so that it begins as on a new PC, shows the same
// each time, and a user's own settings are never touched, also when it fails or is ended on the way.
#pragma once

#include <windows.h>

#include <string>

// From here on HKEY_CURRENT_USER is an empty scratch key for this process and every library in it. Call before the
// plug-in starts. Returns false with a reason when that cannot be done, or when a file in which the plug-in keeps
// settings stands beside the program: the plug-in would use it.
bool OpenTourSettings(std::string *error);

// Brings the user's own settings back and removes the scratch key and the files that came into being meanwhile. Call
// after the plug-in has stopped; harmless when nothing is open.
void CloseTourSettings();
