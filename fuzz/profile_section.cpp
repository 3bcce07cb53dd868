// A section of "profile.ini" as the system reads it, and an entry as it is written and read back.
#include "fuzz/fuzz.h"
#include "profiles/profile_file.h"

static bool AreEqual(const PROFILEENTRY &a, const PROFILEENTRY &b)
{
    return a.nEcoMode == b.nEcoMode && a.nContrast == b.nContrast && a.nBrightness == b.nBrightness &&
           a.nEcoBrightness == b.nEcoBrightness && a.nColorTemp == b.nColorTemp && a.nRed == b.nRed &&
           a.nGreen == b.nGreen && a.nBlue == b.nBlue && strcmp(a.szName, b.szName) == 0 &&
           strcmp(a.szAlias, b.szAlias) == 0;
}

// A text that stays as it is: no line ends, and none of the letters that the keys begin with.
static void MakePlain(char *text)
{
    for (; *text; ++text)
        if (*text == '\r' || *text == '\n' || *text == '\x01' || strchr("acegbrn", *text))
            *text = '_';
}

// Writes an entry and reads it back the way the file does it: the lines end with a NUL each, the last one with two.
static PROFILEENTRY WriteAndRead(const PROFILEENTRY &entry)
{
    std::vector<char> text(PROFILE_SECTION_TEXT_SIZE, 'x');
    const size_t length = FormatProfileText(&entry, text.data());
    FUZZ_CHECK(length + 2 <= text.size() && text[length] == '\0' && text[length + 1] == '\0');
    FUZZ_CHECK(strlen(text.data()) == length);

    std::vector<char> read(PROFILE_SECTION_TEXT_SIZE);
    size_t to = 0;
    for (size_t from = 0; from < length; ++from)
        if (text[from] != '\r')
            read[to++] = text[from] == '\n' ? '\0' : text[from];
    JoinSectionLines(read.data(), read.size());
    PROFILEENTRY back = {};
    ParseProfileText(&back, read.data());
    return back;
}

// Numbers of any length are cut to 32 bits at either end.
static void CheckNumber(int64_t number)
{
    char text[32];
    snprintf(text, sizeof text, "red=%lld", static_cast<long long>(number));
    const int64_t cut = number > INT32_MAX ? INT32_MAX : number < INT32_MIN ? INT32_MIN : number;
    FUZZ_CHECK(GetSectionInt(text, "red") == cut);
    FUZZ_CHECK(GetSectionInt(text, "blue") == -1);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Anything at all in the section buffer, which may be shorter than it is.
    std::vector<char> text(data, data + (size < PROFILE_SECTION_TEXT_SIZE ? size : PROFILE_SECTION_TEXT_SIZE));
    if (text.empty())
        text.push_back('\0');
    JoinSectionLines(text.data(), text.size());
    FUZZ_CHECK(memchr(text.data(), '\0', text.size()));

    PROFILEENTRY entry;
    memset(&entry, 'S', sizeof entry);
    ParseProfileText(&entry, text.data());
    FUZZ_CHECK(IsTerminated(entry.szName) && IsTerminated(entry.szAlias));
    for (const char c : entry.szSection)
        FUZZ_CHECK(c == 'S');

    FuzzInput input(data, size);
    const int64_t number = input.Number<int64_t>();
    CheckNumber(number);
    CheckNumber(number >> 30);

    // Into a buffer of any size, down to the NUL alone.
    std::vector<char> small(1 + text.size() % 7, 'x');
    GetSectionString(text.data(), "name", small.data(), small.size());
    FUZZ_CHECK(strncmp(small.data(), entry.szName, strlen(small.data())) == 0);

    MakePlain(entry.szName);
    MakePlain(entry.szAlias);
    FUZZ_CHECK(AreEqual(entry, WriteAndRead(entry)));
    return 0;
}
