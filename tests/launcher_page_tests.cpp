// The launcher settings page: candidates, assignments and test buttons.
#include "kernel/base/texts.h"
#include "panel/resources/resource.h"
#include "support/launcher_session.h"
#include "support/shortcut.h"

#include <commctrl.h>

#include <cderr.h>

namespace {

const char tooManyToAdd[] = "x OK owned: 追加できる候補は最大で32個です。";
const char tooManyToDrop[] = "x OK owned: 追加できる数は最大で32個です。";
const char oneAtATime[] = "x OK owned: 一度にドロップできる数は一つだけです。";
const char tooLong[] = "x OK owned: ファイル名が長すぎます。";
const char sameName[] = "x OK owned: すでに同名で登録されています";

class LauncherPageTest : public LauncherPagesTest {
protected:
    HWND OpenLauncher(int monitor = 0)
    {
        if (!Panel())
            OpenPanel(monitor);
        return OpenPage(TREE_LAUNCHER);
    }

    // Slot k holds "k.txt" in "C:\k".
    static void PutCandidates(const std::vector<int> &slots)
    {
        for (int slot = 0; slot <= 33; ++slot) {
            Remove("Reservation_" + std::to_string(slot));
            Remove("Reservation_" + std::to_string(slot) + "_Path");
        }
        for (int slot : slots) {
            const std::string name = std::to_string(slot) + ".txt";
            Put("Reservation_" + std::to_string(slot), name);
            Put("Reservation_" + std::to_string(slot) + "_Path", "C:\\" + std::to_string(slot) + "\\" + name);
        }
    }

    // "slot name|path" of a slot; empty for an empty one.
    static std::string Slot(int slot)
    {
        const StoredText name = Text("Reservation_" + std::to_string(slot));
        const StoredText path = Text("Reservation_" + std::to_string(slot) + "_Path");
        return name || path ? name.value_or("?") + "|" + path.value_or("?") : "";
    }

    static std::vector<int> FirstSlots(int count)
    {
        std::vector<int> slots;
        for (int slot = 0; slot < count; ++slot)
            slots.push_back(slot);
        return slots;
    }

    // Does something that a message box may answer. Result: the box, "" without one.
    static std::string RefusalOf(const std::function<void()> &action)
    {
        BoxAnswerer boxes(PRODUCT_TITLE, IDOK);
        action();
        std::string seen;
        for (const std::string &box : boxes.Boxes())
            seen += box;
        return seen;
    }

    // The rows of the assignments: "data: label|program|parameter".
    static Lines Rows(HWND page) { return RowsOf(page, IDC_LAUNCHER_ASSIGNMENTS, 3); }
};

} // namespace

