// What Windows says about the displays of the desktop and the monitors behind them, as a plain list.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// A monitor device that takes part in a display.
struct DISPLAYMONITOR {
    std::string instance;    // of the device, such as DISPLAY\ABC1234\5&1A2B&0&UID256; empty: not known
    std::string description; // in words, as Windows has it
    std::vector<BYTE> edid;  // whole; empty: not known
};

struct DISPLAY {
    HMONITOR hMonitor;
    std::string device;  // such as \\.\DISPLAY1
    std::string adapter; // the graphics card in words
    RECT area;           // on the desktop
    bool isPrimary;
    std::vector<DISPLAYMONITOR> monitors; // one, or more when they show the same picture
};

// The displays in the order in which Windows lists them. Any thread; no monitor is asked.
std::vector<DISPLAY> ListDisplays();

// The instance of the device that an interface path belongs to: \\?\DISPLAY#A#B#{...} gives DISPLAY\A\B. Empty when it
// is no such path.
std::string InstanceOfInterface(const std::string &path);
