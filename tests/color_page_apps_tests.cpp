// The colour page's registered applications.
#include "panel/color_page_apps.h"

#include "monitor/color_features.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "profiles/foreground.h"
#include "profiles/profile_store.h"
#include "support/panel_session.h"
#include "support/shortcut.h"

#include <commctrl.h>

namespace {

// Two applications in slots 0 and 5: ECO on with preset 11, and ECO off with preset 5.
class ColorPageAppsTest : public PanelTest {
protected:
    ColorPageAppsTest()
    {
        IniFolder::Write("profile.ini",
                         Sjis("[User0]\r\nname=C:\\表\\one.exe\r\nalias=一番\r\necomode=1\r\ncontrast=71\r\n"
                              "brightness=1\r\necobrightness=80\r\ncolortemp=11\r\nred=72\r\ngreen=88\r\n"
                              "blue=100\r\n"
                              "[User5]\r\nname=C:\\two.exe\r\nalias=C:\\two.exe\r\necomode=0\r\n"
                              "contrast=41\r\nbrightness=42\r\necobrightness=43\r\ncolortemp=5\r\n"));
    }

    void OpenPage()
    {
        ASSERT_TRUE(Open());
        Choose(TREE_APPLICATIONS);
        page = Page(TREE_COLOR);
        ASSERT_NE(page, nullptr);
        host.TakeLog();
    }

    Lines Apps() const { return EntriesOf(page, IDC_COLOR_APP_LIST); }
    std::string Alias() const { return TextOf(page, IDC_COLOR_ALIAS); }

    HWND page = nullptr;
};

// The section of a slot as it stands in the file, with "|" for line ends.
std::string Stored(int slot)
{
    char lines[1024] = "";
    const DWORD size = GetPrivateProfileSectionA(("User" + std::to_string(slot)).c_str(), lines, sizeof lines,
                                                 IniFolder::Path("profile.ini").c_str());
    std::string text(lines, size);
    for (char &c : text)
        c = c == '\0' ? '|' : c;
    return text;
}

std::string Error(const char *text)
{
    return Sjis("x OK owned: " + std::string(text));
}

const std::string full = Error("これ以上登録できません。"), registered = Error("すでに登録されています。"),
                  tooLong = Error("ファイル名が長すぎます。"),
                  noProgram = Error("実行形式のファイル以外は登録できません。"),
                  oneOnly = Error("一度にドロップできるファイルは1つだけです。"),
                  dialogFailed = Error("ファイルオープン時にエラーが発生しました。");

} // namespace

TEST_F(ColorPageAppsTest, ChoosingAppliesTheProfile)
{
    host.monitors[0].features[VCP_INPUT_SOURCE].current = INPUT_ANALOG;
    OpenPage();
    EXPECT_EQ(Apps(), (Lines{"one.exe", "two.exe"}));
    EXPECT_TRUE(IsEnabled(page, IDC_COLOR_DIRECT_LINK));
    const std::string one =
        "get 0 60|set 0 E0 = 1|set 0 10 = 80|set 0 12 = 71|set 0 14 = 11|set 0 16 = 72|set 0 18 = 88|"
        "set 0 1A = 100|";
    const auto image = [&] { return SendDlgItemMessageA(page, IDC_COLOR_ECO, BM_GETIMAGE, IMAGE_BITMAP, 0); };
    const LRESULT ecoOff = image();
    PickInList(page, IDC_COLOR_APP_LIST, 0);
    EXPECT_EQ(Requests(), one);
    EXPECT_EQ(Alias(), "一番");
    EXPECT_EQ(g_CurSetting[0].wBrightEco, 80);
    EXPECT_EQ(g_CurSetting[0].wBlue, 100);
    EXPECT_EQ(TextOf(page, IDC_COLOR_ECO), "輝度 ECO");
    EXPECT_EQ(TextOf(page, IDC_COLOR_BRIGHTNESS_EDIT), "80");
    EXPECT_EQ(TextOf(page, IDC_COLOR_CONTRAST_EDIT), "71");
    const LRESULT thumb = SendDlgItemMessageA(page, IDC_COLOR_BRIGHTNESS_SLIDER, TBM_GETPOS, 0, 0);
    EXPECT_EQ(thumb, 80) << "although the maximum of this ECO state was never read";
    EXPECT_EQ(TextOf(page, IDC_COLOR_BLUE_EDIT), "100");
    EXPECT_EQ(SelectionOf(page, IDC_COLOR_TEMP), 3);
    EXPECT_TRUE(IsEnabled(page, IDC_COLOR_RED_SLIDER));
    EXPECT_NE(image(), ecoOff);
    // Any other notification applies it again.
    SendMessageA(page, WM_COMMAND, MAKEWPARAM(IDC_COLOR_APP_LIST, LBN_SETFOCUS), 0);
    EXPECT_EQ(Requests(), one);

    // The input looked at is that of monitor 5, the slot's number: there is none, so nothing stands against it.
    g_bAllMonitors = 1;
    PickInList(page, IDC_COLOR_APP_LIST, 1);
    EXPECT_EQ(Requests(), "get 5 60|set 0 E0 = 0|set 0 10 = 42|set 0 12 = 41|set 0 14 = 5|"
                          "get 5 60|set 1 E0 = 0|set 1 10 = 42|set 1 12 = 41|set 1 14 = 5|");
    EXPECT_EQ(image(), ecoOff);
    EXPECT_FALSE(IsEnabled(page, IDC_COLOR_RED_SLIDER));
    EXPECT_EQ(g_CurSetting[1].wContrast, 0);
    g_bAllMonitors = 0;
    host.monitors[0].features[VCP_INPUT_SOURCE].current = INPUT_TV;
    PickInList(page, IDC_COLOR_APP_LIST, 0);
    EXPECT_EQ(Requests(), "get 0 60|") << "the picture of a TV is left alone";
    PickInList(page, IDC_COLOR_APP_LIST, -1);
    SendDlgItemMessageA(page, IDC_COLOR_APP_LIST, LB_SETITEMDATA, 0, APP_PROFILE_COUNT);
    PickInList(page, IDC_COLOR_APP_LIST, 0);
    EXPECT_EQ(Requests(), "") << "no selection, no slot";
}

