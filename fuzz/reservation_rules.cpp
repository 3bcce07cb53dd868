// Ten reservations with any texts in their fields, and a new one that is checked against them at any time.
#include "timer/reservation_rules.h"
#include "fuzz/fuzz.h"

// A field as the file gives it: any bytes, terminated.
template <size_t SIZE>
static void ReadField(FuzzInput *input, char (&field)[SIZE])
{
    lstrcpynA(field, input->Line().c_str(), static_cast<int>(SIZE));
}

static void ReadEntry(FuzzInput *input, RESERVATION *entry)
{
    ReadField(input, entry->szDate);
    ReadField(input, entry->szTime);
    ReadField(input, entry->szEndDate);
    ReadField(input, entry->szEndTime);
}

static SYSTEMTIME ReadClock(FuzzInput *input)
{
    SYSTEMTIME clock = {};
    clock.wYear = input->Number<uint16_t>();
    clock.wMonth = input->Number<uint16_t>();
    clock.wDay = input->Number<uint16_t>();
    clock.wHour = static_cast<WORD>(input->Below(24));
    clock.wMinute = static_cast<WORD>(input->Below(60));
    return clock;
}

static bool IsMoment(const char (&moment)[MOMENT_SIZE])
{
    return IsTerminated(moment) && strchr(moment, '-');
}

static void CheckDate(const SYSTEMTIME &clock)
{
    std::vector<char> date(RESERVATION_DATE_SIZE, 'x');
    const int made = FormatDate(date.data(), &clock);
    FUZZ_CHECK(memchr(date.data(), '\0', date.size()));
    FUZZ_CHECK(strlen(date.data()) == (made ? RESERVATION_DATE_SIZE - 1U : 0U));
    FUZZ_CHECK(made || clock.wYear > 9999 || clock.wMonth > 99 || clock.wDay > 99);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    const SYSTEMTIME clock = ReadClock(&input);
    CheckDate(clock);

    RESERVATION entry = {};
    ReadEntry(&input, &entry);
    RESERVATION table[RESERVATION_COUNT] = {};
    for (RESERVATION &slot : table) {
        slot.szSection[0] = static_cast<char>(input.Number<uint8_t>());
        ReadEntry(&input, &slot);
    }

    MOMENTS moments;
    memset(&moments, 'x', sizeof moments);
    FormatMoments(&moments, &entry, &clock);
    FUZZ_CHECK(IsMoment(moments.szStart) && IsMoment(moments.szEnd));
    FUZZ_CHECK(IsMoment(moments.szNow) && IsMoment(moments.szNextMinute));
    FUZZ_CHECK(CompareMoments(moments.szNow, moments.szNextMinute) < 0);

    const REFUSAL refusal = FindRefusal(table, &moments);
    FUZZ_CHECK(refusal >= REFUSAL_PASSED && refusal <= REFUSAL_NONE);
    if (refusal == REFUSAL_NONE) {
        FUZZ_CHECK(CompareMoments(moments.szNow, moments.szStart) < 0);
        FUZZ_CHECK(CompareMoments(moments.szStart, moments.szEnd) < 0);
        FUZZ_CHECK(!IsStartReserved(table, moments.szStart) && !IsEndReserved(table, moments.szEnd));
    }

    // Entered, it refuses itself.
    if (refusal == REFUSAL_NONE && !table[0].szSection[0]) {
        table[0] = entry;
        FormatReservationSection(table[0].szSection, 0);
        FUZZ_CHECK(FindRefusal(table, &moments) == REFUSAL_START_TAKEN);
    }

    // Texts that are longer than any field.
    std::vector<char> moment(MOMENT_SIZE, 'x');
    JoinMoment(moment.data(), input.Line().c_str(), '-', input.Line().c_str());
    FUZZ_CHECK(memchr(moment.data(), '\0', moment.size()) && strchr(moment.data(), '-'));
    return 0;
}