TEST_F(LauncherPageTest, AddsACandidate)
{
    const struct {
        const char *what;
        std::vector<int> slots; // in use before
        std::string path;       // chosen
        const char *refusal;
        const char *name; // null = nothing is added
        int slot;         // that it takes
        int index;        // at which it is listed
    } cases[] = {
        {"the first", {}, "D:\\x\\new.exe", "", "new.exe", 0, 0},
        {"behind others", {0, 1}, "D:\\new.exe", "", "new.exe", 2, 2},
        {"into the lowest gap", {0, 2, 5}, "D:\\new.exe", "", "new.exe", 1, 1},
        {"with bytes of a backslash in characters", {0}, Sjis("D:\\表\\ソ"), "", "ソ", 1, 1},
        {"cancelled", {0}, "", "", nullptr, 0, 0},
        {"a name that is there in other letters", {0}, "D:\\0.TXT", sameName, nullptr, 0, 0},
        {"the 33rd", FirstSlots(32), "D:\\new.exe", "", "new.exe", 32, 32},
        {"the 34th", FirstSlots(33), "D:\\new.exe", tooManyToAdd, nullptr, 0, 0},
        {"one beyond the last slot is none", {33}, "D:\\new.exe", "", "new.exe", 0, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        PutCandidates(c.slots);
        const HWND page = OpenLauncher();
        Lines entries = EntriesOf(page, IDC_LAUNCHER_CANDIDATES);
        AnswerFileDialog(c.path);
        EXPECT_EQ(RefusalOf([&] { Click(page, IDC_LAUNCHER_ADD); }), Sjis(c.refusal));
        if (c.name) {
            EXPECT_EQ(Slot(c.slot), Sjis(c.name) + "|" + c.path);
            entries.insert(entries.begin() + c.index, c.name);
        }
        EXPECT_EQ(EntriesOf(page, IDC_LAUNCHER_CANDIDATES), entries);
        if (c.index < static_cast<int>(c.slots.size())) {
            EXPECT_EQ(EntriesOf(OpenLauncher(), IDC_LAUNCHER_CANDIDATES), entries) << "as it is read again";
        }
    }
}

TEST_F(LauncherPageTest, AsksForAnyFile)
{
    const std::string arguments = Sjis("|すべてのファイル(*.*)/*.*/|260|実行ファイルの選択|21800");
    const HWND page = OpenLauncher();
    Click(page, IDC_LAUNCHER_ADD);
    EXPECT_EQ(TakeRecordedCalls(), (Lines{"GetOpenFileName 88" + arguments}));
    AnswerFileDialog("", CDERR_STRUCTSIZE);
    Click(page, IDC_LAUNCHER_ADD);
    EXPECT_EQ(TakeRecordedCalls(), (Lines{"GetOpenFileName 88" + arguments, "GetOpenFileName 76" + arguments}))
        << "a system that knows the older structure only";
    AnswerFileDialog("C:\\new.exe", 0, [&] { Close(); });
    Click(page, IDC_LAUNCHER_ADD);
    EXPECT_EQ(Slot(0), "") << "the page went while the user chose";
}

TEST_F(LauncherPageTest, TakesDroppedFiles)
{
    const std::string link = IniFolder::Path("shortcut.lnk");
    MakeShortcut(link, "C:\\windows\\system32\\notepad.exe");
    const std::string longest = "C:\\" + std::string(256, 'a');
    const struct {
        const char *what;
        std::vector<int> slots;
        std::vector<std::string> paths;
        const char *refusal;
        std::string stored; // in slot 1
    } cases[] = {
        {"a file", {0}, {"D:\\new.exe"}, "", "new.exe|D:\\new.exe"},
        {"a folder", {0}, {"D:\\my folder"}, "", "my folder|D:\\my folder"},
        {"a drive, which has no name", {0}, {"D:\\"}, "", ""},
        {"nothing", {0}, {}, "", ""},
        {"two", {0}, {"D:\\a", "D:\\b"}, oneAtATime, ""},
        {"the longest", {0}, {longest}, "", longest.substr(3) + "|" + longest},
        {"too long", {0}, {longest + "a"}, tooLong, ""},
        {"two too long", {0}, {longest + "a", "D:\\b"}, oneAtATime, ""},
        {"there in other letters", {0}, {"D:\\0.Txt"}, sameName, ""},
        {"a shortcut", {0}, {link}, "", "notepad.exe|C:\\windows\\system32\\notepad.exe"},
        {"one that leads nowhere", {0}, {"D:\\x.lnk"}, "", "x.lnk|D:\\x.lnk"},
        {"two more than fit", FirstSlots(33), {"D:\\a", "D:\\b"}, tooManyToDrop, "1.txt|C:\\1\\1.txt"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        PutCandidates(c.slots);
        const HWND page = OpenLauncher();
        EXPECT_EQ(RefusalOf([&] { DropFiles(page, IDC_LAUNCHER_CANDIDATES, c.paths); }), Sjis(c.refusal));
        EXPECT_EQ(Slot(1), c.stored);
        EXPECT_EQ(EntriesOf(page, IDC_LAUNCHER_CANDIDATES).size(),
                  c.slots.size() + (c.slots.size() == 1 && !c.stored.empty()));
    }
    EXPECT_TRUE(GetWindowLongA(GetDlgItem(OpenLauncher(), IDC_LAUNCHER_CANDIDATES), GWL_EXSTYLE) & WS_EX_ACCEPTFILES);
    DeleteFileA(link.c_str());
}

TEST_F(LauncherPageTest, DeletesACandidate)
{
    PutCandidates({0, 3, 7, 8});
    Put("exe_0_1", "3.txt");
    const HWND page = OpenLauncher();
    Click(page, IDC_LAUNCHER_REMOVE);
    EXPECT_EQ(EntriesOf(page, IDC_LAUNCHER_CANDIDATES).size(), 4u) << "none selected";
    PickInList(page, IDC_LAUNCHER_CANDIDATES, 1);
    Click(page, IDC_LAUNCHER_REMOVE);
    EXPECT_EQ(EntriesOf(page, IDC_LAUNCHER_CANDIDATES), (Lines{"0.txt", "7.txt", "8.txt"}));
    EXPECT_EQ(Slot(3), "");
    EXPECT_EQ(Text("exe_0_1"), "3.txt") << "what was assigned stays";
    // The store has the name in other letters by now: the entry goes, the slot stays.
    Put("Reservation_7", "7.TXT");
    PickInList(page, IDC_LAUNCHER_CANDIDATES, 1);
    Click(page, IDC_LAUNCHER_REMOVE);
    EXPECT_EQ(EntriesOf(page, IDC_LAUNCHER_CANDIDATES), (Lines{"0.txt", "8.txt"}));
    EXPECT_EQ(Slot(7), "7.TXT|C:\\7\\7.txt");
    // The list is shorter than the slots now, and still takes a file.
    PutCandidates(FirstSlots(9));
    AnswerFileDialog("D:\\new.exe");
    Click(page, IDC_LAUNCHER_ADD);
    EXPECT_EQ(EntriesOf(page, IDC_LAUNCHER_CANDIDATES), (Lines{"0.txt", "8.txt", "new.exe"}));
    EXPECT_EQ(Slot(9), "new.exe|D:\\new.exe");
}

// Rows and test buttons exist for labels only, and the texts then go by the row's number.
TEST_F(LauncherPageTest, ShowsWhatIsAssigned)
{
    for (int button = 1; button <= 6; ++button) {
        Put("exe_0_" + std::to_string(button), "P" + std::to_string(button));
        Put("exe_0_" + std::to_string(button) + "_Param", "-" + std::to_string(button));
    }
    Remove("exe_0_2");
    Remove("exe_0_2_Param");
    const std::string fifteen = "123456789012345";
    const struct {
        const char *what;
        std::string labels; // of "Launcher.ini"
        Lines rows;
        Lines tests; // the buttons' texts
    } cases[] = {
        {"all",
         Sjis("[NRV-PA1]\r\nbutton1=音量\r\nbutton2=B\r\nbutton3=C\r\nbutton4=D\r\nBUTTON5=E\r\nbutton6=POWER\r\n"),
         {Sjis("1: 音量|P1|-1"), "2: B||", "3: C|P3|-3", "4: D|P4|-4", "5: E|P5|-5", "6: POWER|P6|-6"},
         {"音量", "B", "C", "D", "E", "POWER"}},
        {"one missing",
         "[NRV-PA1]\r\nbutton1=A\r\nbutton2=B\r\nbutton3=\r\nbutton4=D\r\nbutton5=E\r\nbutton6=F\r\n",
         {"1: A|P1|-1", "2: B||", "4: D|P3|-3", "5: E|P4|-4", "6: F|P6|-6"},
         {"A", "B", "", "D", "E", "F"}},
        {"three missing",
         "[NRV-PA1]\r\nbutton1=A\r\nbutton5=E\r\nbutton6=F\r\n",
         {"1: A|P1|-1", "5: E||", "6: F|P5|-5"},
         {"A", "", "", "", "E", "F"}},
        {"long ones",
         "[NRV-PA1]\r\nbutton1=" + fifteen + "\r\nbutton2=" + std::string(40, 'x') +
             "\r\nbutton6=" + Sjis("1234567890電源電源電源"),
         {"1: " + fifteen + "|P1|-1", "2: xxxxxxxxxxxxxxx||", Sjis("6: 1234567890電源|P5|-5")},
         {fifteen, "xxxxxxxxxxxxxxx", "", "", "", "1234567890電源"}},
        {"no section", "[NRV-PA2]\r\nbutton1=A\r\n", {}, {"", "", "", "", "", ""}},
        {"no file", "", {}, {"", "", "", "", "", ""}},
    };
    const int buttons[] = {1095, 1096, 1097, 1098, 1099, 1182};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        if (c.labels.empty())
            DeleteFileA(IniFolder::Path("Launcher.ini").c_str());
        else
            IniFolder::Write("Launcher.ini", c.labels);
        const HWND page = OpenLauncher();
        EXPECT_EQ(Rows(page), c.rows);
        for (size_t n = 0; n < c.tests.size(); ++n) {
            EXPECT_EQ(TextOf(page, buttons[n]), c.tests[n]);
            EXPECT_EQ(IsEnabled(page, buttons[n]), !c.tests[n].empty());
        }
    }
}

TEST_F(LauncherPageTest, TestButtonsStartWhatTheSelectedMonitorHas)
{
    const HWND page = OpenLauncher(1);
    const int buttons[] = {1095, 1096, 1097, 1098, 1099, 1182};
    for (int button = 1; button <= 6; ++button) {
        const std::string name = "exe_1_" + std::to_string(button);
        Put(name, "x.exe");
        Put(name + "_Path", "C:\\" + name);
        Click(page, buttons[button - 1]);
        EXPECT_EQ(TakeRecordedCalls(), (Lines{"ShellExecute open|C:\\" + name + "||(null)|5"}));
        EXPECT_EQ(LastOwner(), page);
    }
}

TEST_F(LauncherPageTest, AToolTipHasTheWholeLabel)
{
    IniFolder::Write("Launcher.ini", Sjis("[NRV-PA1]\r\nbutton6=とても長い名前の電源ボタン\r\n"));
    const HWND page = OpenLauncher();
    EXPECT_EQ(TipOf(page, 1182),
              "とても長い名前の電源ボタンボタンに現在割り当てられているアプリケーションを確認します。");
}
