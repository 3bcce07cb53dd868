// A monitor's colour settings as a whole: read into the table, or written from a record.
//
// Any thread; each of the up to seven accesses waits for the host.
#pragma once

#include "monitor/monitor_table.h"

#include <cstddef>

// Fills the monitor's g_CurSetting and its maxima from the monitor. Ends early once the plug-in stops. An index out of
// range does nothing.
void ReadCurrentSettings(LONG nMonitor);

// Writes a record to a monitor: ECO mode first, since the monitor keeps a brightness for each ECO state; the gains only
// for a user preset. Monitor -1 does nothing.
void ApplyColorSettings(LONG nMonitor, const COLORSETTING *lpSetting);

// The same with those fields alone that lie wholly in the first cbSetting bytes of the record; without the preset there
// are no gains to write either.
void ApplyColorFields(LONG nMonitor, const COLORSETTING *lpSetting, size_t cbSetting);
