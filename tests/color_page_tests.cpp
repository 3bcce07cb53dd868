// The colour page: what it shows, direct changes, profiles and its switches.
#include "panel/color_page_controls.h"

#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "profiles/profile_store.h"
#include "support/panel_session.h"

#include <commctrl.h>

#include <span>

namespace {

const struct {
    const char *code;
    int slider;
    int edit;
    WORD COLORSETTING::*value;
    LONG opened; // value and maximum as the page opens
    LONG maximum;
} s_Items[] = {
    {"10", IDC_COLOR_BRIGHTNESS_SLIDER, IDC_COLOR_BRIGHTNESS_EDIT, &COLORSETTING::wBright, 60, 90},
    {"12", IDC_COLOR_CONTRAST_SLIDER, IDC_COLOR_CONTRAST_EDIT, &COLORSETTING::wContrast, 70, 91},
    {"16", IDC_COLOR_RED_SLIDER, IDC_COLOR_RED_EDIT, &COLORSETTING::wRed, 81, 92},
    {"18", IDC_COLOR_GREEN_SLIDER, IDC_COLOR_GREEN_EDIT, &COLORSETTING::wGreen, 82, 93},
    {"1A", IDC_COLOR_BLUE_SLIDER, IDC_COLOR_BLUE_EDIT, &COLORSETTING::wBlue, 83, 94},
};

const struct {
    int normal, grey;
    bool gain;
} s_Labels[] = {{IDC_COLOR_CONTRAST_LABEL, IDC_COLOR_CONTRAST_LABEL_GREY, false},
                {IDC_COLOR_TEMP_LABEL, IDC_COLOR_TEMP_LABEL_GREY, false},
                {IDC_COLOR_RED_LABEL, IDC_COLOR_RED_LABEL_GREY, true},
                {IDC_COLOR_GREEN_LABEL, IDC_COLOR_GREEN_LABEL_GREY, true},
                {IDC_COLOR_BLUE_LABEL, IDC_COLOR_BLUE_LABEL_GREY, true}};

const std::string gainsRead = "get 1 16|get 1 18|get 1 1A|";

// The page is that of the second monitor, with ECO off and preset 5. The first one differs from it in everything.
class ColorPageTest : public PanelTest {
protected:
    ColorPageTest()
    {
        SkipPauses(true);
        host.monitors[0].capabilities = "(vcp(10 12 14(02 0B) 16 18 1A E0 F2))";
        host.monitors[0].features[VCP_ECO_MODE] = {1, 1};
        host.monitors[0].features[VCP_COLOR_PRESET] = {2, 11};
        const BYTE codes[] = {VCP_BRIGHTNESS, VCP_CONTRAST, VCP_RED_GAIN, VCP_GREEN_GAIN, VCP_BLUE_GAIN};
        for (size_t i = 0; i < std::size(s_Items); ++i) {
            host.monitors[0].features[codes[i]] = {s_Items[i].opened - 40, s_Items[i].maximum - 20};
            host.monitors[1].features[codes[i]] = {s_Items[i].opened, s_Items[i].maximum};
        }
    }

    void OpenPage()
    {
        if (!Panel()) {
            ASSERT_TRUE(Open());
            ChooseMonitor(1);
        }
        Choose(TREE_ROOT);
        Requests();
        Choose(TREE_COLOR);
        page = Page(TREE_COLOR);
        ASSERT_NE(page, nullptr);
        EXPECT_EQ(Requests(), "get 1 E0|get 1 10|get 1 12|get 1 14|" + gainsRead);
    }

    LRESULT Ask(int control, UINT message, WPARAM wParam = 0) const
    {
        return SendDlgItemMessageA(page, control, message, wParam, 0);
    }
    LRESULT EcoImage() const { return Ask(IDC_COLOR_ECO, BM_GETIMAGE, IMAGE_BITMAP); }
    int ChosenProfile() const { return SelectionOf(page, IDC_COLOR_PROFILE_COMBO); }
    // As if it had been applied, to see whether the choice is reset.
    void PresetProfile(int position) const
    {
        Ask(IDC_COLOR_PROFILE_COMBO, CB_SETCURSEL, static_cast<WPARAM>(position));
    }

