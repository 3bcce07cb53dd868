// The reservation page in the panel: what it offers, its list with its buttons, and the choice to be asked first.
#include "kernel/base/plugin_state.h"
#include "panel/reservation_rows.h"
#include "panel/resources/resource.h"
#include "settings/registry.h"
#include "support/clock.h"
#include "support/panel_session.h"
#include "support/reservation_session.h"
#include "timer/reservation_store.h"

#include <commctrl.h>

namespace {

class ReservationPageTest : public PanelTest {
protected:
    ~ReservationPageTest() override { CloseReservationFiles(); }

    void SetUp() override
    {
        SetClock(2006, 6, 10, 13, 47);
        ASSERT_TRUE(Open());
    }

    // Chooses the page anew. Result: its window.
    HWND Reopen()
    {
        Choose(TREE_ROOT);
        Choose(TREE_RESERVATION);
        return Page(TREE_RESERVATION);
    }

    // The names of the first monitor's channels; all others are unused.
    static void NameChannels(const Lines &names)
    {
        for (size_t n = 0; n < VCP_VALUE_COUNT; ++n) {
            char(&entry)[10] = g_Monitor[0].szInputName[n];
            memset(entry, 0, sizeof entry);
            const std::string name = n < names.size() ? names[n] : "    ";
            memcpy(entry, name.data(), std::min(name.size(), sizeof entry));
        }
    }
};

// A click of the mouse on a row, or below the rows. The list reports it when the button goes up.
void ClickRow(HWND page, int row)
{
    const HWND list = GetDlgItem(page, IDC_RESERVATION_LIST);
    const int rows = static_cast<int>(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0));
    RECT place = {};
    SendMessageA(list, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&place));
    const int height = place.bottom - place.top;
    const int y = place.top + height * (row < 0 ? rows : row) + height / 2;
    PostMessageA(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(place.left + 10, y));
    PostMessageA(list, WM_LBUTTONUP, 0, MAKELPARAM(place.left + 10, y));
    // The thread works its messages off in their order; a box that nobody sees tells when.
    PostMessageA(GetDlgItem(page, IDC_RESERVATION_USE_END), BM_SETCHECK, BST_CHECKED, 0);
    EXPECT_TRUE(Comes([page] { return IsChecked(page, IDC_RESERVATION_USE_END); }));
    CheckDlgButton(page, IDC_RESERVATION_USE_END, BST_UNCHECKED);
}

} // namespace

TEST_F(ReservationPageTest, BeginsAtThePresentMinute)
{
    const HWND page = Reopen();
    EXPECT_EQ(g_hReservationPage, page);
    for (const MOMENTCONTROLS &controls : g_MomentControls) {
        SYSTEMTIME date = {};
        SendDlgItemMessageA(page, controls.nDate, DTM_GETSYSTEMTIME, 0, reinterpret_cast<LPARAM>(&date));
        EXPECT_EQ(date.wYear * 10000 + date.wMonth * 100 + date.wDay, 20060610);
        const Lines hours = EntriesOf(page, controls.nHour), minutes = EntriesOf(page, controls.nMinute);
        ASSERT_EQ(hours.size(), 24u);
        EXPECT_EQ(hours[0], "00 (午前0時)");
        EXPECT_EQ(hours[11], "11 (午前11時)");
        EXPECT_EQ(hours[12], "12 (午後0時)");
        EXPECT_EQ(hours[23], "23 (午後11時)");
        ASSERT_EQ(minutes.size(), 60u);
        EXPECT_EQ(minutes[0] + " " + minutes[59], "0 59");
        EXPECT_EQ(SelectionOf(page, controls.nHour), 13);
        EXPECT_EQ(SelectionOf(page, controls.nMinute), 47);
    }
    EXPECT_TRUE(IsEnabled(page, IDC_RESERVATION_ADD));
    EXPECT_FALSE(IsEnabled(page, IDC_RESERVATION_DELETE));
    SendMessageA(page, WM_COMMAND, IDC_RESERVATION_CLOSE, 0);
    EXPECT_EQ(Page(TREE_RESERVATION), nullptr);
    EXPECT_EQ(g_hReservationPage, nullptr);
}

TEST_F(ReservationPageTest, ChannelsAndInputsOfTheMonitor)
{
    const std::string blanks = "    ";
    Lines empty(16), emptyWithInputs = empty;
    emptyWithInputs.insert(emptyWithInputs.end(), {"Sビデオ", "ビデオ"});
    const struct {
        Lines names;
        bool sVideo, video;
        Lines entries;
        int selected;
    } cases[] = {
        {empty, true, true, emptyWithInputs, 0}, // as long as nothing names the channels
        {{"1", "3", blanks}, true, true, {"1", "3", "Sビデオ", "ビデオ"}, 0},
        {{blanks, "0123456789", "     "}, false, true, {"0123456789", "     ", "ビデオ"}, 0},
        {{"1", "3"}, true, false, {"1", "3", "Sビデオ"}, -1},
        {{}, false, false, {}, -1},
    };
    BoxAnswerer answerer("Lumivane 2", IDOK);
    for (const auto &c : cases) {
        NameChannels(c.names);
        g_Monitor[0].bInputSource[7] = c.sVideo;
        g_Monitor[0].bInputSource[5] = c.video;
        const HWND page = Reopen();
        EXPECT_EQ(EntriesOf(page, IDC_RESERVATION_CHANNEL), c.entries);
        EXPECT_EQ(SelectionOf(page, IDC_RESERVATION_CHANNEL), c.selected);
        Click(page, IDC_RESERVATION_ADD);
        // With a channel it is the times that are wrong: both are this minute.
        const char *refusal = c.selected < 0 ? "x OK owned: 未設定の項目があるため、登録できませんでした。"
                                             : "i OK owned: 開始時間と終了時間が同じ時刻のため、登録できませんでした。";
        EXPECT_EQ(answerer.TakeBoxes(), Lines{Sjis(refusal)});
    }
}

