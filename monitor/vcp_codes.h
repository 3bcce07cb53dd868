// The codes of the Monitor Control Command Set (MCCS): numbers, names, and the values that mean something. The one home
// of these, for the plug-in, the host and all that talk of monitors; free of Windows.
#pragma once

#include <cstdint>

// The codes in use. From VCP_MAKERS_OWN on they are the maker's own.
enum : uint8_t {
    VCP_RESTORE_DEFAULTS = 0x04,  // this and the next two: any value but 0 restores
    VCP_RESTORE_LUMINANCE = 0x05, // brightness and contrast
    VCP_RESTORE_COLOR = 0x08,
    VCP_BRIGHTNESS = 0x10,
    VCP_CONTRAST = 0x12,
    VCP_COLOR_PRESET = 0x14,
    VCP_RED_GAIN = 0x16,
    VCP_GREEN_GAIN = 0x18,
    VCP_BLUE_GAIN = 0x1A,
    VCP_AUTO_SETUP = 0x1E, // write 1 to start
    VCP_INPUT_SOURCE = 0x60,
    VCP_POWER_MODE = 0xD6,
    VCP_ECO_MODE = 0xE0, // 0 off, else on
    VCP_TV_CHANNEL = 0xE8,
    VCP_BEFORE_SHUTDOWN = 0xF0, // written 0 just before the POWER button shuts the PC down
    VCP_BUTTON_LOCK = 0xF2,     // mask of locked front-panel buttons
    VCP_BUTTON_PRESSED = 0xF4,  // high byte: bit of the last button pressed, or BUTTON_PRESSED_NONE
};
constexpr uint8_t VCP_MAKERS_OWN = 0xE0;

// Presets (VCP_COLOR_PRESET) from this one on are the user's own; the gains count in these alone.
constexpr int COLOR_PRESET_FIRST_USER = 11;

// VCP_INPUT_SOURCE.
enum : uint16_t {
    INPUT_ANALOG = 1,
    INPUT_ANALOG2,
    INPUT_DIGITAL,
    INPUT_DIGITAL2,
    INPUT_VIDEO, // composite
    INPUT_VIDEO2,
    INPUT_S_VIDEO,
    INPUT_S_VIDEO2,
    INPUT_TV, // the first of the tuners
    INPUT_TV_LAST = INPUT_TV + 2,
};

// VCP_POWER_MODE.
enum : uint16_t {
    POWER_MODE_ON = 1,
    POWER_MODE_OFF = 4,
};

// VCP_BUTTON_PRESSED while no button was pressed; written to clear what was.
constexpr uint8_t BUTTON_PRESSED_NONE = 255;

// The bit of a front-panel button, 1 to 6 (POWER), in VCP_BUTTON_LOCK and VCP_BUTTON_PRESSED; 0 for a number that is no
// button.
constexpr uint8_t ButtonBit(int nButton)
{
    constexpr uint8_t bits[] = {1, 2, 4, 8, 16, 128};
    return nButton >= 1 && nButton <= 6 ? bits[nButton - 1] : uint8_t{0};
}

