// Whole evenings: a reservation entered, started and ended over the minutes of a set clock; what the monitor receives,
// and what file, table and screen show after each step.
#include "monitor/vcp_codes.h"
#include "panel/reservation_rows.h"
#include "panel/resources/resource.h"
#include "support/clock.h"
#include "support/reservation_session.h"
#include "timer/reservation_store.h"
#include "timer/reserve_prompt.h"

namespace {

struct Evening {
    bool asked;
    bool panelOpen;
    const char *channel; // the reserved one
    int input;           // that it switches to
    LONG before;         // input before the start; -1 = cannot be read
    const char *label;   // of that input
    int restored;        // at the end
    const char *start;
    const char *end;
    int minutes;
};

class EveningTest : public ReservationTest {
protected:
    EveningTest() { LoadFile(""); }

    // On the page of the open panel, or in the file that an earlier page left.
    void Enter(const Evening &evening)
    {
        SetMinute(evening.start);
        AdvanceClock(-1);
        if (evening.panelOpen) {
            EnterReservation(g_hReservationPage, evening.start, evening.end, evening.channel);
            ASSERT_EQ(AddReservation(g_hReservationPage), 1);
        } else {
            LoadFile(Section(0, evening.start, evening.end, evening.channel));
        }
        EXPECT_EQ(g_nReservation, 1);
        EXPECT_EQ(Tick(), Lines{}) << "a minute too early";
    }

    // What the monitor receives in the start minute, until the user has agreed.
    Lines Begin(bool asked)
    {
        AdvanceClock(1);
        if (!asked)
            return Tick();
        EXPECT_EQ(Tick(), Lines{"get 0 60"});
        EXPECT_EQ(PromptShown(), QuestionShown());
        EXPECT_EQ(Tick(), Lines{"get 0 60"}) << "asked once, looked at again";
        Lines received = Press(IDC_PROMPT_SWITCH);
        EXPECT_EQ(g_hReservePrompt, nullptr);
        EXPECT_EQ(nChangeMsg, 1);
        received.insert(received.begin(), "get 0 60");
        return received;
    }

    void CheckStart(const Evening &evening, const Lines &received)
    {
        Lines expected = {"get 0 60", "get 0 E8"};
        if (!evening.asked)
            expected.push_back("Sleep 500");
        if (evening.input == 9)
            expected = expected + Lines{"set 0 E8 = 258", "Sleep 1000"};
        expected.push_back("set 0 60 = " + std::to_string(evening.input));
        EXPECT_EQ(received, expected);
        EXPECT_EQ(SectionLines(0),
                  (Lines{"[Timer0]", "date=" + std::string(evening.start, 10), "time=開始",
                         "enddate=" + std::string(evening.end, 10), "endtime=" + std::string(evening.end + 11),
                         "lcd=NRV-PA1", "crtno=0", "channel=" + std::string(evening.label)}));
        EXPECT_STREQ(g_Reservation[0].szTime, "");
        EXPECT_EQ(g_Reservation[0].szChannel, Sjis(evening.label));
        EXPECT_EQ(Tick(), Lines{}) << "once";
    }

    void CheckEnd(const Evening &evening)
    {
        AdvanceClock(evening.minutes - 1);
        EXPECT_EQ(Tick(), Lines{}) << "not before its end";
        AdvanceClock(1);
        Lines expected = {"set 0 60 = " + std::to_string(evening.restored)};
        if (evening.restored == 9)
            expected = Lines{"set 0 E8 = 777", "Sleep 1000"} + expected;
        EXPECT_EQ(Tick(), expected);
        EXPECT_EQ(SectionLines(0), Lines{"[Timer0]"});
        EXPECT_FALSE(IsUsed(0));
        EXPECT_EQ(g_nReservation, 0);
        EXPECT_EQ(Tick(), Lines{});
    }

    void Run(const Evening &evening)
    {
        nChangeMsg = evening.asked ? CHANGE_ASK_FIRST : CHANGE_AT_ONCE;
        host.monitors[0].features = {{VCP_INPUT_SOURCE, {evening.before, 9}}, {VCP_TV_CHANNEL, {777, 999}}};
        if (evening.before == -1)
            host.monitors[0].features.erase(VCP_INPUT_SOURCE);
        Enter(evening);
        CheckStart(evening, Begin(evening.asked));
        CheckEnd(evening);
        EXPECT_EQ(ReservationRows(g_hReservationPage), Lines{});
    }
};

} // namespace

TEST_F(EveningTest, EveryTargetAfterEveryInput)
{
    const struct {
        const char *channel;
        int input;
    } targets[] = {{"3", 9}, {"ビデオ", 5}, {"Sビデオ", 7}};
    const struct {
        LONG input;
        const char *label;
        int restored;
    } previous[] = {{1, "アナログ", 1}, {2, "アナログ2", 9}, {3, "デジタル", 3}, {4, "デジタル2", 9},
                    {5, "ビデオ", 5},   {6, "ビデオ", 5},    {7, "Sビデオ", 7},  {8, "Sビデオ", 7},
                    {9, "テレビ", 9},   {11, "テレビ", 9},   {-1, "テレビ", 9}};
    const struct {
        const char *start, *end;
        int minutes;
    } times[] = {{"2006/06/10 20:00", "2006/06/10 21:30", 90},
                 {"2006/06/10 23:30", "2006/06/11 00:10", 40},
                 {"2006/06/30 23:59", "2006/07/01 00:00", 1},
                 {"2006/12/31 22:00", "2007/01/01 01:00", 180}};
    size_t count = 0;
    for (const int way : {0, 1, 2, 3}) {
        std::optional<ReservationPage> page;
        if (way & 2)
            page.emplace().BeThePanel(true);
        for (const auto &target : targets)
            for (const auto &before : previous) {
                const auto &time = times[count++ % 4];
                const Evening evening = {(way & 1) != 0, (way & 2) != 0,  target.channel, target.input, before.input,
                                         before.label,   before.restored, time.start,     time.end,     time.minutes};
                SCOPED_TRACE(std::string(evening.asked ? "asked, " : "") + (evening.panelOpen ? "panel, " : "") +
                             target.channel + " after " + std::to_string(before.input) + ", " + time.start);
                Run(evening);
                if (HasFailure())
                    return; // what is left behind would spoil the others
            }
    }
}
