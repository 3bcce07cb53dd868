// The network page in the panel: ports, names, log.
#include "panel/network_page.h"
#include "panel/resources/resource.h"
#include "server/server_state.h"
#include "settings/registry.h"
#include "support/panel_session.h"

namespace {

class NetworkPageTest : public PanelTest {
protected:
    void SetUp() override
    {
        PutText(HKEY_CURRENT_USER, "Lumivane2", "LocalGroupName", "sales");
        g_szGroupName[0] = '\0';
        ASSERT_TRUE(Open());
        ASSERT_TRUE(Comes([] { return !strcmp(g_szGroupName, "sales"); })) << "read by the listener when it begins";
    }

    // Chooses the page anew, with a permission to change the names or without that setting. Result: its window.
    HWND Reopen(std::optional<DWORD> allowed = {})
    {
        if (allowed)
            PutDword(HKEY_CURRENT_USER, "Lumivane2", "EnableChangeName", *allowed);
        Choose(TREE_ROOT);
        Choose(TREE_NETWORK);
        return Page(TREE_NETWORK);
    }
};

Lines Ports(HWND page)
{
    return {TextOf(page, IDC_NETWORK_UDP_PORT), TextOf(page, IDC_NETWORK_TCP_PORT)};
}

std::string EnabledControls(HWND page)
{
    std::string enabled;
    for (int control = IDC_NETWORK_UDP_PORT; control <= IDC_NETWORK_APPLY; ++control)
        if (control != IDC_NETWORK_LOG && GetDlgItem(page, control) && IsEnabled(page, control))
            enabled += std::to_string(control) + " ";
    return enabled;
}

} // namespace

TEST_F(NetworkPageTest, PortsAreTakenOverByTheStart)
{
    const struct {
        const char *udp, *tcp;
        Lines shown;
        Lines kept; // shown by a new page
    } cases[] = {
        {"9800", "65535", {"9800", "65535"}, {"9800", "65535"}},
        {"0", "0", {"0", "0"}, {"0", "0"}},
        {"65536", "9800", {"9700", "9800"}, {"9700", "9700"}},
        {"9800", "65536", {"9800", "9700"}, {"9800", "9700"}}, // the first one stays
        {"4294977096", "9800", {"9700", "9800"}, {"9700", "9700"}},
        {"abc", "9800", {"9700", "9800"}, {"9700", "9700"}},
        {"9800", "", {"9800", "9700"}, {"9800", "9700"}},
    };
    const std::string refusal = Sjis("x OK owned: ポート番号が無効です。\n再入力してください。");
    strcpy(g_szServerAddr, "192.168.100.200");
    BoxAnswerer answerer("Lumivane 2", IDOK);
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.udp) + ", " + c.tcp);
        const bool started = c.shown == Lines{c.udp, c.tcp};
        const HWND page = Reopen();
        Click(page, IDC_NETWORK_DEFAULTS);
        EXPECT_EQ(Ports(page), (Lines{"9700", "9700"}));
        Type(page, IDC_NETWORK_UDP_PORT, c.udp);
        Type(page, IDC_NETWORK_TCP_PORT, c.tcp);
        Click(page, IDC_NETWORK_START);
        EXPECT_EQ(Ports(page), c.shown);
        EXPECT_EQ(EnabledControls(page), started ? "1008 " : "1005 1006 1007 1009 ");
        EXPECT_EQ(TextOf(page, IDC_NETWORK_LOG), started ? "Server IP Address : 192.168.100.200" : "");
        EXPECT_EQ(answerer.TakeBoxes(), started ? Lines{} : Lines{refusal});
        if (started) {
            GUITHREADINFO info = {};
            info.cbSize = sizeof info;
            GetGUIThreadInfo(GetWindowThreadProcessId(page, nullptr), &info);
            EXPECT_EQ(info.hwndFocus, GetDlgItem(page, IDC_NETWORK_STOP)) << "the start button is disabled";
        }
        EXPECT_EQ(Ports(Reopen()), c.kept);
        Click(Page(TREE_NETWORK), IDC_NETWORK_STOP);
        EXPECT_EQ(EnabledControls(Page(TREE_NETWORK)), "1005 1006 1007 1009 ");
    }
}

