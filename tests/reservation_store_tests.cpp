// The file of reservations, the table, and the page's entry and list.
#include "timer/reservation_store.h"

#include "panel/reservation_rows.h"
#include "panel/resources/resource.h"
#include "support/panel_session.h"
#include "support/reservation_session.h"

#include <commctrl.h>
#include <fcntl.h>
#include <io.h>

using namespace std::string_literals;

namespace {

class ReservationStoreTest : public ReservationTest {
protected:
    ReservationStoreTest() { SetMinute("2006/06/10 19:00"); }
};

// The slots in use, such as "0 2".
std::string UsedSlots()
{
    std::string used;
    for (int n = 0; n < RESERVATION_COUNT; ++n)
        if (g_Reservation[n].szSection[0])
            used += (used.empty() ? "" : " ") + std::to_string(n);
    return used;
}

// The next descriptor of the run-time library.
int NextDescriptor()
{
    const int descriptor = _open("NUL", _O_RDONLY);
    _close(descriptor);
    // cppcheck-suppress deallocret ; the number is what is asked for
    return descriptor;
}

} // namespace

TEST_F(ReservationStoreTest, AnEnteredReservationInFileTableAndList)
{
    LoadFile("");
    g_nCurMonitor = 1;
    ReservationPage page;
    EnterReservation(page.Window(), "2006/06/10 20:05", "2007/01/01 00:00", "Sビデオ");
    EXPECT_EQ(AddReservation(page.Window()), 1);
    EXPECT_EQ(g_nReservation, 1);
    EXPECT_EQ(IniFolder::Read("ontimer.ini"),
              Sjis("[Timer0]\r\ndate=2006/06/10\r\ntime=20:05\r\nenddate=2007/01/01\r\nendtime=00:00\r\n"
                   "lcd=     NRV-PA2\r\ncrtno=1\r\nchannel=Sビデオ\r\n\r\n"));
    EXPECT_EQ(ReservationRows(page.Window()),
              Lines{"0: " + Sjis("2006/06/10|20:05|2007/01/01|00:00|2:     NRV-PA2|Sビデオ")});

    // The system reads its own copy of a file that has not changed for two seconds: that must be good, too.
    WaitForSingleObject(GetCurrentProcess(), 2500);
    // Read back, the model name is padded at its other end.
    g_nReservation = LoadReservations(g_Reservation, "ontimer.ini");
    EXPECT_EQ(g_nReservation, 1);
    EXPECT_STREQ(g_Reservation[0].szLcd, "NRV-PA2     ");
    EXPECT_EQ(g_Reservation[0].nCrtNo, 1);
    EXPECT_EQ(g_Reservation[0].szChannel, Sjis("Sビデオ"));
}

