// The text of a section. The order of the keys matters when they are found again: "brightness" stands before
// "ecobrightness", which contains it.
#include "profiles/profile_file.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

constexpr char LINE_SEPARATOR = '\x01';

// ---- Values -------------------------------------------------------------------------------------------------------

static_assert(offsetof(PROFILEENTRY, szName) ==
                  offsetof(PROFILEENTRY, nEcoMode) + COLOR_FEATURE_COUNT * sizeof(int32_t),
              "a value for each feature");

// The values stand behind one another in the order of the file.
static size_t ValueOffset(const COLORFEATURE &feature)
{
    return offsetof(PROFILEENTRY, nEcoMode) + static_cast<size_t>(feature.nPlace) * sizeof(int32_t);
}

int32_t GetProfileValue(const PROFILEENTRY *lpEntry, const COLORFEATURE &feature)
{
    int32_t value;
    memcpy(&value, reinterpret_cast<const char *>(lpEntry) + ValueOffset(feature), sizeof value);
    return value;
}

void SetProfileValue(PROFILEENTRY *lpEntry, const COLORFEATURE &feature, int32_t nValue)
{
    memcpy(reinterpret_cast<char *>(lpEntry) + ValueOffset(feature), &nValue, sizeof nValue);
}

// The feature whose key has a place in the file.
static constexpr const COLORFEATURE *FeatureAt(int place)
{
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        if (feature.nPlace == place)
            return &feature;
    return nullptr;
}

static constexpr bool IsEveryPlaceTaken()
{
    for (int place = 0; place < COLOR_FEATURE_COUNT; ++place)
        if (!FeatureAt(place))
            return false;
    return true;
}
static_assert(IsEveryPlaceTaken());

// ---- Writing ------------------------------------------------------------------------------------------------------

constexpr size_t NUMBER_SIZE = 11; // "-2147483648"

static constexpr size_t LongestText()
{
    size_t size = sizeof "name=\r\nalias=\r\n" + 2 * (PROFILE_TEXT_SIZE - 1);
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        size += std::string_view(feature.lpszKey).size() + NUMBER_SIZE + sizeof "=\r\n" - 1;
    return size;
}
static_assert(LongestText() + 1 <= PROFILE_SECTION_TEXT_SIZE, "every entry must fit");

static char *Append(char *p, const char *text, size_t limit)
{
    while (limit-- > 0 && *text)
        *p++ = *text++;
    return p;
}

static char *AppendNumber(char *p, int32_t value)
{
    char digits[NUMBER_SIZE];
    size_t count = 0;
    uint32_t rest = value < 0 ? 0U - static_cast<uint32_t>(value) : static_cast<uint32_t>(value);
    do
        digits[count++] = static_cast<char>('0' + rest % 10);
    while ((rest /= 10) != 0);
    if (value < 0)
        *p++ = '-';
    while (count > 0)
        *p++ = digits[--count];
    return p;
}

static char *AppendTextLine(char *p, const char *key, const char *value)
{
    p = Append(p, key, SIZE_MAX);
    p = Append(p, value, PROFILE_TEXT_SIZE - 1);
    return Append(p, "\r\n", SIZE_MAX);
}

size_t FormatProfileText(const PROFILEENTRY *lpEntry, char *lpText)
{
    char *p = AppendTextLine(lpText, "name=", lpEntry->szName);
    p = AppendTextLine(p, "alias=", lpEntry->szAlias);
    for (int place = 0; place < COLOR_FEATURE_COUNT; ++place) {
        const COLORFEATURE *feature = FeatureAt(place);
        p = Append(p, feature->lpszKey, SIZE_MAX);
        *p++ = '=';
        p = AppendNumber(p, GetProfileValue(lpEntry, *feature));
        p = Append(p, "\r\n", SIZE_MAX);
    }
    p[0] = p[1] = '\0';
    return static_cast<size_t>(p - lpText);
}

// ---- Reading ------------------------------------------------------------------------------------------------------

void JoinSectionLines(char *lpText, size_t cbText)
{
    for (size_t i = 0; i + 1 < cbText; ++i) {
        if (lpText[i] != '\0')
            continue;
        if (lpText[i + 1] == '\0')
            return;
        lpText[i] = LINE_SEPARATOR;
    }
    lpText[cbText - 1] = '\0';
}

static bool EndsLine(char c)
{
    return c == '\0' || c == LINE_SEPARATOR;
}

// Where a key's value begins; null without a line that contains the key. No key contains the separator, so the first
// place in the text lies in the first such line.
static const char *FindValue(const char *text, const char *key)
{
    const char *p = strstr(text, key);
    if (!p)
        return nullptr;
    p += strlen(key);
    return EndsLine(*p) ? p : p + 1;
}

void GetSectionString(const char *lpText, const char *lpKey, char *lpBuffer, size_t cbBuffer)
{
    size_t length = 0;
    if (const char *value = FindValue(lpText, lpKey))
        for (; length + 1 < cbBuffer && !EndsLine(value[length]); ++length)
            lpBuffer[length] = value[length];
    lpBuffer[length] = '\0';
}

int32_t GetSectionInt(const char *lpText, const char *lpKey)
{
    const char *value = FindValue(lpText, lpKey);
    if (!value)
        return -1;
    char *end;
    const long number = strtol(value, &end, 10); // the separator ends a number, as anything else does
    if (end == value)
        return -1;
    if (number > INT32_MAX)
        return INT32_MAX;
    return number < INT32_MIN ? INT32_MIN : static_cast<int32_t>(number);
}

void ParseProfileText(PROFILEENTRY *lpEntry, const char *lpText)
{
    GetSectionString(lpText, "name", lpEntry->szName, sizeof lpEntry->szName);
    GetSectionString(lpText, "alias", lpEntry->szAlias, sizeof lpEntry->szAlias);
    for (const COLORFEATURE &feature : COLOR_FEATURES)
        SetProfileValue(lpEntry, feature, GetSectionInt(lpText, feature.lpszKey));
}
