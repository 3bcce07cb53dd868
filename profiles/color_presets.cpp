// The preset names in both languages.
#include "profiles/color_presets.h"
#include "kernel/base/plugin_state.h"

struct PRESETNAME {
    LPCSTR lpszJapanese;
    LPCSTR lpszEnglish;
};

static const PRESETNAME s_Names[] = {
    {"未使用", "Not Use"},  // 0
    {"sRGB", "sRGB"},       // 1
    {"7200K", "7200K"},     // 2: really 7200 K, though 4000 K follows
    {"4000K", "4000K"},     // 3
    {"5000K", "5000K"},     // 4
    {"6500K", "6500K"},     // 5
    {"7500K", "7500K"},     // 6
    {"8200K", "8200K"},     // 7
    {"9300K", "9300K"},     // 8
    {"10000K", "10000K"},   // 9
    {"11500K", "11500K"},   // 10
    {"ユーザー", "User"},   // 11: the first with gains
    {"ユーザー2", "User2"}, // 12
    {"ユーザー3", "User3"}, // 13
    {"未使用", "Not Use"},  // 14
    {"未使用", "Not Use"},  // 15
};
constexpr LONG PRESET_COUNT = sizeof s_Names / sizeof s_Names[0];

LPCSTR ColorPresetName(LONG nValue)
{
    const PRESETNAME &name = s_Names[nValue >= 0 && nValue < PRESET_COUNT ? nValue : 0];
    return g_bNotJapanese ? name.lpszEnglish : name.lpszJapanese;
}