TEST_F(ColorPageAppsTest, Browse)
{
    OpenPage();
    BoxAnswerer errors("Error", IDOK);
    TakeRecordedCalls();
    Click(page, IDC_COLOR_BROWSE);
    EXPECT_EQ(LastOwner(), page);
    EXPECT_EQ(TakeRecordedCalls(),
              Lines{Sjis("GetOpenFileName 88|実行形式ファイル(*.exe)/*.exe/|260|実行ファイルの選択|21800")});
    AnswerFileDialog("", 1);
    Click(page, IDC_COLOR_BROWSE);
    AnswerFileDialog("c:\\TWO.exe");
    Click(page, IDC_COLOR_BROWSE);
    AnswerFileDialog(std::string(260, 'x'));
    Click(page, IDC_COLOR_BROWSE);
    EXPECT_EQ(errors.Boxes(), (Lines{dialogFailed, registered, tooLong}));
    EXPECT_EQ(Apps().size(), 2u);

    // A new application begins with the current settings. What was chosen here need not end in ".exe".
    AnswerFileDialog(Sjis("C:\\能力\\new.com"));
    Click(page, IDC_COLOR_BROWSE);
    EXPECT_EQ(Apps(), (Lines{"one.exe", "two.exe", "new.com"}));
    EXPECT_EQ(Alias(), "C:\\能力\\new.com");
    EXPECT_EQ(Stored(1), Sjis("name=C:\\能力\\new.com|alias=C:\\能力\\new.com|ecomode=0|contrast=70|brightness=60|"
                              "ecobrightness=0|colortemp=5|red=81|green=82|blue=83|"));
    const std::string longest = "C:\\" + std::string(256, 'p');
    AnswerFileDialog(longest);
    Click(page, IDC_COLOR_BROWSE);
    EXPECT_EQ(g_AppProfile[2].szName, longest);
    TakeRecordedCalls();
    g_nAppProfile = APP_PROFILE_COUNT;
    Click(page, IDC_COLOR_BROWSE);
    EXPECT_EQ(TakeRecordedCalls(), Lines{});
    EXPECT_EQ(errors.Boxes().back(), full);
    // The page goes away behind the file dialog.
    g_nAppProfile = 4;
    AnswerFileDialog("C:\\late.exe", 0, [&] { Choose(TREE_ROOT); });
    Click(page, IDC_COLOR_BROWSE);
    EXPECT_EQ(Page(TREE_COLOR), nullptr);
    EXPECT_EQ(Stored(3), "");
}

TEST_F(ColorPageAppsTest, Drop)
{
    IniFolder::Write("profile.ini", "");
    OpenPage();
    EXPECT_FALSE(IsEnabled(page, IDC_COLOR_DIRECT_LINK));
    const std::string link = IniFolder::Path("to a program.lnk");
    MakeShortcut(link, "C:\\no\\such.exe");
    const std::string text = Sjis("C:\\表\\readme.txt"), longest = "C:\\" + std::string(252, 'p') + ".exe";
    const struct {
        const char *name;
        std::vector<std::string> paths;
        Lines errors;
        const char *added; // in the list
    } cases[] = {
        {"program", {"C:\\one.EXE"}, {}, "one.EXE"},
        {"again", {"c:\\ONE.exe"}, {registered}, nullptr},
        {"two files", {"C:\\a.exe", "C:\\b.exe"}, {oneOnly}, nullptr},
        {"too long", {longest + "x"}, {tooLong}, nullptr},
        {"no program", {text}, {"- OK owned: " + text, noProgram}, nullptr},
        {"shortcut", {link}, {}, "such.exe"},
        {"shortcut that is none", {"C:\\no.lnk"}, {"- OK owned: C:\\no.lnk", noProgram}, nullptr},
        {"longest", {longest}, {}, longest.c_str() + 3},
    };
    Lines apps;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        BoxAnswerer errors("Error", IDOK);
        DropFiles(page, IDC_COLOR_APP_LIST, c.paths);
        EXPECT_EQ(errors.Boxes(), c.errors);
        if (c.added)
            apps.push_back(c.added);
        EXPECT_EQ(Apps(), apps) << "once";
    }
    DeleteFileA(link.c_str());
    EXPECT_STREQ(g_AppProfile[1].szName, "C:\\no\\such.exe");
    EXPECT_EQ(g_nAppProfile, 3);
    EXPECT_TRUE(IsEnabled(page, IDC_COLOR_DIRECT_LINK));
    BoxAnswerer errors("Error", IDOK);
    g_nAppProfile = APP_PROFILE_COUNT;
    DropFiles(page, IDC_COLOR_APP_LIST, {"C:\\a.exe", "C:\\b.exe"});
    EXPECT_EQ(errors.Boxes(), Lines{full});
    // The file has them all although the page does not know of it.
    std::string file;
    for (int slot = 0; slot < APP_PROFILE_COUNT; ++slot)
        file += "[User" + std::to_string(slot) + "]\r\nname=C:\\" + std::to_string(slot) + ".exe\r\n";
    IniFolder::Write("profile.ini", file);
    g_nAppProfile = 2;
    DropFiles(page, IDC_COLOR_APP_LIST, {"C:\\new.exe"});
    EXPECT_EQ(errors.Boxes(), (Lines{full, full}));
}

