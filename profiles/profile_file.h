// One profile as the text of its section in "profile.ini": how it is written, and how its keys are found again.
// Of Windows it needs the types alone, so that it can be compiled and fuzzed anywhere.
#pragma once

#include "monitor/color_features.h"

#include <cstddef>
#include <cstdint>

constexpr size_t PROFILE_SECTION_NAME_SIZE = 16;
constexpr size_t PROFILE_TEXT_SIZE = 260;         // of a name or path and of an alias
constexpr size_t PROFILE_SECTION_TEXT_SIZE = 776; // of a section's text when it is written or read; the rest is cut

// A named set of colour settings. Values are those of the VCP codes, as they are sent to the monitor; they stand in the
// order of the file, which is the one of COLORFEATURE::nPlace.
struct PROFILEENTRY {
    char szSection[PROFILE_SECTION_NAME_SIZE]; // where it was loaded from or is written to
    int32_t nEcoMode;
    int32_t nContrast;
    int32_t nBrightness;
    int32_t nEcoBrightness;
    int32_t nColorTemp;
    int32_t nRed;
    int32_t nGreen;
    int32_t nBlue;
    char szName[PROFILE_TEXT_SIZE];  // display name, or full path of a program; empty: a free slot
    char szAlias[PROFILE_TEXT_SIZE]; // display name
};

// A value by its row of the table.
int32_t GetProfileValue(const PROFILEENTRY *lpEntry, const COLORFEATURE &feature);
void SetProfileValue(PROFILEENTRY *lpEntry, const COLORFEATURE &feature, int32_t nValue);

// Forms the section's text: lines with CR LF, and two zeros at the end. lpText: PROFILE_SECTION_TEXT_SIZE bytes, which
// every entry fits into. Result: the length without the zeros.
size_t FormatProfileText(const PROFILEENTRY *lpEntry, char *lpText);

// Makes one text of a section that was read as lines: each zero between two lines becomes the byte 1. Reads and writes
// within cbText bytes (at least 1) alone, and leaves a terminated text.
void JoinSectionLines(char *lpText, size_t cbText);

// Looks a key up in a joined text. The first line that contains the key's name anywhere wins, and its value begins one
// character after that name: a path with "red" in it is taken for that gain. Users' files are read so; found otherwise,
// their profiles would change colours.
// A string is cut to cbBuffer - 1 characters and empty without such a line; a number is -1 without one.
void GetSectionString(const char *lpText, const char *lpKey, char *lpBuffer, size_t cbBuffer);
int32_t GetSectionInt(const char *lpText, const char *lpKey);

// Fills everything of an entry but szSection from a joined text.
void ParseProfileText(PROFILEENTRY *lpEntry, const char *lpText);