    // Which controls can be used, and which labels are greyed.
    void ExpectUse(bool usable, bool gains) const
    {
        for (const int control :
             {IDC_COLOR_ALL_MONITORS, IDC_COLOR_APP_LIST, IDC_COLOR_ALIAS, IDC_COLOR_BROWSE, IDC_COLOR_APP_UPDATE,
              IDC_COLOR_APP_DELETE, IDC_COLOR_ECO, IDC_COLOR_TEMP, IDC_COLOR_PROFILE_COMBO, IDC_COLOR_PROFILE_ADD,
              IDC_COLOR_PROFILE_DELETE, IDC_COLOR_APP_GROUP, IDC_COLOR_GROUP, IDC_COLOR_PROFILE_GROUP})
            EXPECT_EQ(IsEnabled(page, control), usable) << control;
        for (const auto &item : s_Items)
            for (const int control : {item.slider, item.edit})
                EXPECT_EQ(IsEnabled(page, control), &item < s_Items + 2 ? usable : gains) << control;
        for (const auto &label : s_Labels) {
            EXPECT_EQ(IsShown(page, label.normal), label.gain ? gains : usable) << label.normal;
            EXPECT_NE(IsShown(page, label.grey), IsShown(page, label.normal));
        }
        EXPECT_EQ(IsEnabled(page, IDC_COLOR_DIRECT_LINK), g_nAppProfile != 0);
        EXPECT_TRUE(IsEnabled(page, IDC_COLOR_TOGGLE));
    }

    HWND page = nullptr;
};

} // namespace

TEST_F(ColorPageTest, OpensWithTheMonitorsSettings)
{
    const struct {
        LONG eco, preset;
        const char *ecoText;
        int selected;
    } cases[] = {{0, 5, "輝度", 1}, {1, 11, "輝度 ECO", 3}, {7, 12, "輝度 ECO", -1}, {0, 8, "輝度", 2}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.preset);
        host.monitors[1].features[VCP_ECO_MODE].current = c.eco;
        host.monitors[1].features[VCP_COLOR_PRESET].current = c.preset;
        OpenPage();
        for (const auto &item : s_Items) {
            EXPECT_EQ(TextOf(page, item.edit), std::to_string(item.opened));
            EXPECT_EQ(Ask(item.slider, TBM_GETPOS), item.opened);
            EXPECT_EQ(Ask(item.slider, TBM_GETRANGEMAX), item.maximum);
        }
        EXPECT_EQ(TextOf(page, IDC_COLOR_ECO), c.ecoText);
        EXPECT_EQ(IsChecked(page, IDC_COLOR_ECO), c.eco != 0);
        EXPECT_EQ(EntriesOf(page, IDC_COLOR_TEMP), (Lines{"sRGB", "6500K", "9300K", "ユーザー"}));
        EXPECT_EQ(SelectionOf(page, IDC_COLOR_TEMP), c.selected);
        EXPECT_EQ(ChosenProfile(), 0);
        ExpectUse(true, c.preset >= 11);
        EXPECT_EQ(memcmp(&g_DefSetting[1], &g_CurSetting[1], sizeof g_DefSetting[1]), 0);
        EXPECT_EQ(g_DefSetting[1].wColorTemp, c.preset);
    }
    // The list shrinks, and the map keeps what stood behind its new end.
    g_Monitor[1].bColorPreset[8] = g_Monitor[1].bColorPreset[11] = 0;
    OpenPage();
    EXPECT_EQ(SelectionOf(page, IDC_COLOR_TEMP), -1);
    EXPECT_EQ(GetColorTempPos(1, 8), 2);
    EXPECT_EQ(GetColorTempPos(1, 12), COLOR_TEMP_NOT_FOUND);
    EXPECT_EQ(GetColorTempPos(MAX_MONITOR, 5), COLOR_TEMP_NOT_FOUND);
    // A monitor that answers nothing.
    host.monitors[1].features.clear();
    OpenPage();
    EXPECT_EQ(TextOf(page, IDC_COLOR_CONTRAST_EDIT), "65535");
    ExpectUse(true, false);
}

