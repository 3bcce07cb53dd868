// The six button pages: the launcher function of each button, POWER's two functions, and what is assigned.
#include "launcher/launcher_settings.h"
#include "monitor/vcp.h"
#include "support/launcher_session.h"

namespace {

class ButtonPageTest : public LauncherPagesTest {
protected:
    HWND OpenButton(int button = 1)
    {
        if (!Panel())
            OpenPanel();
        return OpenPage(static_cast<TREEITEM>(TREE_BUTTON_1 + button - 1));
    }

    void SetMask(LONG mask)
    {
        const auto lock = host.Lock();
        host.monitors[0].features[VCP_BUTTON_LOCK] = {mask, 255};
    }

    LONG Mask()
    {
        const auto lock = host.Lock();
        return host.monitors[0].features[VCP_BUTTON_LOCK].current;
    }
};

Lines LockTraffic(LONG mask)
{
    return {"get 0 F2", "set 0 F2 = " + std::to_string(mask)};
}

// The controls of the pages, by their numbers: they recur with other roles.
const struct {
    int enable, program, browseProgram, deleteProgram, parameter, browseParameter, deleteParameter;
    LONG lockBit;
} s_Pages[] = {{1086, 1105, 1119, 1149, 1088, 1144, 1148, 1},   {1102, 1129, 1128, 1148, 1103, 1145, 1150, 2},
               {1106, 1107, 1134, 1151, 1108, 1146, 1148, 4},   {1111, 1112, 1139, 1152, 1113, 1147, 1148, 8},
               {1115, 1116, 1139, 1153, 1117, 1148, 1154, 128}, {1161, 1175, 1174, 1148, 1177, 1154, 1176, 128}};

} // namespace

TEST_F(ButtonPageTest, EveryPage)
{
    for (int button = 1; button <= 6; ++button) {
        SCOPED_TRACE(button);
        const auto &c = s_Pages[button - 1];
        const std::string mode = "Launcher_0_Enable_" + std::to_string(button);
        const std::string exe = "exe_0_" + std::to_string(button);
        SetMask(32);
        const HWND page = OpenButton(button);
        const std::vector<int> details = {1084,        c.program,         c.browseProgram,  c.deleteProgram,
                                          c.parameter, c.browseParameter, c.deleteParameter};
        for (int control : details)
            EXPECT_FALSE(IsEnabled(page, control)) << control;

        Click(page, c.enable);
        EXPECT_EQ(host.TakeLog(), LockTraffic(32 | c.lockBit));
        EXPECT_TRUE(IsChecked(page, c.enable));
        EXPECT_EQ(Number(mode), 2u);
        EXPECT_EQ(Number("dwLTimer"), 1u);
        for (int control : details)
            EXPECT_TRUE(IsEnabled(page, control)) << control;

        AnswerFileDialog("C:\\tools\\tool.exe");
        Click(page, c.browseProgram);
        EXPECT_EQ(LastOwner(), page);
        EXPECT_EQ(TakeRecordedCalls(), (Lines{Sjis("GetOpenFileName 88|実行形式ファイル(*.exe)/*.exe/|260|"
                                                   "実行ファイルの選択|21800")}));
        EXPECT_EQ(TextOf(page, c.program), "tool.exe");
        EXPECT_EQ(Text(exe), "tool.exe");
        EXPECT_EQ(Text(exe + "_Path"), "C:\\tools\\tool.exe");
        AnswerFileDialog("C:\\a text.txt");
        Click(page, c.browseParameter);
        EXPECT_EQ(TakeRecordedCalls(), (Lines{Sjis("GetOpenFileName 88|すべてのファイル(*.*)/*.*/|260|"
                                                   "実行ファイルの選択|21800")}));
        EXPECT_EQ(TextOf(page, c.parameter), "C:\\a text.txt");
        EXPECT_EQ(Text(exe + "_Param"), "C:\\a text.txt");
        AnswerFileDialog("");
        Click(page, c.browseProgram);
        Click(page, c.browseParameter);
        EXPECT_EQ(Text(exe), "tool.exe") << "cancelled";
        EXPECT_EQ(Text(exe + "_Param"), "C:\\a text.txt") << "cancelled";

        const HWND again = OpenButton(button);
        EXPECT_TRUE(IsChecked(again, c.enable));
        EXPECT_EQ(TextOf(again, c.program), "tool.exe");
        EXPECT_EQ(TextOf(again, c.parameter), "C:\\a text.txt");
        EXPECT_FALSE(IsEnabled(again, c.browseProgram)) << "a program is assigned";
        Click(again, c.deleteProgram);
        EXPECT_TRUE(IsEnabled(again, c.browseProgram));
        Click(again, c.deleteParameter);
        EXPECT_EQ(TextOf(again, c.program) + TextOf(again, c.parameter), "");
        for (const char *value : {"", "_Path", "_Param"})
            EXPECT_EQ(Text(exe + value), std::nullopt) << value;

        Click(again, c.enable);
        EXPECT_EQ(host.TakeLog(), LockTraffic(32));
        EXPECT_EQ(Number(mode), 0u);
        EXPECT_EQ(Number("dwLTimer"), 0u);
        for (int control : details)
            EXPECT_FALSE(IsEnabled(again, control)) << control;
    }
}

