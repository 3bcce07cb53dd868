// What the tests share: the stand-in's control functions, monitors described in a line, and displays to put them
// behind.
#pragma once

#include <string>
#include <vector>

#include "host/windows_monitors/displays.h"
#include "tests/dxva2_stand_in/stand_in.h"

// The control functions of the dxva2.dll that this process has loaded, which is loaded now if need be.
struct STANDINCONTROL {
    decltype(&StandInOpen) open;
    decltype(&StandInSet) set;
    decltype(&StandInFeature) feature;
    decltype(&StandInTurn) turn;
    decltype(&StandInAccesses) accesses;
};
extern STANDINCONTROL g_StandIn;

// A monitor in the words of monitor files, put together: its name, and what further lines of [monitor] and [vcp] say.
// It has brightness 40, contrast 50, preset 11 of 5, 8 and 11, gains of 60 and inputs 1, 3 and 17, of which 17 shows.
struct TESTMONITOR {
    const char *model;
    std::string monitorLines, vcpLines;
};

// Has the stand-in begin anew with these monitors. Fails the test when it does not.
void OpenTestMonitors(const std::vector<TESTMONITOR> &monitors);

// A monitor of the stand-in's on the desk of a host that asks Windows itself: with its place, and the number in its
// display's name. One without an EDID is what Windows has in the place of others that sleep.
struct DESKMONITOR {
    int monitor;
    unsigned display;
    bool hasEdid = true;
};

// From now on these are there and no others.
void SetDesk(const std::vector<DESKMONITOR> &desk);

// What a monitor's code holds, seen past the host; -1 for a code that it has not.
int Seen(int monitor, BYTE code);
