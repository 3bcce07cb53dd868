// The settings that a tour works on: a scratch place in the registry, so that it begins as on a new PC, shows the same
// each time, and a user's own settings are never touched, also when it fails or is ended on the way.
#pragma once

#include <windows.h>

#include <string>

// From here on HKEY_CURRENT_USER is an empty scratch key for this process and every library in it. Call before the
// plug-in starts. Returns false with a reason when that cannot be done.
bool OpenTourSettings(std::string *error);

// Write a launcher setting into the scratch key, where the plug-in reads it. Return false with a reason when that
// fails, or when they are not open.
bool WriteTourNumber(const std::string &name, DWORD value, std::string *error);
bool WriteTourText(const std::string &name, const std::string &value, std::string *error);

// Brings the user's own settings back and removes the scratch key. Call after the plug-in has stopped; harmless when
// nothing is open.
void CloseTourSettings();
