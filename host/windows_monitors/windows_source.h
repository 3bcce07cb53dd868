// The monitors that Windows has as the monitors of a run.
#pragma once

#include "host/base/monitor_source.h"

// Reads monitors.ini; no monitor is there before the first find. `fresh`: what is kept of their capability strings is
// forgotten.
MONITORSOURCE OpenWindowsSource(bool fresh);
