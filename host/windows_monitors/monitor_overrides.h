// monitors.ini: what its owner knows better than a monitor itself. README.md in this folder tells a user the format.
#pragma once

#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "host/windows_monitors/access_rules.h"

#include "host/base/ini_reader.h"

// What a section may say of how its monitor is accessed.
enum MANNER {
    MANNER_WRITE_PAUSE,
    MANNER_READ_PAUSE,
    MANNER_SETTLE_PAUSE,
    MANNER_RETRY_PAUSE,
    MANNER_TRIES,
    MANNER_COUNT
};

// What holds for one monitor.
struct MONITOROVERRIDE {
    std::string model;                     // empty: its own
    std::string capabilities;              // empty: its own
    std::array<int, 256> maxima;           // per VCP code; -1: its own
    std::array<bool, 256> never;           // VCP codes that are never touched
    bool takesMakersCodes;                 // codes from 0xE0 on mean to it what they mean to monitors of our make
    std::array<int, MANNER_COUNT> manners; // by MANNER; -1: as any monitor
    std::vector<std::string> titles;       // the sections that it comes from, as "[ABC1234]"
};

struct OVERRIDESECTION {
    std::string product; // such as ABC1234; empty: any
    std::string serial;  // of that product; empty: any
    std::string model;   // one of its names; empty: any
    MONITOROVERRIDE content;
};

struct OVERRIDEFILE {
    std::vector<OVERRIDESECTION> sections;
    std::vector<INIFAULT> faults;
};

// What a monitor is known by in the file's sections. Empty: not known.
struct MONITORTITLES {
    std::string product;
    std::vector<std::string> serials; // as number, and in words
    std::vector<std::string> models;  // what its EDID, its capability string or, without an EDID, Windows call it
};

// Reads the file's text (UTF-8). Keys below a title with a fault are left out, too, without a fault of their own.
OVERRIDEFILE ParseOverrides(const std::string &text);

// Reads the file; one that is not there has no sections and no faults.
OVERRIDEFILE ReadOverrides(const std::string &path);

// How a monitor is accessed of which that holds.
ACCESSMANNERS MannersFor(const MONITOROVERRIDE &override);

// What all fitting sections say together: [model NAME] first, then [ABC1234], then [ABC1234 SERIAL]; a later one
// replaces a text or maximum of an earlier one, and adds to the codes never touched.
MONITOROVERRIDE OverrideFor(const OVERRIDEFILE &file, const MONITORTITLES &titles);
