// The text file that describes a simulated monitor. monitors/README.md tells a user the format.
#pragma once

#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "host/base/edid.h"

constexpr int MONITOR_BUTTON_COUNT = 6;      // the last one is POWER
constexpr DWORD MONITOR_DELAY_LIMIT = 20000; // ms

// One line of the section [vcp].
struct MONITORFEATURE {
    BYTE code;
    WORD value, maximum; // at the factory
    int ecoValue;        // what it holds while ECO mode is on; -1: the same as without ECO
    int delay;           // ms per access; -1: the monitor's own
    bool fails;          // every access fails
    bool silent;         // no access is answered
    bool readOnly;       // writes are ignored
    bool momentary;      // a write starts something and leaves the value
    bool userPresets;    // writes count in the user presets only
    bool refusesAbove;   // a write above the maximum is ignored instead of limited to it
    bool buttonRegister; // reports the button pressed last
    bool hidesLocked;    // ... but not a locked one
};

struct MONITORFILE {
    std::string path;
    unsigned digest;          // of the whole text: another one for nearly every other text
    std::string model;        // up to 12 characters
    std::string capabilities; // up to 511 characters
    EDIDBLOCK edid;
    std::array<std::string, MONITOR_BUTTON_COUNT> labels; // empty: no such button
    int delay;                                            // ms per access
    bool silent;                                          // answers nothing on its DDC/CI line
    std::vector<MONITORFEATURE> features;
};

// Reads a description from text (UTF-8, lines ended by LF or CR LF). `path` is only for messages. Returns false with
// "PATH:LINE: REASON" in *error at the first fault; *file is then of no use.
bool ParseMonitorFile(const std::string &text, const std::string &path, MONITORFILE *file, std::string *error);

// The same from a file on disk; a file that cannot be read gives "PATH: REASON".
bool ReadMonitorFile(const std::string &path, MONITORFILE *file, std::string *error);

// Reads every file named: a file, or a folder, of which all *.ini are taken in name order. Returns false with the first
// error; nothing found at all is an error, too.
bool ReadMonitorFiles(const std::vector<std::string> &paths, std::vector<MONITORFILE> *files, std::string *error);
