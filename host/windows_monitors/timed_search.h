// Looks for monitors with a limit on the time it takes: a driver that hangs must not hang the program.
#pragma once

#include <memory>

#include "host/windows_monitors/found_monitor.h"

constexpr DWORD SEARCH_PATIENCE = 8000; // ms

typedef std::vector<DISPLAY> (*LISTDISPLAYS)();

// A search under way, held by its thread, too.
struct MONITORSEARCH;

// Lists the displays and opens their monitors on a thread of its own. One that is not done within `patience` ms gives
// no monitors and the trouble OUR_ERROR_STUCK; what it finds later is closed again. *search: for IsSearching. Any
// thread.
FINDING SearchMonitors(const MONITORAPI &api, LISTDISPLAYS listDisplays, DWORD patience,
                       std::shared_ptr<MONITORSEARCH> *search);

// Whether the search's thread is still in the driver.
bool IsSearching(MONITORSEARCH *search);
