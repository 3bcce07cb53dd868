// The names of the colour presets.
#pragma once

#include <windows.h>

// The name of a preset, by its VCP 0x14 value: Japanese (Shift-JIS) on a Japanese system, else English. Values beyond
// 15 are named like those that no monitor uses. Result: a lasting text. Any thread.
LPCSTR ColorPresetName(LONG nValue);