TEST_F(ColorPageTest, SlidersAndEdits)
{
    host.monitors[1].features[VCP_COLOR_PRESET].current = 11;
    OpenPage();
    for (const bool all : {false, true})
        for (const auto &item : s_Items) {
            SCOPED_TRACE(item.code + std::string(all ? " all" : ""));
            g_bAllMonitors = all;
            const auto expectWritten = [&](LONG value) {
                const std::string write = item.code + (" = " + std::to_string(value)) + "|";
                EXPECT_EQ(Requests(), (all ? "set 0 " + write : "") + "set 1 " + write);
                EXPECT_EQ(g_CurSetting[1].*item.value, value);
                EXPECT_EQ(ChosenProfile(), 0);
                PresetProfile(2);
            };
            PresetProfile(2);
            Slide(page, item.slider, 33);
            expectWritten(33);
            EXPECT_EQ(TextOf(page, item.edit), "33");
            SendMessageA(page, WM_HSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(GetDlgItem(page, item.slider)));
            EXPECT_EQ(Requests(), "") << "nothing new";
            const struct {
                const char *typed;
                WORD value;
                LONG position; // of the slider
            } cases[] = {{"34", 34, 34},
                         {"300", 300, item.maximum}, // as typed
                         {"", 0, 0},
                         // The rest is alike for all items.
                         {"70000", 70000 - 65536, item.maximum},
                         {"4000000000", 4000000000 % 65536, item.maximum},
                         {"abc", 0, 0}};
            for (const auto &c : std::span(cases, all || &item != s_Items ? 3 : std::size(cases))) {
                Type(page, item.edit, c.typed);
                expectWritten(c.value);
                EXPECT_EQ(Ask(item.slider, TBM_GETPOS), c.position) << c.typed;
            }
        }
    EXPECT_EQ(g_CurSetting[0].wContrast, 30) << "all are written, the selected one alone is kept";
    for (const HWND other : {page, static_cast<HWND>(nullptr)})
        SendMessageA(page, WM_HSCROLL, TB_ENDTRACK, reinterpret_cast<LPARAM>(other));
    EXPECT_EQ(Requests(), "") << "no slider of ours";
}

