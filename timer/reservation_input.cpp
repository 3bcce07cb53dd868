// Labels, choices and the VCP sequence of an input switch.
#include "timer/reservation_input.h"

#include "kernel/base/texts.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/resources/strings.h"

#include <cstring>
#include <initializer_list>

LONG g_nPrevTvChannel = 0;

constexpr int MODEL_LENGTH = 12;
constexpr int CHANNEL_LENGTH = 4;
constexpr WORD TV_CHANNEL_BASE = 0x101; // VCP 0xE8 of the first channel name
constexpr DWORD TV_PAUSE_MS = 1000;     // the tuner's time to settle

// ---- Names --------------------------------------------------------------------------------------------------------

// The length of a name up to its first blank, at most `limit`.
static size_t NameLength(LPCSTR name, size_t limit)
{
    size_t length = 0;
    while (length < limit && name[length] && name[length] != ' ')
        ++length;
    return length;
}

// A model name that was just entered is padded in front.
static LPCSTR SkipBlanks(LPCSTR text)
{
    return text + strspn(text, " ");
}

bool IsSameModel(LPCSTR lpszModel, LPCSTR lpszLcd)
{
    const LPCSTR model = SkipBlanks(lpszModel);
    const LPCSTR lcd = SkipBlanks(lpszLcd);
    const size_t length = NameLength(model, MODEL_LENGTH);
    return length == NameLength(lcd, MODEL_LENGTH) && _strnicmp(model, lcd, length) == 0;
}

int FindChannel(const MONITORENTRY *lpEntry, LPCSTR lpszChannel)
{
    const size_t length = NameLength(lpszChannel, CHANNEL_LENGTH);
    for (int index = 0; index < VCP_VALUE_COUNT; ++index) {
        const LPCSTR name = lpEntry->szInputName[index];
        if (NameLength(name, CHANNEL_LENGTH) == length && memcmp(name, lpszChannel, length) == 0)
            return index;
    }
    return CHANNEL_NONE;
}

// ---- Labels and choices -------------------------------------------------------------------------------------------

// The label of each VCP 0x60 value; "テレビ" stands for all others.
static UINT InputLabelString(LONG input)
{
    static const UINT labels[] = {IDS_INPUT_TV,      IDS_INPUT_ANALOG,   IDS_INPUT_ANALOG2,
                                  IDS_INPUT_DIGITAL, IDS_INPUT_DIGITAL2, IDS_INPUT_VIDEO,
                                  IDS_INPUT_VIDEO,   IDS_INPUT_S_VIDEO,  IDS_INPUT_S_VIDEO};
    constexpr LONG count = sizeof labels / sizeof labels[0];
    return labels[input > 0 && input < count ? input : 0];
}

int GetInputLabel(char *lpszBuffer, int nSize)
{
    lpszBuffer[0] = '\0';
    const LONG input = GetVCP(g_nCurMonitor, VCP_INPUT_SOURCE, nullptr);
    LoadText(InputLabelString(input), lpszBuffer, nSize);
    return 1;
}

// Whether the monitor has an input and the text is its label. The bytes are compared as they are: a comparison without
// case would take the second bytes of some characters for letters.
static bool IsLabelOf(const MONITORENTRY *entry, LPCSTR text, WORD input)
{
    char label[INPUT_LABEL_SIZE];
    LoadText(InputLabelString(input), label, sizeof label);
    return entry->bInputSource[input] && strcmp(text, label) == 0;
}

WORD ChooseInput(const MONITORENTRY *lpEntry, LPCSTR lpszChannel, int nChannel)
{
    if (nChannel != CHANNEL_NONE)
        return INPUT_TV;
    for (const WORD input : {INPUT_VIDEO, INPUT_S_VIDEO})
        if (IsLabelOf(lpEntry, lpszChannel, input))
            return input;
    return INPUT_TV;
}

// "アナログ2" and "デジタル2" have no input of their own to go back to: they come back as the TV.
WORD ChooseRestoreInput(const MONITORENTRY *lpEntry, LPCSTR lpszLabel)
{
    for (const WORD input : {INPUT_ANALOG, INPUT_DIGITAL, INPUT_VIDEO, INPUT_S_VIDEO})
        if (IsLabelOf(lpEntry, lpszLabel, input))
            return input;
    return INPUT_TV;
}

// ---- Switching ----------------------------------------------------------------------------------------------------

void SwitchInput(LONG nMonitor, int nChannel, WORD wInput, DWORD nPauseMs)
{
    g_nPrevTvChannel = GetVCP(nMonitor, VCP_TV_CHANNEL, nullptr);
    if (nPauseMs)
        Sleep(nPauseMs);
    if (wInput == INPUT_TV) {
        SetVCP(nMonitor, VCP_TV_CHANNEL, static_cast<WORD>(nChannel + TV_CHANNEL_BASE));
        Sleep(TV_PAUSE_MS);
    }
    SetVCP(nMonitor, VCP_INPUT_SOURCE, wInput);
}

void RestoreTvChannel(LONG nMonitor)
{
    SetVCP(nMonitor, VCP_TV_CHANNEL, static_cast<WORD>(g_nPrevTvChannel));
    Sleep(TV_PAUSE_MS);
}
