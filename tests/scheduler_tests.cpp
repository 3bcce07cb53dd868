// What is special about starts, ends, prompts and passed reservations.
#include "timer/scheduler.h"

#include "panel/reservation_rows.h"
#include "panel/resources/resource.h"
#include "support/clock.h"
#include "support/reservation_session.h"
#include "timer/reservation_input.h"
#include "timer/reservation_store.h"
#include "timer/reserve_prompt.h"

namespace {

class SchedulerTest : public ReservationTest {};
class ReservationTimerTest : public PluginTest {};

} // namespace

TEST_F(SchedulerTest, WhileThePanelShowsAnotherPageNothingEnds)
{
    const struct {
        const char *label;
        Lines received;
    } cases[] = {{"デジタル", {}}, {"テレビ", {"set 0 E8 = 55", "Sleep 1000"}}};
    for (const auto &c : cases) {
        LoadFile(Section(0, "2006/06/10 開始", "2006/06/10 21:00", c.label));
        g_nPrevTvChannel = 55;
        ReservationPage panel;
        panel.BeThePanel(false);
        SetMinute("2006/06/10 21:00");
        EXPECT_EQ(Tick(), c.received);
        EXPECT_EQ(Tick(), c.received) << "once per tick";
        AdvanceClock(1);
        EXPECT_EQ(Tick(), Lines{});
        EXPECT_TRUE(IsUsed(0));
        EXPECT_EQ(g_nReservation, 1);
    }
}

TEST_F(SchedulerTest, EndsOfOneMinute)
{
    // Of the four other inputs one is restored per tick; TV ends all go in one.
    const std::string end = "2006/06/10 21:00", start = "2006/06/10 開始";
    LoadFile(Section(0, start, end, "テレビ") + Section(1, start, end, "デジタル") +
             Section(2, start, end, "アナログ", "NRV-PA2", 1) + Section(3, end, "2006/06/10 22:00", "ビデオ"));
    SetMinute(end);
    CheckReservationEnd();
    EXPECT_EQ(host.TakeLog(), (Lines{"set 0 E8 = 0", "Sleep 1000", "set 0 60 = 9", "set 0 60 = 3"}));
    EXPECT_EQ(Tick(), (Lines{"set 1 60 = 1", "get 0 60", "get 0 E8", "Sleep 500", "set 0 60 = 5"}))
        << "ends before starts";
    EXPECT_EQ(g_nReservation, 1);
}

// ---- The prompt ---------------------------------------------------------------------------------------------------

TEST_F(SchedulerTest, AnsweredLate)
{
    LoadFile(Section(0, "2006/06/10 20:00", "2006/06/10 21:00", "Sビデオ"));
    nChangeMsg = CHANGE_ASK_FIRST;
    SetMinute("2006/06/10 20:00");
    Tick();
    char caption[32] = "";
    GetWindowTextA(g_hReservePrompt, caption, sizeof caption);
    EXPECT_STREQ(caption, "Lumivane2");
    EXPECT_TRUE(IsWindowVisible(g_hReservePrompt));
    EXPECT_EQ(GetWindow(g_hReservePrompt, GW_OWNER), nullptr);
    EXPECT_FALSE(GetWindowLongA(g_hReservePrompt, GWL_STYLE) & WS_SYSMENU);
    EXPECT_EQ(SendMessageA(g_hReservePrompt, DM_GETDEFID, 0, 0), MAKELONG(IDC_PROMPT_SWITCH, DC_HASDEFID));
    AdvanceClock(3);
    EXPECT_EQ(Tick(), Lines{});
    SendMessageA(g_hReservePrompt, WM_CLOSE, 0, 0);
    for (MSG message; PeekMessageA(&message, g_hReservePrompt, 0, 0, PM_REMOVE);)
        DispatchMessageA(&message);
    EXPECT_EQ(PromptShown(), QuestionShown()) << "Alt+F4 is no answer";
    EXPECT_EQ(Press(IDC_PROMPT_SWITCH), (Lines{"get 0 E8", "set 0 60 = 7"}));
    EXPECT_EQ(SectionLines(0)[2], "time=開始");
    EXPECT_EQ(SectionLines(0)[7], "channel=デジタル");
}

