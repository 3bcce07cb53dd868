// What a monitor's colour settings consist of. One table says for each value where it stands, in the monitor, in the
// records, in a profile's text, and when it counts; reading, writing, profiles, the commands of host and server and the
// colour page go by it.
//
// Any thread. Nothing here waits, and of Windows it needs the types alone.
#pragma once

#include "monitor/monitor_table.h"
#include "monitor/vcp_codes.h"

#include <cstddef>

// Colour settings of a monitor. Brightness has two fields because a monitor keeps one value for each ECO state.
// A value that could not be read is 0xFFFF, or -1 in dwEco. The records of host and server are the beginning of this
// one.
struct COLORSETTING {
    DWORD dwEco; // 0 off, else on
    WORD wBrightEco;
    WORD wBright;
    WORD wContrast;
    WORD wRed;
    WORD wGreen;
    WORD wBlue;
    SHORT wColorTemp;
    WORD wReserved;
};
static_assert(offsetof(COLORSETTING, wBrightEco) == 4 && offsetof(COLORSETTING, wContrast) == 8 &&
              offsetof(COLORSETTING, wColorTemp) == 16 && offsetof(COLORSETTING, wReserved) == 18);

extern COLORSETTING g_CurSetting[MAX_MONITOR]; // as last read from each monitor, and changed since
extern LONG g_nMaxBrightEco[MAX_MONITOR];
extern LONG g_nMaxBright[MAX_MONITOR];
extern LONG g_nMaxContrast[MAX_MONITOR];
extern LONG g_nMaxRed[MAX_MONITOR];
extern LONG g_nMaxGreen[MAX_MONITOR];
extern LONG g_nMaxBlue[MAX_MONITOR];

// When a value counts.
enum COLORCOUNTS {
    COLOR_ALWAYS,
    COLOR_ECO_ON, // in its ECO state alone: the other state has a row of its own under the same code
    COLOR_ECO_OFF,
    COLOR_USER_PRESET, // with a preset of the user's own alone, but it can be read with any
};

struct COLORFEATURE {
    BYTE bCode;
    COLORCOUNTS counts;
    size_t cbOffset; // in COLORSETTING
    size_t cbSize;
    LONG *lpMaxima; // the monitors' maxima; null where none is kept
    LPCSTR lpszKey; // in a section of "profile.ini"
    int nPlace;     // among the keys there, which is the place among the values of a profile's record, too
};

// In the order of the accesses to a monitor: the ECO mode decides which brightness is meant, the preset whether there
// are gains.
#define COLOR_FIELD(NAME) offsetof(COLORSETTING, NAME), sizeof COLORSETTING::NAME
inline constexpr COLORFEATURE COLOR_FEATURES[] = {
    {VCP_ECO_MODE, COLOR_ALWAYS, COLOR_FIELD(dwEco), nullptr, "ecomode", 0},
    {VCP_BRIGHTNESS, COLOR_ECO_ON, COLOR_FIELD(wBrightEco), g_nMaxBrightEco, "ecobrightness", 3},
    {VCP_BRIGHTNESS, COLOR_ECO_OFF, COLOR_FIELD(wBright), g_nMaxBright, "brightness", 2},
    {VCP_CONTRAST, COLOR_ALWAYS, COLOR_FIELD(wContrast), g_nMaxContrast, "contrast", 1},
    {VCP_COLOR_PRESET, COLOR_ALWAYS, COLOR_FIELD(wColorTemp), nullptr, "colortemp", 4},
    {VCP_RED_GAIN, COLOR_USER_PRESET, COLOR_FIELD(wRed), g_nMaxRed, "red", 5},
    {VCP_GREEN_GAIN, COLOR_USER_PRESET, COLOR_FIELD(wGreen), g_nMaxGreen, "green", 6},
    {VCP_BLUE_GAIN, COLOR_USER_PRESET, COLOR_FIELD(wBlue), g_nMaxBlue, "blue", 7},
};
#undef COLOR_FIELD
constexpr int COLOR_FEATURE_COUNT = sizeof COLOR_FEATURES / sizeof COLOR_FEATURES[0];

// Whether an ECO state has this value for itself.
constexpr bool HasEcoState(const COLORFEATURE &feature)
{
    return feature.counts == COLOR_ECO_ON || feature.counts == COLOR_ECO_OFF;
}

// False for what the other ECO state than dwEco (0 off, else on) has for itself.
constexpr bool IsOfEcoState(const COLORFEATURE &feature, DWORD dwEco)
{
    return feature.counts != (dwEco != 0 ? COLOR_ECO_OFF : COLOR_ECO_ON);
}

// Whether a monitor that gets the record gets this value of it. cbSetting: bytes of the record that are there; a value
// counts if it and what decides over it lie wholly in them.
bool IsToBeWritten(const COLORFEATURE &feature, const COLORSETTING *lpSetting, size_t cbSetting);

// A value of a record. Of 16 bits it is sign-extended, so that what could not be read is -1 everywhere; and cut to them
// on its way into a record.
LONG GetColorValue(const COLORSETTING *lpSetting, const COLORFEATURE &feature);
void SetColorValue(COLORSETTING *lpSetting, const COLORFEATURE &feature, LONG lValue);

// The row of a code, of the brightness that of the record's ECO state. Result: null for any other code.
const COLORFEATURE *FindColorFeature(const COLORSETTING *lpSetting, BYTE bCode);