TEST_F(NetworkPageTest, NamesAreChangedOnce)
{
    EXPECT_EQ(EnabledControls(Reopen()), "1005 1006 1007 1009 ");
    EXPECT_EQ(EnabledControls(Reopen(0)), "1005 1006 1007 1009 ");
    const std::string most(61, 'n');
    std::string trails, trailsCut; // of two bytes each, the second a backslash
    for (; trails.size() < 32 * strlen("ソ"); trails += "ソ")
        trailsCut = trails;
    const struct {
        std::string typed, kept;
    } cases[] = {{"", ""},
                 {"佐藤", "佐藤"},
                 {most + "nn", most + "nn"},
                 {most + "nnn", most + "nn"},
                 {most + "あ", most + "あ"},
                 {most + "nあ", most + "n"}, // half of it would fit
                 {trails, trailsCut},
                 {most + most + most, most + "nn"}};
    const std::string key = std::string(g_szRegKeyTable[REGBASE_HOST]) + "\\Lumivane2";
    for (const auto &c : cases) {
        SCOPED_TRACE(c.typed);
        const HWND page = Reopen(1);
        EXPECT_EQ(EnabledControls(page), "1005 1006 1007 1009 1014 1015 1016 ");
        Type(page, IDC_NETWORK_USER_NAME, c.typed);
        BoxAnswerer answerer("Lumivane 2", IDYES);
        Click(page, IDC_NETWORK_APPLY);
        EXPECT_EQ(EnabledControls(page), "1005 1006 1007 1009 ");
        EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, "Lumivane2", "EnableChangeName"), 0u);
        std::string stored = Sjis(c.kept);
        stored.resize(64);
        EXPECT_EQ(BytesAt(HKEY_CURRENT_USER, key.c_str(), "LocalUserName"), stored);
        EXPECT_EQ(std::string(g_szUserName, 64), stored);
        const auto replies = host.Replies();
        ASSERT_FALSE(replies.empty());
        EXPECT_EQ(replies.back().dst.wID, 0xFFFF);
        EXPECT_EQ(std::string(replies.back().payload.begin(), replies.back().payload.begin() + 64), stored);
    }
}

TEST_F(NetworkPageTest, WithoutAYesTheNamesStay)
{
    const auto before = TextAt(HKEY_CURRENT_USER, "Lumivane2", "LocalUserName");
    const HWND page = Reopen(1);
    Type(page, IDC_NETWORK_USER_NAME, "suzuki");
    Type(page, IDC_NETWORK_GROUP_NAME, "");
    {
        BoxAnswerer answerer("Lumivane 2", IDNO);
        Click(page, IDC_NETWORK_APPLY);
        EXPECT_EQ(answerer.Boxes(), Lines{Sjis("- YES NO owned: 設定を反映しますか?\n"
                                               "OKを押すと、管理者の許可をもらうまで再度変更することはできません。")});
    }
    EXPECT_EQ(TextOf(page, IDC_NETWORK_USER_NAME), before);
    EXPECT_EQ(TextOf(page, IDC_NETWORK_GROUP_NAME), "sales");

    Type(page, IDC_NETWORK_USER_NAME, "suzuki");
    BoxAnswerer looker("Lumivane 2", 0); // presses nothing
    PostMessageA(page, WM_COMMAND, IDC_NETWORK_APPLY, 0);
    ASSERT_TRUE(looker.WaitForBoxes(1));
    EXPECT_EQ(Stop(), 1) << "ends the question";
    EXPECT_EQ(TextAt(HKEY_CURRENT_USER, "Lumivane2", "LocalUserName"), before);
    EXPECT_EQ(g_hNetworkPage, nullptr);
}

TEST_F(NetworkPageTest, TheLogIsUncoveredAndCovered)
{
    for (const bool byTree : {false, true}) {
        Choose(TREE_ROOT);
        Choose(byTree ? TREE_COMM_LOG : TREE_NETWORK);
        const HWND page = Page(TREE_NETWORK);
        for (const bool open : {!byTree, byTree}) {
            Click(page, IDC_NETWORK_TOGGLE);
            EXPECT_EQ(Widening(), open ? 328 : 160);
            EXPECT_EQ(IsChecked(page, IDC_NETWORK_TOGGLE), open);
            EXPECT_EQ(TextOf(page, IDC_NETWORK_TOGGLE), open ? "通信ログ画面を閉じる" : "通信ログ画面を開く");
        }
    }
}