TEST_F(ReservationStoreTest, FilesMadeByHand)
{
    const struct {
        const char *what, *section;
        bool used;
        const char *date, *time, *endDate, *endTime, *lcd;
        LONG monitor;
        const char *channel;
    } cases[] = {
        {"empty", "", false, "", "", "", "", "", 0, ""},
        {"neither date", "time=20:00\r\nendtime=21:00\r\nlcd=NRV-PA1\r\n", false, "", "", "", "", "", 0, ""},
        {"a date alone", "date=2006/06/10\r\n", true, "2006/06/10", "", "?", "", "", 0, ""},
        {"an end date alone", "enddate=2006/06/10\r\n", true, "?", "", "2006/06/10", "", "", 0, ""},
        {"an end date of one character, no date", "enddate=x\r\n", false, "", "", "", "", "", 0, ""},
        {"an empty end date", "enddate=\r\n", true, "?", "", "", "", "", 0, ""},
        {"long values",
         "date=2006/06/10 and more\r\ntime=20:00:30\r\nenddate=2006/06/11 and more\r\nendtime=21:00:30\r\n"
         "lcd=A model of more than twelve\r\ncrtno=12345\r\nchannel=0123456789abcdef\r\n",
         true, "2006/06/10", "20:00", "2006/06/11", "21:00", "A model of m", 123, "012345678"},
        {"no number", "date=2006/06/10\r\ncrtno=abc\r\nlcd=X\r\n", true, "2006/06/10", "", "?", "", "X           ", 0,
         ""},
        {"numbers with something", "date=2006/06/10\r\ncrtno= 7x\r\n", true, "2006/06/10", "", "?", "", "", 7, ""},
        {"below zero", "date=2006/06/10\r\ncrtno=-1\r\n", true, "2006/06/10", "", "?", "", "", -1, ""},
        {"started", "date=2006/06/10\r\ntime=開始\r\nchannel=アナログ\r\n", true, "2006/06/10", "開始", "?", "", "", 0,
         "アナログ"},
    };
    for (const auto &c : cases) {
        LoadFile(Sjis("[Timer4]\r\n" + std::string(c.section)));
        const RESERVATION &slot = g_Reservation[4];
        EXPECT_EQ(g_nReservation, c.used ? 1 : 0) << c.what;
        EXPECT_EQ(UsedSlots(), c.used ? "4" : "") << c.what;
        if (!c.used)
            continue;
        EXPECT_STREQ(slot.szDate, c.date) << c.what;
        EXPECT_EQ(slot.szTime, Sjis(c.time)) << c.what;
        EXPECT_STREQ(slot.szEndDate, c.endDate) << c.what;
        EXPECT_STREQ(slot.szEndTime, c.endTime) << c.what;
        // Without a name the padding begins behind the terminating zero.
        EXPECT_STREQ(slot.szLcd, c.lcd) << c.what;
        EXPECT_EQ(std::string(slot.szLcd + 8, 5), c.lcd[0] == 'A' ? "of m\0"s : "    \0"s);
        EXPECT_EQ(slot.nCrtNo, c.monitor) << c.what;
        EXPECT_EQ(slot.szChannel, Sjis(c.channel)) << c.what;
    }
}

TEST_F(ReservationStoreTest, SlotsBetweenEmptiedSectionsAreFilledFirst)
{
    const std::string used = Section(0, "2006/06/01 20:00", "2006/06/01 21:00", "1") + "[Timer1]\r\n" +
                             Section(2, "2006/06/02 20:00", "2006/06/02 21:00", "1") +
                             "[Timer3]\r\n[Timer10]\r\ndate=x\r\n";
    LoadFile(used);
    EXPECT_EQ(g_nReservation, 2);
    EXPECT_EQ(UsedSlots(), "0 2");

    ReservationPage page;
    EnterReservation(page.Window(), "2006/06/10 20:00", "2006/06/10 21:00", "3");
    EXPECT_EQ(AddReservation(page.Window()), 1);
    EXPECT_EQ(UsedSlots(), "0 1 2");
    EXPECT_EQ(SectionLines(1), (Lines{"[Timer1]", "date=2006/06/10", "time=20:00", "enddate=2006/06/10",
                                      "endtime=21:00", "lcd=NRV-PA1", "crtno=0", "channel=3"}));
    // Each row knows its slot, wherever it stands and however far its index is behind the list's end.
    EnterReservation(page.Window(), "2006/06/11 20:00", "2006/06/11 21:00", "");
    EXPECT_EQ(AddReservation(page.Window()), 1);
    EXPECT_EQ(ReservationRows(page.Window()), (Lines{"0: 2006/06/01|20:00|2006/06/01|21:00|1:NRV-PA1     |1",
                                                     "1: 2006/06/10|20:00|2006/06/10|21:00|1:     NRV-PA1|3",
                                                     "2: 2006/06/02|20:00|2006/06/02|21:00|1:NRV-PA1     |1",
                                                     "3: 2006/06/11|20:00|2006/06/11|21:00|1:     NRV-PA1|"}));
    DeleteReservation(0);
    EXPECT_EQ(SectionLines(0), Lines{"[Timer0]"});
    EXPECT_EQ(g_nReservation, 3);
    EXPECT_EQ(UsedSlots(), "1 2 3");
    MarkReservationStarted(1);
    StoreReservationChannel(1, Sjis("デジタル2").c_str());
    EXPECT_EQ(SectionLines(1), (Lines{"[Timer1]", "date=2006/06/10", "time=開始", "enddate=2006/06/10", "endtime=21:00",
                                      "lcd=NRV-PA1", "crtno=0", "channel=デジタル2"}));
    EXPECT_STREQ(g_Reservation[1].szTime, "");
    g_nReservation = LoadReservations(g_Reservation, "ontimer.ini");
    EXPECT_EQ(g_nReservation, 3);
    EXPECT_EQ(g_Reservation[1].szTime, Sjis("開始"));
}