TEST_F(SchedulerTest, DeletedByThePrompt)
{
    const struct {
        bool panel, onPage, deleted;
    } cases[] = {{false, false, true}, {true, true, true}, {true, false, false}};
    for (const auto &c : cases) {
        LoadFile(Section(0, "2006/06/10 20:00", "2006/06/10 21:00", "3"));
        nChangeMsg = CHANGE_ASK_FIRST;
        std::optional<ReservationPage> panel;
        if (c.panel)
            panel.emplace().BeThePanel(c.onPage);
        SetMinute("2006/06/10 20:00");
        Tick();
        EXPECT_EQ(Press(IDC_PROMPT_DELETE), Lines{}) << "no input is written";
        EXPECT_EQ(g_hReservePrompt, nullptr);
        EXPECT_EQ(nChangeMsg, 1);
        EXPECT_EQ(IsUsed(0), !c.deleted);
        EXPECT_EQ(g_nReservation, c.deleted ? 0 : 1);
        EXPECT_EQ(SectionLines(0).size(), c.deleted ? 1u : 8u);
        EXPECT_EQ(ReservationRows(g_hReservationPage), Lines{});
    }
}

TEST_F(SchedulerTest, TheEndMinuteWhileTheQuestionIsOpen)
{
    for (const bool onPage : {true, false}) {
        LoadFile(Section(0, "2006/06/10 20:00", "2006/06/10 20:01", "ビデオ") +
                 Section(1, "2006/06/10 20:02", "2006/06/10 20:03", "Sビデオ"));
        nChangeMsg = CHANGE_ASK_FIRST;
        std::optional<ReservationPage> panel;
        if (onPage)
            panel.emplace().BeThePanel(true);
        SetMinute("2006/06/10 20:00");
        Tick();
        const HWND prompt = g_hReservePrompt;
        SetFocus(GetDlgItem(prompt, IDC_PROMPT_SWITCH));
        AdvanceClock(1);
        EXPECT_EQ(Tick(), Lines{}) << "no input is written";
        EXPECT_EQ(PromptShown(), NoticeShown());
        EXPECT_EQ(nChangeMsg, 1);
        EXPECT_EQ(IsUsed(0), !onPage) << "deleted by way of the page's list alone";
        EXPECT_EQ(SectionLines(0).size(), onPage ? 1u : 8u);
        // The notice turns into the next question.
        AdvanceClock(1);
        Tick();
        EXPECT_EQ(g_hReservePrompt, prompt);
        EXPECT_EQ(PromptShown(), QuestionShown());
        AdvanceClock(1);
        Tick();
        EXPECT_EQ(PromptShown(), NoticeShown());
        // Space presses what is seen, and Alt+F4 is OK here.
        if (onPage)
            for (const UINT key : {WM_KEYDOWN, WM_KEYUP})
                SendMessageA(GetFocus(), key, VK_SPACE, 0);
        else
            SendMessageA(prompt, WM_CLOSE, 0, 0);
        EXPECT_EQ(host.TakeLog(), Lines{});
        EXPECT_EQ(g_hReservePrompt, nullptr);
        EXPECT_EQ(SectionLines(1).size(), onPage ? 1u : 8u);
    }
}

TEST_F(SchedulerTest, TwoInTheSameMinute)
{
    const std::string file = Section(2, "2006/06/10 20:00", "2006/06/10 21:00", "3") +
                             Section(6, "2006/06/10 20:00", "2006/06/10 21:30", "ビデオ", "NRV-PA2", 1);
    for (const bool reread : {false, true}) {
        LoadFile(file);
        nChangeMsg = CHANGE_ASK_FIRST;
        host.monitors[0].features[VCP_INPUT_SOURCE].current = INPUT_ANALOG;
        SetMinute("2006/06/10 20:00");
        EXPECT_EQ(Tick(), (Lines{"get 0 60", "get 0 60"}));
        if (reread)
            nChangeMsg = CHANGE_ASK_FIRST; // the page has been opened meanwhile
        host.monitors[0].features[VCP_INPUT_SOURCE].current = INPUT_TV;
        Tick();
        EXPECT_EQ(g_nPromptIndex, 2) << "the question stays with the first";
        EXPECT_EQ(Press(IDC_PROMPT_SWITCH), (Lines{"get 0 E8", "set 0 E8 = 258", "Sleep 1000", "set 0 60 = 9"}));
        EXPECT_EQ(SectionLines(2)[7], "channel=アナログ") << "the input at the start minute";
        EXPECT_EQ(Tick(), Lines{"get 0 60"});
        EXPECT_EQ(PromptShown(), QuestionShown()) << "answered in time, the second is asked";
        EXPECT_EQ(Press(IDC_PROMPT_SWITCH), (Lines{"get 1 E8", "set 1 60 = 5"}));
    }

    // Left alone for the minute, the second one never starts.
    LoadFile(file);
    Tick();
    AdvanceClock(1);
    EXPECT_EQ(Tick(), Lines{});
    EXPECT_EQ(Press(IDC_PROMPT_SWITCH).size(), 4u);
    EXPECT_EQ(Tick(), Lines{});
    EXPECT_EQ(g_hReservePrompt, nullptr);
    EXPECT_EQ(SectionLines(6)[2], "time=20:00");
}