// What the stored mode shows, and what a click then makes of mask and count.
TEST_F(ButtonPageTest, ModeAtOpening)
{
    const struct {
        DWORD mode;
        LONG mask;
        bool checked, details;
        DWORD modeAfter;
        LONG maskAfter;
        DWORD countAfter;
    } cases[] = {
        {0, 0, false, false, 2, 1, 1},
        {0, 1, false, false, 2, 1, 1},        // locked by hand already
        {1, 1, true, true, 0, 0, 0xFFFFFFFF}, // was not counted
        {2, 1, true, true, 0, 0, 0xFFFFFFFF},
        {2, 0, true, true, 0, 1, 0xFFFFFFFF}, // the monitor lost the bit, and gets it back
        {3, 0, false, true, 2, 1, 1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.mode << " " << c.mask);
        Put("Launcher_0_Enable_1", c.mode);
        Put("dwLTimer", DWORD{0});
        SetMask(c.mask);
        const HWND page = OpenButton();
        EXPECT_EQ(IsChecked(page, 1086), c.checked);
        EXPECT_EQ(IsEnabled(page, 1084), c.details);
        Click(page, 1086);
        EXPECT_EQ(Number("Launcher_0_Enable_1"), c.modeAfter);
        EXPECT_EQ(Mask(), c.maskAfter);
        EXPECT_EQ(Number("dwLTimer"), c.countAfter);
        Choose(TREE_ROOT);
        EXPECT_EQ(Number("ButtonLockStatus_0"), static_cast<DWORD>(c.maskAfter)) << "saved with the page's end";
        EXPECT_EQ(Number("ButtonLockStatus_1"), 0u);
    }
}

// POWER launches or shuts down, never both.
TEST_F(ButtonPageTest, PowerButton)
{
    constexpr int LAUNCH = 1161, SHUTDOWN = 1179;
    SetMask(0);
    HWND page = OpenButton(6);
    const struct {
        int click; // 0 = the page is opened again
        DWORD mode, powerSwitch, count;
        LONG mask;
    } steps[] = {
        {SHUTDOWN, 0, 1, 1, 128}, {0, 0, 1, 1, 128},        {LAUNCH, 2, 0, 1, 128}, {0, 2, 0, 1, 128},
        {SHUTDOWN, 0, 1, 1, 128}, {SHUTDOWN, 0, 0, 0, 0},   {LAUNCH, 2, 0, 1, 128}, {LAUNCH, 0, 0, 0, 0},
        {LAUNCH, 2, 0, 1, 128},   {SHUTDOWN, 0, 1, 1, 128}, {LAUNCH, 2, 0, 1, 128},
    };
    Put("Launcher_0_Enable_6", DWORD{0});
    int number = 0;
    for (const auto &step : steps) {
        SCOPED_TRACE(testing::Message() << "step " << ++number);
        if (step.click)
            Click(page, step.click);
        else
            page = OpenButton(6);
        EXPECT_EQ(Number("Launcher_0_Enable_6"), step.mode);
        EXPECT_EQ(Number("PowerSwitch_0"), step.powerSwitch);
        EXPECT_EQ(Number("dwLTimer"), step.count);
        EXPECT_EQ(Mask(), step.mask);
        EXPECT_EQ(IsChecked(page, LAUNCH), step.mode == 2);
        EXPECT_EQ(IsChecked(page, SHUTDOWN), step.powerSwitch == 1);
        EXPECT_EQ(IsEnabled(page, 1084), step.mode == 2);
        EXPECT_TRUE(IsEnabled(page, SHUTDOWN));
    }
}