// What depends on a change is read back from the monitor, once it has settled.
TEST_F(ColorPageTest, EcoModeAndColorTemperature)
{
    OpenPage();
    const LRESULT ecoOff = EcoImage();
    for (const bool all : {false, true}) {
        g_bAllMonitors = all;
        const auto expectWritten = [&](const std::string &write, const std::string &reads) {
            EXPECT_EQ(Requests(), (all ? "set 0 " + write : "") + "set 1 " + write + reads);
            EXPECT_EQ(TakeRecordedCalls(), Lines{"Sleep 200"});
            EXPECT_EQ(ChosenProfile(), 0);
        };
        TakeRecordedCalls();
        for (const int eco : {1, 0}) {
            WORD *brightness = eco ? &g_CurSetting[1].wBrightEco : &g_CurSetting[1].wBright;
            host.monitors[1].features[VCP_BRIGHTNESS] = {40 + eco, 50 + eco};
            PresetProfile(1);
            Click(page, IDC_COLOR_ECO);
            expectWritten("E0 = " + std::to_string(eco) + "|", "get 1 10|");
            EXPECT_EQ(g_CurSetting[1].dwEco, static_cast<DWORD>(eco));
            EXPECT_EQ(*brightness, 40 + eco);
            EXPECT_EQ(TextOf(page, IDC_COLOR_ECO), eco ? "輝度 ECO" : "輝度");
            EXPECT_EQ(IsChecked(page, IDC_COLOR_ECO), eco == 1);
            EXPECT_EQ(EcoImage() != ecoOff, eco == 1);
            EXPECT_EQ(TextOf(page, IDC_COLOR_BRIGHTNESS_EDIT), std::to_string(40 + eco));
            EXPECT_EQ(Ask(IDC_COLOR_BRIGHTNESS_SLIDER, TBM_GETRANGEMAX), 50 + eco);
            Slide(page, IDC_COLOR_BRIGHTNESS_SLIDER, 7 + eco);
            EXPECT_EQ(*brightness, 7 + eco);
            Requests();
        }
        EXPECT_EQ(g_CurSetting[1].wBrightEco, 8) << "kept while ECO is off";

        g_CurSetting[1].wColorTemp = 5;
        const struct {
            int position;
            int preset; // 0: nothing happens
        } cases[] = {{1, 0}, {3, 11}, {3, 0}, {2, 8}, {-1, 0}, {3, 11}};
        for (const auto &c : cases) {
            SCOPED_TRACE(c.position);
            host.monitors[1].features[VCP_GREEN_GAIN] = {c.preset, 100 + c.preset};
            PresetProfile(1);
            Pick(page, IDC_COLOR_TEMP, c.position);
            if (!c.preset) {
                EXPECT_EQ(Requests(), "");
                EXPECT_EQ(ChosenProfile(), 1);
                continue;
            }
            expectWritten("14 = " + std::to_string(c.preset) + "|", gainsRead);
            EXPECT_EQ(g_CurSetting[1].wColorTemp, c.preset);
            EXPECT_EQ(g_CurSetting[1].wGreen, c.preset);
            EXPECT_EQ(TextOf(page, IDC_COLOR_GREEN_EDIT), std::to_string(c.preset));
            EXPECT_EQ(Ask(IDC_COLOR_GREEN_SLIDER, TBM_GETRANGEMAX), 100 + c.preset);
            ExpectUse(true, c.preset >= 11);
        }
    }
    g_bAllMonitors = 0;
    host.plan = [](const TestRequest &) { // another monitor is chosen meanwhile
        g_nCurMonitor = 0;
        return Answer{};
    };
    Pick(page, IDC_COLOR_TEMP, 2);
    EXPECT_EQ(Requests(), "set 1 14 = 8|" + gainsRead);
}

TEST_F(ColorPageTest, AppliesAProfileToTheSelectedMonitorOnly)
{
    OpenPage();
    g_bAllMonitors = 1;
    const LRESULT ecoOff = EcoImage();
    Pick(page, IDC_COLOR_PROFILE_COMBO, 4);
    EXPECT_EQ(Requests(), "set 1 E0 = 1|get 1 10|set 1 10 = 80|set 1 12 = 70|set 1 14 = 2|" + gainsRead);
    EXPECT_EQ(ChosenProfile(), 4) << "stays chosen";
    EXPECT_EQ(g_CurSetting[1].wBrightEco, 80);
    EXPECT_EQ(g_nMaxBrightEco[1], 90);
    EXPECT_EQ(TextOf(page, IDC_COLOR_BRIGHTNESS_EDIT), "80");
    EXPECT_TRUE(IsChecked(page, IDC_COLOR_ECO));
    EXPECT_NE(EcoImage(), ecoOff);
    EXPECT_EQ(SelectionOf(page, IDC_COLOR_TEMP), -1) << "7200K is not offered";
    ExpectUse(true, false);
    Pick(page, IDC_COLOR_PROFILE_COMBO, 0);
    EXPECT_EQ(Requests(), "") << "none";

    g_SysProfile[1] = {"", 0, 21, 22, 23, 11, 24, 25, 26, "", ""};
    Pick(page, IDC_COLOR_PROFILE_COMBO, 2);
    EXPECT_EQ(Requests(), "set 1 E0 = 0|get 1 10|set 1 10 = 22|set 1 12 = 21|set 1 14 = 11|"
                          "set 1 16 = 24|set 1 18 = 25|set 1 1A = 26|");
    EXPECT_EQ(EcoImage(), ecoOff);
    EXPECT_EQ(SelectionOf(page, IDC_COLOR_TEMP), 3);
    EXPECT_EQ(TextOf(page, IDC_COLOR_BLUE_EDIT), "26");
    ExpectUse(true, true);
    Slide(page, IDC_COLOR_CONTRAST_SLIDER, 20);
    EXPECT_EQ(ChosenProfile(), 0) << "a change by the user ends the choice";
}