TEST_F(SchedulerTest, AQuestionOutlivesItsReservation)
{
    const std::string asked = Section(0, "2006/06/10 20:00", "2006/06/10 21:00", "ビデオ");
    const std::string other = Section(1, "2006/06/11 20:00", "2006/06/11 21:00", "ビデオ");
    const auto ask = [&] {
        LoadFile(asked + other);
        nChangeMsg = CHANGE_ASK_FIRST;
        SetMinute("2006/06/10 20:00");
        Tick();
        EXPECT_EQ(PromptShown(), QuestionShown());
    };
    for (const bool reused : {false, true})
        for (const int button : {IDC_PROMPT_SWITCH, IDC_PROMPT_DELETE, IDCANCEL}) {
            SCOPED_TRACE(testing::Message() << button << (reused ? " with another one in the slot" : ""));
            ask();
            DeleteReservation(0); // on the page, which is then closed
            std::optional<ReservationPage> panel;
            if (reused) {
                IniFolder::Write("ontimer.ini", Section(0, "2006/06/12 20:00", "2006/06/12 21:00", "3") + other);
                panel.emplace().BeThePanel(true);
            }
            const std::string before = IniFolder::Read("ontimer.ini");
            EXPECT_EQ(Press(button), Lines{});
            EXPECT_EQ(IniFolder::Read("ontimer.ini"), before);
            EXPECT_EQ(g_nReservation, reused ? 2 : 1);
            CloseReservePrompt();
        }
    // It goes within the second, also when the question of the panel's opening has deleted what it asks about.
    for (const bool byThePanel : {false, true}) {
        ask();
        BoxAnswerer answerer("Lumivane 2", IDNO);
        if (byThePanel)
            CheckPassedReservations(nullptr);
        else
            DeleteReservation(0);
        EXPECT_EQ(Tick(), Lines{});
        EXPECT_EQ(g_hReservePrompt, nullptr);
        EXPECT_EQ(g_nReservation, 1) << "the other one is still looked after";
    }
}

TEST_F(SchedulerTest, APromptThatCannotBeCreated)
{
    LoadFile(Section(0, "2006/06/10 20:00", "2006/06/10 21:00", "3") +
             Section(1, "2006/06/10 20:00", "2006/06/10 21:00", "3"));
    nChangeMsg = CHANGE_ASK_FIRST;
    SetMinute("2006/06/10 20:00");
    const HINSTANCE own = g_hInstance;
    g_hInstance = GetModuleHandleA("kernel32"); // without our dialogs
    EXPECT_EQ(Tick(), Lines{"get 0 60"}) << "the check ends there";
    g_hInstance = own;
    EXPECT_EQ(g_hReservePrompt, nullptr);
    EXPECT_EQ(nChangeMsg, 1);
    Tick();
    EXPECT_EQ(PromptShown(), QuestionShown()) << "tried again in the same minute";
    EXPECT_EQ(g_nPromptIndex, 0);
    EXPECT_EQ(g_szPrevInput, Sjis("デジタル"));
}

// ---- Monitors, channels, inputs -----------------------------------------------------------------------------------

TEST_F(SchedulerTest, AMonitorThatIsNotTheReservedOne)
{
    const struct {
        const char *model;
        int monitor;
        bool starts;
    } cases[] = {{"NRV-PA2", 1, true},   {"nrv-pa2", 1, true},  {"NRV-PA2 X", 1, true}, {"NRV-PA1", 1, false},
                 {"NRV-PA22", 1, false}, {"NRV-PA", 1, false},  {"", 1, false},         {"NRV-PA1", 999, false},
                 {"", 9, false},         {"NRV-PA1", -1, false}};
    for (const auto &c : cases) {
        LoadFile(Section(0, "2006/06/10 20:00", "2006/06/10 21:00", "ビデオ", c.model, c.monitor));
        g_nCurMonitor = 0; // whose input is remembered, whichever is switched
        SetMinute("2006/06/10 20:00");
        EXPECT_EQ(Tick(), c.starts ? (Lines{"get 0 60", "get 1 E8", "Sleep 500", "set 1 60 = 5"}) : Lines{}) << c.model;
        SetMinute("2006/06/10 21:00");
        EXPECT_EQ(Tick(), c.starts ? Lines{"set 1 60 = 3"} : Lines{}) << c.model;
        EXPECT_EQ(IsUsed(0), !c.starts) << c.model;
    }
}

