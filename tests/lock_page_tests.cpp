// The button lock page.
#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "support/launcher_session.h"

namespace {

const char usable[] = "有効";
const char locked[] = "無効";

// By their numbers, button 1 first.
const struct {
    int toggle, label;
    LONG bit;
} s_Buttons[] = {{1162, 1165, 1}, {1148, 1166, 2},  {1154, 1167, 4},
                 {1163, 1168, 8}, {1164, 1169, 16}, {1180, 1181, 128}};

class LockPageTest : public LauncherPagesTest {
protected:
    HWND OpenLock()
    {
        if (!Panel())
            OpenPanel();
        return OpenPage(TREE_BUTTON_LOCK);
    }

    void SetMask(std::optional<LONG> mask)
    {
        const auto lock = host.Lock();
        host.monitors[0].features.erase(VCP_BUTTON_LOCK);
        if (mask)
            host.monitors[0].features[VCP_BUTTON_LOCK] = {*mask, 255};
    }
};

} // namespace

TEST_F(LockPageTest, EveryButton)
{
    const HWND page = OpenLock();
    for (int button = 1; button <= 6; ++button) {
        SCOPED_TRACE(button);
        const auto &c = s_Buttons[button - 1];
        const std::string mode = "Launcher_0_Enable_" + std::to_string(button);
        SetMask(0);
        host.TakeLog();
        EXPECT_EQ(TextOf(page, c.toggle), usable);
        Click(page, c.toggle);
        EXPECT_EQ(TextOf(page, c.toggle), locked);
        EXPECT_EQ(Number(mode), 1u);
        Click(page, c.toggle);
        EXPECT_EQ(TextOf(page, c.toggle), usable);
        EXPECT_EQ(Number(mode), 0u);
        EXPECT_EQ(host.TakeLog(),
                  (Lines{"get 0 F2", "set 0 F2 = " + std::to_string(c.bit), "get 0 F2", "set 0 F2 = 0"}));
    }
}

// One click on button 2: what is shown, stored and written, from each state of mode and mask.
TEST_F(LockPageTest, ClickFromEachState)
{
    const struct {
        DWORD mode;
        std::optional<LONG> mask;
        const char *before, *after;
        DWORD modeAfter;
        LONG written;
    } cases[] = {
        {0, 0, usable, locked, 1, 2},       {0, 255, usable, locked, 1, 255},   {1, 2, locked, usable, 0, 0},
        {1, 131, locked, usable, 0, 129},   {1, 0, locked, usable, 0, 2}, // the monitor lost the bit, and gets it back
        {2, 2, locked, usable, 0, 0},                                     // a launcher button
        {7, 2, locked, usable, 0, 0},       {0, {}, usable, locked, 1, 0xFFFF}, // a mask that cannot be read
        {1, {}, locked, usable, 0, 0xFFFD},
    };
    OpenPanel();
    Put("dwLTimer", DWORD{1});
    Put("PowerSwitch_0", DWORD{1});
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.mode << " " << c.mask.value_or(-1));
        SetMask(0);
        Put("Launcher_0_Enable_2", c.mode);
        const HWND page = OpenLock();
        SetMask(c.mask);
        EXPECT_EQ(TextOf(page, 1148), c.before);
        Click(page, 1148);
        EXPECT_EQ(TextOf(page, 1148), c.after);
        EXPECT_EQ(Number("Launcher_0_Enable_2"), c.modeAfter);
        EXPECT_EQ(host.TakeLog(), (Lines{"get 0 F2", "set 0 F2 = " + std::to_string(c.written)}));
    }
    EXPECT_EQ(Number("dwLTimer"), 1u) << "not this page's affair";
    EXPECT_EQ(Number("PowerSwitch_0"), 1u) << "not this page's affair";
}

TEST_F(LockPageTest, LabelsAreThoseOfTheModel)
{
    IniFolder::Write("Launcher.ini", Sjis("[NRV-PA1]\r\nbutton1=A&B\r\nbutton2=\r\nbutton4=1234567890電源電源\r\n"
                                          "button6=12345678901234567890\r\n"));
    OpenPanel();
    Put("Launcher_0_Enable_3", DWORD{2}); // of a button that the model has not
    const HWND page = OpenLock();
    const Lines expected = {"A&B", "", "", "1234567890電源", "", "123456789012345"};
    for (size_t n = 0; n < expected.size(); ++n) {
        EXPECT_EQ(TextOf(page, s_Buttons[n].label), expected[n]);
        EXPECT_EQ(TextOf(page, s_Buttons[n].toggle), expected[n].empty() ? "" : usable);
        EXPECT_EQ(IsEnabled(page, s_Buttons[n].toggle), !expected[n].empty());
    }
    EXPECT_EQ(TipOf(page, 1180), "12345678901234567890ボタンの操作を、有効・無効にします。");
}

TEST_F(LockPageTest, MasksOfAllMonitorsAreSavedWithItsEnd)
{
    const HWND page = OpenLock();
    host.monitors[1].features[VCP_BUTTON_LOCK] = {64, 255};
    Click(page, 1180);
    EXPECT_EQ(Number("ButtonLockStatus_0"), std::nullopt);
    Close();
    EXPECT_EQ(Number("ButtonLockStatus_0"), 128u);
    EXPECT_EQ(Number("ButtonLockStatus_1"), 64u);
}
