// A monitor's colour settings as a whole, or value by value: read into the table, written from a record.
//
// Any thread; each of the up to seven accesses waits for the host.
#pragma once

#include "monitor/color_features.h"

#include <cstddef>

// Reads one value, and its maximum where one is kept, from the monitor into g_CurSetting and the maxima. nMonitor: 0 to
// MAX_MONITOR - 1.
void ReadColorFeature(LONG nMonitor, const COLORFEATURE &feature);

// Reads them all. Ends early once the plug-in stops. An index out of range does nothing.
void ReadCurrentSettings(LONG nMonitor);

// Writes a record to a monitor: ECO mode first, since the monitor keeps a brightness for each ECO state; the gains only
// for a user preset. Monitor -1 does nothing.
void ApplyColorSettings(LONG nMonitor, const COLORSETTING *lpSetting);

// The same with those fields alone that lie wholly in the first cbSetting bytes of the record; without the preset there
// are no gains to write either.
void ApplyColorFields(LONG nMonitor, const COLORSETTING *lpSetting, size_t cbSetting);