TEST_F(SchedulerTest, Choices)
{
    MONITORENTRY tuner = g_Monitor[0];
    strcpy(tuner.szInputName[3], "BS11x");
    EXPECT_EQ(FindChannel(&tuner, "3"), 1);
    EXPECT_EQ(FindChannel(&tuner, "3 more"), 1);
    EXPECT_EQ(FindChannel(&tuner, "33"), CHANNEL_NONE);
    EXPECT_EQ(FindChannel(&tuner, "BS11y"), 3) << "four characters count";
    EXPECT_EQ(FindChannel(&tuner, "    "), 2) << "an empty one is a channel";
    EXPECT_EQ(FindChannel(&tuner, Sjis("ビデオ").c_str()), CHANNEL_NONE);

    MONITORENTRY plain = tuner;
    for (const int input : {1, 3, 5, 7})
        plain.bInputSource[input] = 0;
    const struct {
        const char *text;
        int target, restored; // for a monitor that has the input; any other gets the TV
    } cases[] = {{"ビデオ", 5, 5},    {"Sビデオ", 7, 7},   {"アナログ", 9, 1}, {"デジタル", 9, 3}, {"テレビ", 9, 9},
                 {"アナログ2", 9, 9}, {"デジタル2", 9, 9}, {"3", 9, 9},        {"コデオ", 9, 9},   {"", 9, 9}};
    for (const auto &c : cases) {
        const std::string text = Sjis(c.text);
        EXPECT_EQ(ChooseInput(&tuner, text.c_str(), CHANNEL_NONE), c.target) << c.text;
        EXPECT_EQ(ChooseInput(&tuner, text.c_str(), 0), 9) << c.text;
        EXPECT_EQ(ChooseInput(&plain, text.c_str(), CHANNEL_NONE), 9) << c.text;
        EXPECT_EQ(ChooseRestoreInput(&tuner, text.c_str()), c.restored) << c.text;
        EXPECT_EQ(ChooseRestoreInput(&plain, text.c_str()), 9) << c.text;
    }
    // A channel that the monitor does not know switches to the TV all the same.
    LoadFile(Section(0, "2006/06/10 20:00", "2006/06/10 21:00", "99"));
    SetMinute("2006/06/10 20:00");
    EXPECT_EQ(Tick(), (Lines{"get 0 60", "get 0 E8", "Sleep 500", "set 0 E8 = 273", "Sleep 1000", "set 0 60 = 9"}));
}

// ---- Opening of the panel -----------------------------------------------------------------------------------------

TEST_F(SchedulerTest, PassedReservations)
{
    const std::string missed =
        "? YES NO owned: 前回設定した予約時間を経過しています。\n予約した画面に今すぐ切り替えますか？\n"
        "※[ いいえ ]を選択すると、予約は削除されます。";
    const auto ended = [](const std::string &start, const std::string &end) {
        return "i OK owned: "
               "前回設定した予約の終了時間を経過しているため、対象の予約を削除しました。\n\n予約番号03番\n\n開始日時 "
               "： " +
               start + "\n終了日時 ： " + end;
    };

    const struct {
        const char *start, *end;
        int answer;
        std::string box; // empty = none
        size_t lines;    // of the section afterwards; 0 = as before
        bool freed;      // the slot in the table
        LONG countdown;
    } cases[] = {
        {"2006/06/10 20:01", "2006/06/10 21:00", IDYES, "", 0, false, 0},
        {"2006/06/10 20:00", "2006/06/10 21:00", IDYES, missed, 9, false, 0},
        {"2006/06/10 20:00", "2006/06/10 21:00", IDNO, missed, 1, false, 1},
        {"2006/06/09 23:59", "2006/06/10 21:00", IDNO, missed, 1, false, 1},
        {"2006/06/10 19:00", "2006/06/10 20:00", IDOK, ended("2006/06/10 19:00", "2006/06/10 20:00"), 1, true, 1},
        {"2006/06/10 開始", "2006/06/10 19:59", IDOK, ended("2006/06/10 開始", "2006/06/10 19:59"), 1, true, 1},
        // Started today it is left alone; started on an earlier day it is asked about.
        {"2006/06/10 開始", "2006/06/10 21:00", IDYES, "", 0, false, 0},
        {"2006/06/09 開始", "2006/06/10 21:00", IDYES, missed, 9, false, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.start) + " - " + c.end);
        LoadFile(Section(3, c.start, c.end, "3"));
        SetMinute("2006/06/10 20:00");
        ReservationPage panel;
        BoxAnswerer answerer("Lumivane 2", c.answer);
        EXPECT_EQ(CheckPassedReservations(panel.Window()), 1);
        EXPECT_EQ(answerer.Boxes(), c.box.empty() ? Lines{} : Lines{Sjis(c.box)});
        const Lines section = SectionLines(3);
        EXPECT_EQ(section.size(), c.lines ? c.lines : 8u);
        if (c.lines == 9) {
            EXPECT_EQ(section[1], "date=" + std::string(c.start, 10)) << "the old date stays";
            EXPECT_EQ(section[2], "time=20:00");
            EXPECT_EQ(section[8], "data=2006/06/10");
        }
        EXPECT_EQ(IsUsed(3), !c.freed);
        EXPECT_EQ(g_nReservation, 1 - c.countdown);
        EXPECT_EQ(host.TakeLog(), Lines{}) << "no monitor is switched";
    }
}