TEST_F(ColorPageAppsTest, UpdateAndDelete)
{
    OpenPage();
    const std::string before = Stored(0), ask = Sjis("! YES NO owned: 現在の設定を保存しますか?"),
                      askDelete = Sjis("! YES NO owned: 登録データを削除しますか?");
    Click(page, IDC_COLOR_APP_UPDATE);
    Click(page, IDC_COLOR_APP_DELETE);
    PickInList(page, IDC_COLOR_APP_LIST, 0);
    g_CurSetting[0].wContrast = 33;
    SetDlgItemTextA(page, IDC_COLOR_ALIAS, Sjis("新しい名前").c_str());
    {
        BoxAnswerer no("Lumivane 2", IDNO);
        Click(page, IDC_COLOR_APP_UPDATE);
        Click(page, IDC_COLOR_APP_DELETE);
        EXPECT_EQ(no.Boxes(), (Lines{ask, askDelete})) << "and none without a selection";
    }
    EXPECT_EQ(Stored(0), before);
    EXPECT_EQ(Apps().size(), 2u);
    BoxAnswerer yes("Lumivane 2", IDYES);
    Click(page, IDC_COLOR_APP_UPDATE);
    EXPECT_EQ(Stored(0), Sjis("name=C:\\表\\one.exe|alias=新しい名前|ecomode=1|contrast=33|brightness=1|"
                              "ecobrightness=80|colortemp=11|red=72|green=88|blue=100|"));
    EXPECT_EQ(Apps(), (Lines{"one.exe", "two.exe"}));
    std::string longAlias = "a";
    while (longAlias.size() < 400)
        longAlias += Sjis("能");
    for (const char *first : {"", "b"}) {
        SetDlgItemTextA(page, IDC_COLOR_ALIAS, (first + longAlias).c_str());
        Click(page, IDC_COLOR_APP_UPDATE);
        EXPECT_EQ(g_AppProfile[0].szAlias, (first + longAlias).substr(0, *first ? 258 : 259)) << "no half characters";
    }

    g_bDirectLink = 1;
    Click(page, IDC_COLOR_APP_DELETE);
    EXPECT_EQ(Apps(), Lines{"two.exe"});
    EXPECT_EQ(Alias(), "");
    EXPECT_EQ(Stored(0), "");
    EXPECT_TRUE(IsEnabled(page, IDC_COLOR_DIRECT_LINK));
    PickInList(page, IDC_COLOR_APP_LIST, 0);
    Click(page, IDC_COLOR_APP_DELETE);
    EXPECT_EQ(g_nAppProfile, 0);
    EXPECT_FALSE(IsEnabled(page, IDC_COLOR_DIRECT_LINK));
    EXPECT_EQ(g_bDirectLink, 1) << "left as it is";
    g_bDirectLink = 0;
}

// A box or a choice of file is open while the page goes away, by the panel or by the stop of the plug-in.
TEST_F(ColorPageAppsTest, PageGoesAwayBehindItsQuestion)
{
    for (const bool stop : {false, true}) {
        OpenPage();
        const std::string before = Stored(0);
        SendDlgItemMessageA(page, IDC_COLOR_APP_LIST, LB_SETCURSEL, 0, 0);
        PostMessageA(page, WM_COMMAND, IDC_COLOR_APP_DELETE, 0);
        ASSERT_NE(WaitForDialog("Lumivane 2"), nullptr);
        if (stop)
            Stop();
        else
            Close();
        EXPECT_FALSE(IsWindow(page));
        EXPECT_EQ(FindDialog("Lumivane 2"), nullptr);
        EXPECT_EQ(Stored(0), before) << "nobody said yes";
        // The box's loop still waits for a message, and drops the first one that it gets now. That must not be the next
        // click.
        PostMessageA(g_hKernelWnd, WM_NULL, 0, 0);
    }
}