TEST_F(ColorPageTest, RegistersAndDeletesProfiles)
{
    OpenPage();
    BoxAnswerer errors("Error", IDOK), refusals("Lumivane 2", IDOK);
    for (const int position : {-1, 0, 4}) {
        PresetProfile(position);
        Click(page, IDC_COLOR_PROFILE_DELETE);
    }
    EXPECT_EQ(refusals.Boxes(), Lines(3, Sjis("x OK owned: システムプロファイルは削除できません。")));

    for (int slot = 4; slot < 16; ++slot) {
        g_CurSetting[1].wContrast = static_cast<WORD>(slot);
        Click(page, IDC_COLOR_PROFILE_ADD);
        EXPECT_EQ(EntriesOf(page, IDC_COLOR_PROFILE_COMBO).back(), "設定" + std::to_string(slot));
        EXPECT_EQ(ChosenProfile(), slot) << "the entry before it";
    }
    EXPECT_EQ(Requests(), "") << "none is applied";
    EXPECT_EQ(errors.Boxes(), Lines{});
    Click(page, IDC_COLOR_PROFILE_ADD);
    EXPECT_EQ(errors.Boxes(), Lines{Sjis("x OK owned: これ以上プロファイルは登録できません。")});
    EXPECT_EQ(g_nSysProfile, 16);

    PresetProfile(8);
    Click(page, IDC_COLOR_PROFILE_DELETE);
    EXPECT_EQ(ChosenProfile(), 7);
    EXPECT_EQ(g_nSysProfile, 15);
    Pick(page, IDC_COLOR_PROFILE_COMBO, 8);
    EXPECT_EQ(g_CurSetting[1].wContrast, 8) << "the position is no longer the slot's";
    Click(page, IDC_COLOR_PROFILE_ADD);
    const Lines entries = EntriesOf(page, IDC_COLOR_PROFILE_COMBO);
    EXPECT_EQ(entries[8], "設定7") << "the free one again";
    OpenPage();
    EXPECT_EQ(EntriesOf(page, IDC_COLOR_PROFILE_COMBO), entries) << "the file has them all";
}

