// Which reservations are refused, at the exact minutes where it changes.
#include "timer/reservation_rules.h"

#include "support/reservation_session.h"

namespace {

void Fill(RESERVATION *slot, const std::string &start, const std::string &end)
{
    strcpy(slot->szDate, start.substr(0, 10).c_str());
    strcpy(slot->szTime, start.size() > 11 ? start.substr(11).c_str() : "");
    strcpy(slot->szEndDate, end.substr(0, end.find(' ')).c_str());
    strcpy(slot->szEndTime, end.substr(end.find(' ') + 1).c_str());
}

REFUSAL Refusal(const RESERVATION *table, const std::string &now, const std::string &start, const std::string &end)
{
    RESERVATION entry = {};
    Fill(&entry, start, end);
    const SYSTEMTIME clock = ParseMoment(now);
    MOMENTS moments;
    FormatMoments(&moments, &entry, &clock);
    return FindRefusal(table, &moments);
}

} // namespace

TEST(ReservationRules, AgainstTheClock)
{
    const RESERVATION none[RESERVATION_COUNT] = {};
    const struct {
        const char *now, *start, *end;
        REFUSAL refusal;
    } cases[] = {
        {"2006/06/10 20:00", "2006/06/10 19:59", "2006/06/10 21:00", REFUSAL_PASSED},
        {"2006/06/10 20:00", "2006/06/10 20:00", "2006/06/10 21:00", REFUSAL_TOO_SOON},
        {"2006/06/10 20:00", "2006/06/10 20:01", "2006/06/10 20:02", REFUSAL_NONE},
        // The minute after 59 belongs to the next hour, day, month or year.
        {"2006/06/10 19:59", "2006/06/10 19:59", "2006/06/10 21:00", REFUSAL_TOO_SOON},
        {"2006/06/10 19:59", "2006/06/10 20:00", "2006/06/10 21:00", REFUSAL_NONE},
        {"2006/06/30 23:59", "2006/07/01 00:00", "2006/07/01 00:01", REFUSAL_NONE},
        {"2006/12/31 23:59", "2007/01/01 00:00", "2007/01/01 00:01", REFUSAL_NONE},
        {"2007/01/01 00:00", "2006/12/31 23:59", "2007/01/01 00:01", REFUSAL_PASSED},
        {"2006/06/10 09:00", "2006/06/10 10:00", "2006/06/10 09:59", REFUSAL_END_FIRST},
        {"2006/06/10 09:00", "2006/06/10 10:00", "2006/06/10 10:00", REFUSAL_NO_LENGTH},
        {"2006/06/10 09:00", "2006/06/10 10:00", "2006/06/10 10:01", REFUSAL_NONE},
        {"2006/06/10 09:00", "2006/12/31 23:00", "2007/01/01 01:00", REFUSAL_NONE},
        // Where more than one rule holds, the first one counts.
        {"2006/06/10 20:00", "2006/06/10 19:00", "2006/06/10 19:00", REFUSAL_PASSED},
        {"2006/06/10 20:00", "2006/06/10 20:00", "2006/06/10 20:00", REFUSAL_NO_LENGTH},
        {"2006/06/10 20:00", "2006/06/10 20:00", "2006/06/10 19:00", REFUSAL_END_FIRST},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Refusal(none, c.now, c.start, c.end), c.refusal) << c.now << ": " << c.start << " - " << c.end;
}

TEST(ReservationRules, AgainstOtherReservations)
{
    const std::string started = "2006/06/10 " + Sjis("開始");
    const struct {
        std::string otherStart, otherEnd;
        const char *start, *end;
        REFUSAL refusal;
    } cases[] = {
        {"2006/06/10 20:00", "2006/06/10 21:00", "2006/06/10 20:00", "2006/06/10 21:00", REFUSAL_START_TAKEN},
        {"2006/06/10 20:00", "2006/06/10 21:00", "2006/06/10 20:30", "2006/06/10 21:00", REFUSAL_END_TAKEN},
        {"2006/06/10 20:00", "2006/06/10 21:00", "2006/06/10 20:59", "2006/06/10 22:00", REFUSAL_BEFORE_AN_END},
        {"2006/06/10 20:00", "2006/06/10 21:00", "2006/06/10 21:00", "2006/06/10 22:00", REFUSAL_BEFORE_AN_END},
        {"2006/06/10 20:00", "2006/06/10 21:00", "2006/06/10 21:01", "2006/06/10 22:00", REFUSAL_NONE},
        // Wholly before another one is refused as well: they are entered in the order of time.
        {"2006/06/10 20:00", "2006/06/10 21:00", "2006/06/05 20:00", "2006/06/05 21:00", REFUSAL_BEFORE_AN_END},
        // A started one has no start any more, but an end.
        {"2006/06/10", "2006/06/10 21:00", "2006/06/10 20:00", "2006/06/10 22:00", REFUSAL_BEFORE_AN_END},
        {started, "2006/06/10 21:00", "2006/06/10 20:00", "2006/06/10 21:00", REFUSAL_END_TAKEN},
        // An end date that is missing in the file is text like any other.
        {"2006/06/10 20:00", "? 21:00", "2016/06/10 20:00", "2016/06/10 21:00", REFUSAL_BEFORE_AN_END},
    };
    for (const auto &c : cases)
        for (const int slot : {0, 9}) {
            RESERVATION table[RESERVATION_COUNT] = {};
            Fill(&table[slot], c.otherStart, c.otherEnd);
            EXPECT_EQ(Refusal(table, "2006/06/01 12:00", c.start, c.end), REFUSAL_NONE) << "a free slot does not count";
            FormatReservationSection(table[slot].szSection, slot);
            EXPECT_EQ(Refusal(table, "2006/06/01 12:00", c.start, c.end), c.refusal)
                << c.otherEnd << ": " << c.start << " - " << c.end;
        }
}
