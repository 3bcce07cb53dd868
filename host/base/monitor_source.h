// Where a run's monitors come from. Each kind of monitors is a folder that fills this table; the host knows no more of
// it.
#pragma once

#include <string>
#include <vector>

#include "host/base/monitor_backend.h"

// Tells a monitor from any other that is there, wherever it stands, and from itself once it is another one than before.
struct MONITORIDENTITY {
    std::string text;
    // Nothing says that it is a true monitor: it may be what Windows has in the place of one that sleeps.
    bool isVague;

    bool operator==(const MONITORIDENTITY &) const = default;
};

// `context` is the table's own pointer. All functions: any thread.
struct MONITORSOURCE {
    void *context;
    MONITORBACKEND backend; // through which the router reaches the monitors in use

    // The identities of the monitors that are there now. Does not touch those in use; while nothing can be said, these
    // are they. Takes up to some seconds.
    std::vector<MONITORIDENTITY> (*look)(void *context);

    // The identities of the monitors in use, by their indexes.
    std::vector<MONITORIDENTITY> (*inUse)(void *context);

    // Takes up those that are there now in the place of those in use, and ends stop. With `keepsPlaces` those in use
    // that are away keep their indexes, and new ones come behind them. A simulated monitor is there as long as its
    // description is, and stays as it is when that is as before. Takes up to some seconds. While the backend is not in
    // use.
    void (*find)(void *context, bool keepsPlaces);

    // What the user should know of the monitors, a line each; empty: nothing. For windows in Japanese, for console and
    // log in English.
    std::string (*trouble)(void *context, bool inEnglish);

    // From now on the monitors are left alone: nothing is read from them in passing. Or no longer: they may have slept
    // meanwhile.
    void (*rest)(void *context, bool rests);

    // Accesses that wait, now or later, end soon.
    void (*stop)(void *context);

    // The last call of all. Returns false when a call into a driver has not come back, and only the process's end can
    // end it.
    bool (*close)(void *context);
};
