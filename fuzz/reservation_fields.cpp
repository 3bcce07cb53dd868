// The keys of a section of "ontimer.ini", and the text that a reservation makes there again.
#include "timer/reservation_fields.h"
#include "fuzz/fuzz.h"

#include <map>

static std::map<std::string, std::string> s_Keys; // of the section that is read

// Room for a key's value where it is read to; 0 for a key that is none.
static DWORD Room(const std::string &key)
{
    static const std::map<std::string, DWORD> rooms = {
        {"date", sizeof(RESERVATION::szDate)},       {"time", sizeof(RESERVATION::szTime)},
        {"enddate", sizeof(RESERVATION::szEndDate)}, {"endtime", sizeof(RESERVATION::szEndTime)},
        {"lcd", sizeof(RESERVATION::szLcd)},         {"crtno", 4},
        {"channel", sizeof(RESERVATION::szChannel)},
    };
    const auto found = rooms.find(key);
    return found == rooms.end() ? 0 : found->second;
}

// As the system reads a key: cut, terminated, nothing touched behind the NUL.
static DWORD ReadKey(LPCSTR section, LPCSTR key, LPCSTR absent, char *buffer, DWORD size)
{
    FUZZ_CHECK(strncmp(section, "Timer", 5) == 0 && size > 0 && size <= Room(key));
    const auto found = s_Keys.find(key);
    const std::string value = found == s_Keys.end() ? absent : found->second;
    lstrcpynA(buffer, value.c_str(), static_cast<int>(size));
    return static_cast<DWORD>(strlen(buffer));
}

static void ReadKeys(FuzzInput *input)
{
    s_Keys.clear();
    for (int lines = 0; lines < 16; ++lines) {
        const std::string line = input->Line();
        const size_t equals = line.find('=');
        if (equals != std::string::npos)
            s_Keys.emplace(line.substr(0, equals), line.substr(equals + 1));
    }
}

static void CheckFields(const RESERVATION &entry)
{
    FUZZ_CHECK(IsTerminated(entry.szSection) && IsTerminated(entry.szDate) && IsTerminated(entry.szTime));
    FUZZ_CHECK(IsTerminated(entry.szEndDate) && IsTerminated(entry.szEndTime) && IsTerminated(entry.szLcd));
    FUZZ_CHECK(IsTerminated(entry.szChannel) && strlen(entry.szChannel) < 10);
    FUZZ_CHECK(entry.nCrtNo >= -99 && entry.nCrtNo <= 999);
    FUZZ_CHECK(strlen(entry.szLcd) == 12 || entry.szLcd[0] == '\0');
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const int slot = static_cast<int>(input.Below(RESERVATION_COUNT));
    ReadKeys(&input);

    RESERVATION entry;
    memset(&entry, 'x', sizeof entry);
    const int there = ReadReservation(&entry, slot, ReadKey);
    char section[sizeof entry.szSection];
    FormatReservationSection(section, slot);
    FUZZ_CHECK(strcmp(entry.szSection, there ? section : "") == 0);
    if (!there) {
        FUZZ_CHECK(s_Keys["date"].empty() || s_Keys["date"][0] == '?');
        return 0;
    }
    CheckFields(entry);

    std::vector<char> text(RESERVATION_TEXT_SIZE, 'x');
    const int length = FormatReservationText(text.data(), &entry);
    FUZZ_CHECK(length > 0 && static_cast<size_t>(length) + 2 <= text.size());
    FUZZ_CHECK(strlen(text.data()) == static_cast<size_t>(length) && text[static_cast<size_t>(length) + 1] == '\0');

    // What was written reads back as it was.
    const std::string lines(text.data());
    FuzzInput written(reinterpret_cast<const uint8_t *>(lines.data()), lines.size());
    ReadKeys(&written);
    for (auto &key : s_Keys)
        if (!key.second.empty() && key.second.back() == '\r')
            key.second.pop_back();
    RESERVATION back = {};
    FUZZ_CHECK(ReadReservation(&back, slot, ReadKey) == 1);
    FUZZ_CHECK(strcmp(back.szDate, entry.szDate) == 0 && strcmp(back.szEndTime, entry.szEndTime) == 0);
    FUZZ_CHECK(strcmp(back.szLcd, entry.szLcd) == 0 && strcmp(back.szChannel, entry.szChannel) == 0);
    FUZZ_CHECK(back.nCrtNo == entry.nCrtNo);
    return 0;
}