TEST_F(ReservationStoreTest, WithoutAFileTheTableStays)
{
    LoadFile(Section(0, "2006/06/10 20:00", "2006/06/10 21:00", "1"));
    EXPECT_EQ(LoadReservations(g_Reservation, "missing.ini"), 0);
    EXPECT_EQ(g_szOnTimerIni, IniFolder::Path("missing.ini"));
    EXPECT_EQ(UsedSlots(), "0");
    const int descriptor = NextDescriptor();
    LoadReservations(g_Reservation, "ontimer.ini");
    EXPECT_EQ(NextDescriptor(), descriptor + 1) << "the file stays open";
}

TEST_F(ReservationStoreTest, AFileThatCannotBeWritten)
{
    LoadFile(Section(0, "2006/06/10 20:00", "2006/06/10 21:00", "1"));
    const std::string before = IniFolder::Read("ontimer.ini");
    // Somebody reads it and lets nobody write.
    const HANDLE lock = CreateFileA(g_szOnTimerIni, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    BoxAnswerer answerer("Lumivane 2", IDOK);
    ReservationPage page;
    EnterReservation(page.Window(), "2006/06/11 20:00", "2006/06/11 21:00", "3");
    EXPECT_EQ(AddReservation(page.Window()), 1);
    EXPECT_EQ(answerer.TakeBoxes(), Lines{Sjis("x OK: デフォルトプロファイルの保存に失敗しました。")});
    EXPECT_EQ(UsedSlots(), "0 1") << "what was entered still counts";
    EXPECT_EQ(g_nReservation, 2);
    EXPECT_EQ(ReservationRows(page.Window()).size(), 2u);
    MarkReservationStarted(0);
    DeleteReservation(1);
    EXPECT_EQ(UsedSlots(), "0");
    EXPECT_EQ(IniFolder::Read("ontimer.ini"), before);
    EXPECT_EQ(answerer.Boxes(), Lines{}) << "other failed writes are silent";
    CloseHandle(lock);
}

TEST_F(ReservationStoreTest, RefusalsAreShownAndNothingIsStored)
{
    const struct {
        const char *start, *end, *text;
        char icon;
    } cases[] = {
        {"2006/06/10 18:59", "2006/06/12 21:00", "指定した時間は過ぎています。", 'i'},
        {"2006/06/12 20:00", "2006/06/12 20:00", "開始時間と終了時間が同じ時刻のため、登録できませんでした。", 'i'},
        {"2006/06/12 20:00", "2006/06/12 19:59", "終了時間が開始時間より前に設定されているため、登録できませんでした。",
         'i'},
        {"2006/06/10 19:00", "2006/06/12 21:00", "予約開始時間が現在の時間に近すぎるため、登録できませんでした。", 'i'},
        {"2006/06/11 20:00", "2006/06/12 21:00", "その時間には別の設定が予約されています。", 'x'},
        {"2006/06/11 20:30", "2006/06/11 21:00", "終了時間が重なっているため、登録できませんでした。", 'x'},
        {"2006/06/11 21:00", "2006/06/12 21:00",
         "開始時間が予約済みの終了時間より前に設定されているため、登録できませんでした。", 'x'},
    };
    LoadFile(Section(0, "2006/06/11 20:00", "2006/06/11 21:00", "1"));
    const std::string before = IniFolder::Read("ontimer.ini");
    BoxAnswerer answerer("Lumivane 2", IDOK);
    for (const auto &c : cases) {
        EXPECT_EQ(Add(c.start, c.end, "3"), 1) << c.text;
        EXPECT_EQ(answerer.TakeBoxes(), Lines{Sjis(c.icon + " OK owned: "s + c.text)});
    }
    EXPECT_EQ(UsedSlots(), "0");
    EXPECT_EQ(g_nReservation, 1);
    EXPECT_EQ(IniFolder::Read("ontimer.ini"), before);
}

TEST_F(ReservationStoreTest, MissingInputsAndAFullTable)
{
    LoadFile("");
    ReservationPage page;
    const char start[] = "2006/06/11 20:00", end[] = "2006/06/11 21:00";
    for (const int list : {IDC_RESERVATION_START_HOUR, IDC_RESERVATION_START_MINUTE, IDC_RESERVATION_END_HOUR,
                           IDC_RESERVATION_END_MINUTE, IDC_RESERVATION_CHANNEL}) {
        EnterReservation(page.Window(), start, end, "1");
        Pick(page.Window(), list, -1);
        EXPECT_EQ(AddReservation(page.Window()), 0) << list;
    }
    EnterReservation(page.Window(), start, end, "1");
    g_nCurMonitor = MAX_MONITOR;
    EXPECT_EQ(AddReservation(page.Window()), 0);
    g_nCurMonitor = 0;
    EXPECT_EQ(UsedSlots(), "");
    for (int n = 0; n < RESERVATION_COUNT; ++n) {
        const std::string day = "2006/07/" + std::to_string(10 + n);
        EnterReservation(page.Window(), day + " 20:00", day + " 21:00", "1");
        EXPECT_EQ(AddReservation(page.Window()), 1);
    }
    EXPECT_EQ(g_nReservation, 10);
    EnterReservation(page.Window(), "2006/08/10 20:00", "2006/08/10 21:00", "1");
    EXPECT_EQ(AddReservation(page.Window()), 0);
    EXPECT_EQ(ReservationRows(page.Window()).size(), 10u);
    EXPECT_EQ(LoadReservations(g_Reservation, "ontimer.ini"), 10);
}

TEST_F(ReservationStoreTest, DeletingByTheList)
{
    ReservationPage page; // before there are any
    LoadFile(Section(0, "2006/06/10 20:00", "2006/06/10 21:00", "1") +
             Section(5, "2006/06/11 20:00", "2006/06/11 21:00", "1") +
             Section(7, "2006/06/12 20:00", "2006/06/12 21:00", "1"));
    EXPECT_EQ(DeleteReservationAndRestore(nullptr, 0, 0, 5), 0) << "no page";
    EXPECT_EQ(DeleteReservationAndRestore(page.Window(), 0, 0, 5), 0) << "an empty list";
    for (const int n : {0, 5, 7})
        AddReservationRow(page.Window(), n);
    EXPECT_EQ(DeleteReservationAndRestore(page.Window(), 1, 0, 5), 1) << "a slot without a row";
    EXPECT_EQ(host.TakeLog(), Lines{});
    EXPECT_EQ(UsedSlots(), "0 5 7");

    EXPECT_EQ(DeleteReservationAndRestore(page.Window(), 5, 1, 7), 1);
    EXPECT_EQ(host.TakeLog(), Lines{"set 1 60 = 7"});
    EXPECT_EQ(UsedSlots(), "0 7");
    EXPECT_EQ(ReservationRows(page.Window()).size(), 2u);
    EXPECT_EQ(DeleteReservationAndRestore(page.Window(), 0, 0, 0), 1);
    EXPECT_EQ(host.TakeLog(), Lines{}) << "no input to select";

    BoxAnswerer answerer("Lumivane 2", IDOK);
    DeleteReservationRow(page.Window(), 7, 3, DELETE_ROW_ERROR_BUTTON);
    EXPECT_EQ(answerer.Boxes(), Lines{"x OK owned: LVM_DELETEITEM_ERROR_BUTTON"});
    EXPECT_EQ(UsedSlots(), "") << "gone all the same";
    EXPECT_EQ(g_nReservation, 0);
    EXPECT_EQ(SectionLines(7), Lines{"[Timer7]"});
}