TEST_F(ReservationPageTest, FromNoneToTen)
{
    HWND page = Reopen();
    ClickRow(page, 0);
    EXPECT_FALSE(IsEnabled(page, IDC_RESERVATION_DELETE));
    EnterReservation(page, "2006/07/10 20:00", "2006/07/10 21:00", "ビデオ");
    Click(page, IDC_RESERVATION_ADD);
    EXPECT_EQ(ReservationRows(page), Lines{Sjis("0: 2006/07/10|20:00|2006/07/10|21:00|1:     NRV-PA1|ビデオ")});
    EXPECT_EQ(ReservationRows(Reopen()), Lines{Sjis("0: 2006/07/10|20:00|2006/07/10|21:00|1:NRV-PA1     |ビデオ")});

    std::string file;
    for (int n = 0; n < 9; ++n) {
        const std::string day = "2006/07/" + std::to_string(10 + n);
        file += Section(n, day + " 20:00", day + " 21:00", "ビデオ");
    }
    IniFolder::Write("ontimer.ini", file);
    page = Reopen();
    EXPECT_TRUE(IsEnabled(page, IDC_RESERVATION_ADD));
    ClickRow(page, 3);
    EXPECT_TRUE(IsEnabled(page, IDC_RESERVATION_DELETE));
    EnterReservation(page, "2006/07/19 20:00", "2006/07/19 21:00", "ビデオ");
    Click(page, IDC_RESERVATION_ADD);
    EXPECT_FALSE(IsEnabled(page, IDC_RESERVATION_ADD));
    EXPECT_FALSE(IsEnabled(page, IDC_RESERVATION_DELETE));
    page = Reopen();
    EXPECT_FALSE(IsEnabled(page, IDC_RESERVATION_ADD));
    EXPECT_EQ(ReservationRows(page).size(), 10u);

    // An end minute makes room as the user does.
    SetClock(2006, 7, 10, 21, 0);
    Tick(TIMER_RESERVATION);
    EXPECT_TRUE(IsEnabled(page, IDC_RESERVATION_ADD));
    EnterReservation(page, "2006/07/20 20:00", "2006/07/20 21:00", "Sビデオ");
    Click(page, IDC_RESERVATION_ADD);
    EXPECT_FALSE(IsEnabled(page, IDC_RESERVATION_ADD));
    EXPECT_EQ(SectionLines(0).size(), 8u) << "the freed slot";

    ClickRow(page, 4);
    ClickRow(page, -1); // below the rows
    EXPECT_FALSE(IsEnabled(page, IDC_RESERVATION_DELETE));
    SendMessageA(page, WM_COMMAND, IDC_RESERVATION_DELETE, 0);
    EXPECT_EQ(g_nReservation, 10) << "no row, no deletion";
    ClickRow(page, 4);
    host.TakeLog();
    Click(page, IDC_RESERVATION_DELETE);
    EXPECT_EQ(host.TakeLog(), Lines{}) << "no input is restored";
    EXPECT_EQ(SectionLines(4), Lines{"[Timer4]"});
    EXPECT_EQ(g_nReservation, 9);
    EXPECT_TRUE(IsEnabled(page, IDC_RESERVATION_ADD));
    EXPECT_FALSE(IsEnabled(page, IDC_RESERVATION_DELETE));
}

TEST_F(ReservationPageTest, WhetherToBeAskedFirst)
{
    const struct {
        std::optional<DWORD> stored;
        LONG before; // what is known of it in memory
        LONG loaded;
        bool checked;
    } cases[] = {
        {{}, 0, 0, false}, {{}, 1, 1, true}, {{}, 2, 2, false}, {0, 1, 0, false}, {1, 0, 1, true}, {1, 2, 1, true},
    };
    for (const auto &c : cases) {
        const REGENTRY setting = {"Lumivane2", "nChangeMsg", REG_DWORD, nullptr, 0};
        DeleteSetting(&setting);
        if (c.stored)
            PutDword(HKEY_CURRENT_USER, "Lumivane2", "nChangeMsg", *c.stored);
        nChangeMsg = c.before;
        const HWND page = Reopen();
        EXPECT_EQ(nChangeMsg, c.loaded);
        EXPECT_EQ(IsChecked(page, IDC_RESERVATION_ASK), c.checked);
        for (const bool checked : {!c.checked, c.checked}) {
            Click(page, IDC_RESERVATION_ASK);
            EXPECT_EQ(IsChecked(page, IDC_RESERVATION_ASK), checked);
            EXPECT_EQ(nChangeMsg, checked ? 1 : 0);
            EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, "Lumivane2", "nChangeMsg"), checked ? 1u : 0u);
        }
    }
}