TEST_F(ColorPageTest, DirectLink)
{
    IniFolder::Write("profile.ini", "[User3]\r\nname=C:\\a.exe\r\n");
    host.monitors[1].features[VCP_COLOR_PRESET].current = 11;
    OpenPage();
    ExpectUse(true, true);
    Ask(IDC_COLOR_APP_LIST, LB_SETCURSEL, 0);
    Click(page, IDC_COLOR_DIRECT_LINK);
    KillTimer(g_hKernelWnd, TIMER_FOREGROUND); // or the program in front would be looked at, and set, between two lines
    EXPECT_EQ(Requests(), "directlink 1 = 1|");
    EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, "Lumivane2", "DirectLink"), 1u);
    EXPECT_EQ(SelectionOf(page, IDC_COLOR_APP_LIST), -1);
    SetContrastItem(page, 12);
    SetBrightnessItem(page, true, 12);
    ShowRgbControls(page, true);
    EXPECT_EQ(TextOf(page, IDC_COLOR_CONTRAST_EDIT), "70");
    EXPECT_EQ(TextOf(page, IDC_COLOR_ECO), "輝度");
    ExpectUse(false, false);
    DropFiles(page, IDC_COLOR_APP_LIST, {"C:\\windows\\notepad.exe"});
    EXPECT_EQ(g_nAppProfile, 1) << "nor by a drop";

    host.monitors[1].features[VCP_ECO_MODE].current = 1;
    OpenPage();
    ExpectUse(false, false);
    EXPECT_TRUE(IsChecked(page, IDC_COLOR_DIRECT_LINK));
    EXPECT_EQ(TextOf(page, IDC_COLOR_CONTRAST_EDIT), "");
    g_CurSetting[1].wContrast = 1;
    const LRESULT ecoOff = EcoImage();
    Click(page, IDC_COLOR_DIRECT_LINK);
    EXPECT_TRUE(IsChecked(page, IDC_COLOR_ECO));
    EXPECT_NE(EcoImage(), ecoOff) << "the picture goes with the check";
    EXPECT_EQ(Requests(), "set 1 E0 = 1|set 1 10 = 60|set 1 12 = 70|set 1 14 = 11|"
                          "set 1 16 = 81|set 1 18 = 82|set 1 1A = 83|directlink 1 = 0|");
    EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, "Lumivane2", "DirectLink"), 0u);
    EXPECT_EQ(g_CurSetting[1].wContrast, 70);
    EXPECT_EQ(TextOf(page, IDC_COLOR_CONTRAST_EDIT), "70");
    EXPECT_EQ(TextOf(page, IDC_COLOR_BLUE_EDIT), "83");
    ExpectUse(true, true);

    const LRESULT one = Ask(IDC_COLOR_ALL_MONITORS, BM_GETIMAGE, IMAGE_BITMAP);
    Click(page, IDC_COLOR_ALL_MONITORS);
    EXPECT_EQ(g_bAllMonitors, 1);
    EXPECT_NE(Ask(IDC_COLOR_ALL_MONITORS, BM_GETIMAGE, IMAGE_BITMAP), one);
    Click(page, IDC_COLOR_DIRECT_LINK);
    EXPECT_EQ(Requests(), "directlink -1 = 1|");
    OpenPage();
    EXPECT_FALSE(IsChecked(page, IDC_COLOR_ALL_MONITORS)) << "the mode stays, the button forgets";
    EXPECT_EQ(Ask(IDC_COLOR_ALL_MONITORS, BM_GETIMAGE, IMAGE_BITMAP), one);
    EXPECT_EQ(g_bAllMonitors, 1);
}

TEST_F(ColorPageTest, ToggleOfTheSecondHalf)
{
    OpenPage();
    Choose(TREE_APPLICATIONS);
    page = Page(TREE_COLOR);
    // The edge of the panel lies behind the first group and before the second, or behind both.
    const auto place = [&](int group) {
        RECT rect, client;
        GetWindowRect(GetDlgItem(page, group), &rect);
        MapWindowPoints(nullptr, Panel(), reinterpret_cast<POINT *>(&rect), 2);
        GetClientRect(Panel(), &client);
        return std::pair(rect.left < client.right, rect.right <= client.right);
    };
    for (const bool open : {false, true, false, true}) {
        EXPECT_EQ(Widening(), open ? 344 : 200);
        EXPECT_EQ(place(IDC_COLOR_APP_GROUP), std::pair(true, true));
        EXPECT_EQ(place(IDC_COLOR_GROUP), std::pair(open, open));
        EXPECT_EQ(IsReachedByTab(Panel(), GetDlgItem(page, IDC_COLOR_BRIGHTNESS_EDIT)), open);
        EXPECT_EQ(IsChecked(page, IDC_COLOR_TOGGLE), open);
        EXPECT_EQ(TextOf(page, IDC_COLOR_TOGGLE), open ? "色設定画面を閉じる" : "色設定画面を開く");
        Click(page, IDC_COLOR_TOGGLE);
    }
}
