// All settings of the plug-in as they are at a moment, for comparison and for putting them back.
#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

struct REGISTRYVALUE {
    std::string path; // below HKEY_CURRENT_USER
    std::string name;
    DWORD type;
    std::string data;
};

struct SETTINGSIMAGE {
    std::vector<REGISTRYVALUE> values;
    std::map<std::string, std::string> files; // INI files by name, byte for byte; a missing one is absent here
    // The same in parts that are written at once: a registry value, a section of "profile.ini", a key of "ontimer.ini".
    std::map<std::string, std::string> parts;
};

SETTINGSIMAGE TakeSettings();

// Makes the settings be those of an image; what is not in it goes.
void PutSettings(const SETTINGSIMAGE &image);

// The parts of `now` that are in none of the given states; empty when there are none. A state lists all parts: one that
// it does not have is absent in it.
std::string FindForeignParts(const std::vector<const SETTINGSIMAGE *> &states, const SETTINGSIMAGE &now);