// What a code is called.
struct VCPNAME {
    uint8_t bCode;
    const char *lpszName;                // in sentences
    const char *lpszShortName = "other"; // one word, of the codes that the product or its simulation knows
};
inline constexpr VCPNAME VCP_NAMES[] = {
    {0x01, "degauss"},
    {0x02, "new control value"},
    {0x03, "soft controls"},
    {VCP_RESTORE_DEFAULTS, "restore factory defaults", "factory-reset"},
    {VCP_RESTORE_LUMINANCE, "restore factory brightness and contrast", "luminance-reset"},
    {0x06, "restore factory geometry"},
    {VCP_RESTORE_COLOR, "restore factory colour", "colour-reset"},
    {0x0A, "restore factory TV defaults"},
    {0x0B, "colour temperature step"},
    {0x0C, "colour temperature"},
    {0x0E, "clock"},
    {VCP_BRIGHTNESS, "brightness", "brightness"},
    {0x11, "flesh tone"},
    {VCP_CONTRAST, "contrast", "contrast"},
    {0x13, "backlight control"},
    {VCP_COLOR_PRESET, "colour preset", "colour-preset"},
    {VCP_RED_GAIN, "red gain", "red-gain"},
    {0x17, "colour vision compensation"},
    {VCP_GREEN_GAIN, "green gain", "green-gain"},
    {VCP_BLUE_GAIN, "blue gain", "blue-gain"},
    {0x1C, "focus"},
    {VCP_AUTO_SETUP, "auto setup", "auto-setup"},
    {0x1F, "auto colour setup"},
    {0x20, "horizontal position"},
    {0x22, "horizontal size"},
    {0x30, "vertical position"},
    {0x32, "vertical size"},
    {0x3E, "clock phase"},
    {0x52, "active control"},
    {0x54, "performance preservation"},
    {0x56, "horizontal moire"},
    {0x58, "vertical moire"},
    {0x59, "red saturation"},
    {0x5A, "yellow saturation"},
    {0x5B, "green saturation"},
    {0x5C, "cyan saturation"},
    {0x5D, "blue saturation"},
    {0x5E, "magenta saturation"},
    {VCP_INPUT_SOURCE, "input source", "input"},
    {0x62, "loudspeaker volume"},
    {0x63, "speaker selection"},
    {0x64, "microphone volume"},
    {0x66, "ambient light sensor"},
    {0x6C, "red black level"},
    {0x6E, "green black level"},
    {0x70, "blue black level"},
    {0x72, "gamma"},
    {0x73, "lookup table size"},
    {0x74, "one lookup table entry"},
    {0x75, "lookup table entries"},
    {0x76, "remote procedure call"},
    {0x78, "EDID"},
    {0x82, "horizontal mirror"},
    {0x84, "vertical mirror"},
    {0x86, "display scaling"},
    {0x87, "sharpness"},
    {0x88, "velocity scan modulation"},
    {0x8A, "colour saturation"},
    {0x8B, "TV channel up or down"},
    {0x8C, "TV sharpness"},
    {0x8D, "mute"},
    {0x8E, "TV contrast"},
    {0x8F, "treble"},
    {0x90, "hue"},
    {0x91, "bass"},
    {0x92, "TV black level"},
    {0x93, "balance"},
    {0x94, "audio processor mode"},
    {0x95, "window position, left"},
    {0x96, "window position, top"},
    {0x97, "window position, right"},
    {0x98, "window position, bottom"},
    {0x9A, "window background"},
    {0x9B, "red hue"},
    {0x9C, "yellow hue"},
    {0x9D, "green hue"},
    {0x9E, "cyan hue"},
    {0x9F, "blue hue"},
    {0xA0, "magenta hue"},
    {0xA2, "auto setup on or off"},
    {0xA4, "window mask"},
    {0xA5, "window selection"},
    {0xAA, "screen orientation"},
    {0xAC, "horizontal frequency"},
    {0xAE, "vertical frequency"},
    {0xB0, "settings"},
    {0xB2, "subpixel layout"},
    {0xB4, "source timing mode"},
    {0xB5, "source colour coding"},
    {0xB6, "display technology"},
    {0xB7, "monitor status"},
    {0xB8, "packet count"},
    {0xB9, "monitor X origin"},
    {0xBA, "monitor Y origin"},
    {0xBB, "header error count"},
    {0xBC, "body error count"},
    {0xBD, "client identity"},
    {0xBE, "link control"},
    {0xC0, "hours in use"},
    {0xC2, "descriptor length"},
    {0xC3, "transmit descriptor"},
    {0xC4, "enable descriptor"},
    {0xC6, "application enable key"},
    {0xC8, "controller"},
    {0xC9, "firmware level"},
    {0xCA, "monitor menu and buttons"},
    {0xCC, "menu language"},
    {0xCD, "status indicators"},
    {0xCE, "auxiliary display size"},
    {0xCF, "auxiliary display data"},
    {0xD0, "output selection"},
    {0xD2, "asset tag"},
    {0xD4, "stereo mode"},
    {VCP_POWER_MODE, "power mode", "power-mode"},
    {0xD7, "auxiliary power output"},
    {0xDA, "scan mode"},
    {0xDB, "image mode"},
    {0xDC, "display application"},
    {0xDE, "scratch pad"},
    {0xDF, "MCCS version"},
    {VCP_ECO_MODE, "maker's own", "eco"},
    {VCP_TV_CHANNEL, "maker's own", "tv-channel"},
    {VCP_BEFORE_SHUTDOWN, "maker's own", "end-of-use"},
    {VCP_BUTTON_LOCK, "maker's own", "button-lock"},
    {VCP_BUTTON_PRESSED, "maker's own", "button-register"},
};

// The row of a code; null for one without a name.
constexpr const VCPNAME *FindVcpName(unsigned nCode)
{
    for (const VCPNAME &row : VCP_NAMES)
        if (row.bCode == nCode)
            return &row;
    return nullptr;
}

// The name of a code: "maker's own" for all of those, "reserved" for one that MCCS does not name.
constexpr const char *VcpName(unsigned nCode)
{
    if (const VCPNAME *row = FindVcpName(nCode))
        return row->lpszName;
    return nCode >= VCP_MAKERS_OWN ? "maker's own" : "reserved";
}

// The one word for a code in the packet log, such as "brightness"; "other" for one that has none.
constexpr const char *VcpShortName(unsigned nCode)
{
    const VCPNAME *row = FindVcpName(nCode);
    return row ? row->lpszShortName : "other";
}
