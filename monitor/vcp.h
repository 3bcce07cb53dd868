// Reading and writing VCP features (MCCS) of a monitor: the two calls that all traffic of the features goes through.
//
// Any thread. Each call waits for the host, up to about 10 s.
#pragma once

#include <windows.h>

// The codes in use. 0xE0 and above are the maker's own.
enum : BYTE {
    VCP_BRIGHTNESS = 0x10,
    VCP_CONTRAST = 0x12,
    VCP_COLOR_PRESET = 0x14,
    VCP_RED_GAIN = 0x16,
    VCP_GREEN_GAIN = 0x18,
    VCP_BLUE_GAIN = 0x1A,
    VCP_AUTO_SETUP = 0x1E, // write 1 to start
    VCP_INPUT_SOURCE = 0x60,
    VCP_ECO_MODE = 0xE0, // 0 off, else on
    VCP_TV_CHANNEL = 0xE8,
    VCP_BEFORE_SHUTDOWN = 0xF0, // written 0 just before the POWER button shuts the PC down
    VCP_BUTTON_LOCK = 0xF2,     // mask of locked front-panel buttons
    VCP_BUTTON_PRESSED = 0xF4,  // high byte: code of the last button pressed; 255 = none, written to clear it
};

constexpr WORD BUTTON_PRESSED_NONE = 255;

// Colour presets from this one on are the user's own; the gains count in these alone.
constexpr LONG COLOR_PRESET_FIRST_USER = 11;

// Reads a feature. lpMaximum may be null. Result: the current value; -1 for monitor -1 (nothing is sent) and when no
// answer came, with *lpMaximum as it was.
LONG GetVCP(LONG nMonitor, BYTE bCode, LONG *lpMaximum);

// Writes a feature. Result: the host's; -1 for monitor -1 (nothing is sent) and when no answer came.
LONG SetVCP(LONG nMonitor, BYTE bCode, WORD wValue);

// Tells the host that the colours follow the foreground program (1) or not (0), on a monitor or on all of them (-1).
LONG SetDirectLink(LONG nMonitor, LONG bOn);