TEST_F(ButtonPageTest, AssignsCandidates)
{
    const std::string kanji = "予定表ソ.txt";
    const struct {
        std::string name;
        bool program;
    } cases[] = {{"a.exe", true},  {"a.EXE", true}, {"a.lnk", true},  {".exe", true},       {"a.Exe", false},
                 {"a.LNK", false}, {"exe", false},  {"a.txt", false}, {"my folder", false}, {kanji, false}};
    for (size_t slot = 0; slot < std::size(cases); ++slot) {
        Put("Reservation_" + std::to_string(slot + 3), Sjis(cases[slot].name)); // with a gap in front
        Put("Reservation_" + std::to_string(slot + 3) + "_Path", Sjis("C:\\x\\" + cases[slot].name));
    }
    OpenPanel();
    Put("Launcher_0_Enable_2", DWORD{2});
    const auto &page2 = s_Pages[1];
    for (size_t slot = 0; slot < std::size(cases); ++slot) {
        const auto &c = cases[slot];
        SCOPED_TRACE(c.name);
        const HWND page = OpenButton(2);
        Type(page, page2.parameter, "old");
        PickInList(page, 1084, static_cast<int>(slot));
        const std::string path = "C:\\x\\" + c.name;
        EXPECT_EQ(Text("exe_0_2"), Sjis(c.name));
        EXPECT_EQ(Text("exe_0_2_Path"), Sjis(path));
        EXPECT_EQ(Text("exe_0_2_Param"), c.program ? "" : Sjis(path));
        EXPECT_EQ(TextOf(page, page2.program), c.name);
        EXPECT_EQ(TextOf(page, page2.parameter), c.program ? "" : path);
        EXPECT_EQ(IsEnabled(page, page2.browseProgram), !c.program);
    }
    // Whatever the list notifies of assigns the selected entry once more; of one that is gone the name alone.
    const HWND page = OpenButton(2);
    PickInList(page, 1084, 0);
    Remove("Reservation_3");
    Put("exe_0_2", "else");
    Put("exe_0_2_Path", "C:\\else");
    SendMessageA(page, WM_COMMAND, MAKEWPARAM(1084, LBN_SETFOCUS), 0);
    EXPECT_EQ(Text("exe_0_2"), "a.exe");
    EXPECT_EQ(Text("exe_0_2_Path"), "C:\\else");
    // Without a selection the parameter alone is stored.
    SendDlgItemMessageA(page, 1084, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    Remove("exe_0_2");
    Remove("exe_0_2_Param");
    SendMessageA(page, WM_COMMAND, MAKEWPARAM(1084, LBN_KILLFOCUS), 0);
    EXPECT_EQ(Text("exe_0_2"), std::nullopt);
    EXPECT_EQ(Text("exe_0_2_Param"), "");
}

TEST_F(ButtonPageTest, StoresTheParameterAsItIsTyped)
{
    const HWND page = OpenButton(3);
    const std::string longest(259, 'p');
    const struct {
        std::string typed, stored;
    } cases[] = {{"/p", "/p"},
                 {"D:\\フォルダ", "D:\\フォルダ"},
                 {longest, longest},
                 {longest + "q", longest},
                 {longest.substr(1) + "表", longest.substr(1)}, // its second byte would be the 260th
                 {"", ""}};
    for (const auto &c : cases) {
        SetDlgItemTextA(page, s_Pages[2].parameter, Sjis(c.typed).c_str()); // its change alone
        EXPECT_EQ(Text("exe_0_3_Param"), Sjis(c.stored));
    }
}

TEST_F(ButtonPageTest, OpeningStoresNothing)
{
    PutText(HKEY_LOCAL_MACHINE, "LumvanLauncher", "exe_0_1", "default.lnk");
    PutText(HKEY_LOCAL_MACHINE, "LumvanLauncher", "exe_0_1_Param", "default parameter");
    OpenPanel();
    Put("Launcher_0_Enable_1", DWORD{2});
    HWND page = OpenButton();
    EXPECT_EQ(TextOf(page, 1105), "default.lnk");
    EXPECT_EQ(TextOf(page, 1088), "default parameter");
    EXPECT_FALSE(IsEnabled(page, 1119));
    for (const char *name : {"exe_0_1", "exe_0_1_Param"})
        EXPECT_EQ(Text(name), std::nullopt);
    Click(page, 1149);
    EXPECT_EQ(TextAt(HKEY_LOCAL_MACHINE, "LumvanLauncher", "exe_0_1"), std::nullopt) << "where the user has none";
    // A page that goes while the user chooses stores nothing either.
    page = OpenButton();
    AnswerFileDialog("C:\\new.exe", 0, [&] { Close(); });
    Click(page, 1119);
    EXPECT_EQ(Text("exe_0_1"), std::nullopt);
}

// A label of full length makes the text wider than its place; the narrower font goes with the page.
TEST_F(ButtonPageTest, LongTextsFit)
{
    IniFolder::Write("Launcher.ini", "[NRV-PA1]\r\nbutton6=MMMMMMMMMMMMMMM\r\n[NRV-PA2]\r\n");
    const HWND page = OpenButton(6);
    const HWND control = GetDlgItem(page, 1161);
    const HDC hdc = GetDC(control);
    const HGDIOBJ font = reinterpret_cast<HGDIOBJ>(SendMessageA(control, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(hdc, font);
    const std::string text = Sjis(TextOf(page, 1161));
    SIZE size;
    RECT client;
    GetTextExtentPoint32A(hdc, text.c_str(), static_cast<int>(text.size()), &size);
    GetClientRect(control, &client);
    const LONG room = client.right - GetSystemMetrics(SM_CXMENUCHECK) - 6;
    EXPECT_LE(size.cx, room);
    LOGFONTA description;
    GetObjectA(font, sizeof description, &description);
    ++description.lfWidth;
    const HFONT wider = CreateFontIndirectA(&description);
    SelectObject(hdc, wider);
    GetTextExtentPoint32A(hdc, text.c_str(), static_cast<int>(text.size()), &size);
    EXPECT_GT(size.cx, room) << "no narrower than it must be";
    SelectObject(hdc, before);
    DeleteObject(wider);
    ReleaseDC(control, hdc);
    Choose(TREE_ROOT);
    EXPECT_EQ(GetObjectType(font), 0u);
}