TEST_F(SchedulerTest, PassedReservationsOfAFileThatWasNeverLoaded)
{
    IniFolder::Write("ontimer.ini", Section(0, "2006/06/10 19:00", "2006/06/10 19:30", "3") +
                                        "[Timer1]\r\n[Timer2]\r\nenddate=2006/06/10\r\n" +
                                        "[Timer4]\r\nenddate=?\r\ntime=20:00\r\n" +
                                        Section(9, "2006/06/10 19:40", "2006/06/10 19:50", "3"));
    SetMinute("2006/06/10 20:00");
    BoxAnswerer answerer("Lumivane 2", IDOK);
    CheckPassedReservations(nullptr);
    EXPECT_EQ(answerer.Boxes().size(), 3u);
    EXPECT_EQ(g_nReservation, -3) << "counted down below nothing";
    for (const int n : {0, 2, 9})
        EXPECT_EQ(SectionLines(n).size(), 1u);
    EXPECT_EQ(SectionLines(4).size(), 3u) << "no date in digits has passed";
    CheckPassedReservations(nullptr);
    EXPECT_EQ(answerer.Boxes().size(), 3u);
    CheckReservationEnd();
    CheckReservationStart();
    EXPECT_EQ(host.TakeLog(), Lines{});
}

// ---- By the kernel window's timer ---------------------------------------------------------------------------------

TEST_F(ReservationTimerTest, TheTimerChecksWhatIsLoaded)
{
    host.monitors = {ColorMonitor("NRV-PA1")};
    host.monitors[0].capabilities = "(vcp(60(01 03 05) E8))";
    host.monitors[0].features[VCP_TV_CHANNEL] = {777, 999};
    ASSERT_TRUE(Start());
    StartUp();
    SetClock(2006, 6, 10, 20, 0);
    const std::string file = Section(0, "2006/06/10 20:00", "2006/06/10 20:01", "ビデオ") +
                             Section(1, "2006/06/10 20:01", "2006/06/10 20:30", "ビデオ");
    IniFolder::Write("ontimer.ini", file);
    host.TakeLog();
    LoadReservations(g_Reservation, "ontimer.ini");
    Tick(TIMER_RESERVATION);
    EXPECT_EQ(host.TakeLog(), Lines{}) << "what the user has deleted is not counted, but stays until a page loads";
    g_nReservation = LoadReservations(g_Reservation, "ontimer.ini");
    Tick(TIMER_RESERVATION);
    EXPECT_EQ(host.TakeLog(), (Lines{"get 0 60", "get 0 E8", "set 0 60 = 5"}));
    AdvanceClock(1);
    nChangeMsg = CHANGE_ASK_FIRST;
    Tick(TIMER_RESERVATION);
    EXPECT_EQ(host.TakeLog(), (Lines{"set 0 60 = 3", "get 0 60"})) << "one ends, then the other starts";
    EXPECT_TRUE(IsWindowVisible(g_hReservePrompt));
    DeleteReservation(1);
    Tick(TIMER_RESERVATION);
    EXPECT_EQ(g_hReservePrompt, nullptr) << "the last one is gone, and its question with it";
    IniFolder::Write("ontimer.ini", file);
    g_nReservation = LoadReservations(g_Reservation, "ontimer.ini");
    Tick(TIMER_RESERVATION);
    EXPECT_TRUE(IsWindowVisible(g_hReservePrompt));
    Stop();
    EXPECT_EQ(g_hReservePrompt, nullptr) << "the prompt goes with the plug-in";
    CloseReservationFiles();
}
