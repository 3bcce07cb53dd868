// The profile store with its real file, and with the two lists of a page.
#include "profiles/profile_store.h"

#include "panel/profile_lists.h"
#include "panel/resources/resource.h"
#include "support/plugin_session.h"

namespace {

// A window with the two lists of the colour page.
class Page {
public:
    Page()
    {
        m_window = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 300, 300, nullptr, nullptr, nullptr, nullptr);
        Add("LISTBOX", LBS_NOTIFY, IDC_COLOR_APP_LIST);
        Add("COMBOBOX", CBS_DROPDOWNLIST, IDC_COLOR_PROFILE_COMBO);
    }
    ~Page() { DestroyWindow(m_window); }

    HWND Window() const { return m_window; }

    // "text=data" of each entry.
    Lines Apps() const { return Entries(IDC_COLOR_APP_LIST, LB_GETCOUNT, LB_GETTEXT, LB_GETITEMDATA); }
    Lines Profiles() const { return Entries(IDC_COLOR_PROFILE_COMBO, CB_GETCOUNT, CB_GETLBTEXT, CB_GETITEMDATA); }

private:
    void Add(LPCSTR className, DWORD style, int id)
    {
        // cppcheck-suppress ignoredReturnValue ; found by its identifier
        CreateWindowA(className, "", WS_CHILD | WS_VSCROLL | style, 0, 0, 200, 200, m_window,
                      reinterpret_cast<HMENU>(id), nullptr, nullptr);
    }
    Lines Entries(int id, UINT count, UINT text, UINT data) const
    {
        const HWND list = GetDlgItem(m_window, id);
        Lines entries;
        for (LRESULT i = 0; i < SendMessageA(list, count, 0, 0); ++i) {
            char entry[512] = "";
            SendMessageA(list, text, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(entry));
            entries.push_back(entry + ("=" + std::to_string(SendMessageA(list, data, static_cast<WPARAM>(i), 0))));
        }
        return entries;
    }

    HWND m_window = nullptr;
};

class ProfileStoreTest : public HostTest {
protected:
    static void Load(HWND page = nullptr) { LoadProfiles(page, "profile.ini"); }
    static void LoadFrom(const std::string &file, HWND page = nullptr)
    {
        IniFolder::Write("profile.ini", file);
        Load(page);
    }
};

// A section as the store writes it; `values` in the order of the file.
std::string Section(const std::string &section, const std::string &name, const std::string &alias,
                    const std::array<int, 8> &values)
{
    const char *keys[] = {"ecomode", "contrast", "brightness", "ecobrightness", "colortemp", "red", "green", "blue"};
    std::string text = "[" + section + "]\r\nname=" + name + "\r\nalias=" + alias + "\r\n";
    for (size_t i = 0; i < values.size(); ++i)
        text += std::string(keys[i]) + "=" + std::to_string(values[i]) + "\r\n";
    return text;
}

// The lines of a file, without the empty ones that the system puts between sections.
std::string WithoutEmptyLines(std::string text)
{
    for (size_t at; (at = text.find("\r\n\r\n")) != std::string::npos;)
        text.erase(at, 2);
    return text;
}

std::string StoredFile()
{
    return WithoutEmptyLines(IniFolder::Read("profile.ini"));
}

std::array<int, 8> Values(const PROFILEENTRY &entry)
{
    return {entry.nEcoMode,   entry.nContrast, entry.nBrightness, entry.nEcoBrightness,
            entry.nColorTemp, entry.nRed,      entry.nGreen,      entry.nBlue};
}

std::array<LONG, 8> Values(const COLORSETTING &setting)
{
    return {static_cast<LONG>(setting.dwEco),
            setting.wContrast,
            setting.wBright,
            setting.wBrightEco,
            setting.wColorTemp,
            setting.wRed,
            setting.wGreen,
            setting.wBlue};
}

std::string SystemSections()
{
    return Section("Standard0", Ansi("写真"), Ansi("写真"), {0, 65, 255, 0, 1, 0, 0, 0}) +
           Section("Standard1", Ansi("映画"), Ansi("映画"), {0, 65, 255, 0, 8, 0, 0, 0}) +
           Section("Standard2", Ansi("テレビ"), Ansi("テレビ"), {0, 70, 255, 0, 8, 0, 0, 0}) +
           Section("Standard3", Ansi("テキスト"), Ansi("テキスト"), {1, 70, 0, 80, 2, 0, 0, 0});
}

} // namespace

TEST_F(ProfileStoreTest, FirstRunMakesTheSystemProfiles)
{
    Page page;
    Load(page.Window());
    EXPECT_EQ(StoredFile(), SystemSections());
    EXPECT_EQ(g_nSysProfile, 4);
    EXPECT_EQ(g_nAppProfile, 0);
    EXPECT_EQ(page.Profiles(), (Lines{Ansi("-- 指定なし --") + "=0", Ansi("写真") + "=1", Ansi("映画") + "=2",
                                      Ansi("テレビ") + "=3", Ansi("テキスト") + "=4"}));
    EXPECT_EQ(page.Apps(), Lines{});

    // The second load finds the file and writes nothing.
    const std::string file = IniFolder::Read("profile.ini");
    Load();
    EXPECT_EQ(IniFolder::Read("profile.ini"), file);
}

TEST_F(ProfileStoreTest, ExistingOrUnusableFileIsLeftAlone)
{
    LoadFrom("");
    EXPECT_EQ(IniFolder::Read("profile.ini"), "");
    EXPECT_EQ(g_nSysProfile, 0);
    EXPECT_STREQ(g_SysProfile[2].szAlias, Ansi("テレビ").c_str()) << "in memory the system profiles are always there";
    EXPECT_EQ(Values(g_SysProfile[3]), (std::array{1, 70, 0, 80, 2, 0, 0, 0}));

    // In use by another program: nothing is made and nothing is shown. A write then tells the user, but for programs.
    const HANDLE file =
        CreateFileA(IniFolder::Path("profile.ini").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    BoxAnswerer answerer("Lumivane 2", IDOK);
    Load();
    EXPECT_EQ(WriteAppProfile(0), 0);
    EXPECT_EQ(answerer.Boxes(), Lines{});
    EXPECT_EQ(WriteSysProfile(0), 0);
    CloseHandle(file);
    EXPECT_EQ(answerer.Boxes(), Lines{Ansi("x OK: デフォルトプロファイルの保存に失敗しました。")});
    EXPECT_EQ(IniFolder::Read("profile.ini"), "");
}

TEST_F(ProfileStoreTest, RegisteredProfilesAreWrittenAndReadBack)
{
    LoadFrom("");
    g_nCurMonitor = 1;
    g_CurSetting[1] = {1, 81, 61, 71, 91, 92, 0xFFFF, 12, 0};
    g_DefSetting[1] = {0, 82, 62, 72, 94, 95, 96, 5, 0};
    SetProfileData(PROFILE_APP_SET, 0, "C:\\Tools\\a.exe", "first");
    SetProfileData(PROFILE_APP_SET_DEFAULTS, 239, "D:\\b.exe", "last");
    SetProfileData(PROFILE_SYS_SET, 15, "mine", "mine");
    EXPECT_EQ(StoredFile(), "") << "memory only";
    EXPECT_STREQ(g_AppProfile[239].szSection, "User239");
    EXPECT_EQ(WriteAppProfile(0), 1);
    EXPECT_EQ(WriteAppProfile(239), 1);
    EXPECT_EQ(WriteSysProfile(15), 1);
    const std::string file = Section("User0", "C:\\Tools\\a.exe", "first", {1, 71, 61, 81, 12, 91, 92, -1}) +
                             Section("User239", "D:\\b.exe", "last", {0, 72, 62, 82, 5, 94, 95, 96}) +
                             Section("Standard15", "mine", "mine", {1, 71, 61, 81, 12, 91, 92, -1});
    EXPECT_EQ(StoredFile(), file);

    // Written again and again, a section stays what it is; alias and name may be the entry's own texts.
    for (int round = 0; round < 3; ++round) {
        SetProfileData(PROFILE_APP_SET, 0, g_AppProfile[0].szName, g_AppProfile[0].szAlias);
        WriteAppProfile(0);
    }
    EXPECT_EQ(StoredFile(), file);

    for (PROFILEENTRY &entry : g_AppProfile)
        entry = {};
    g_SysProfile[15] = {};
    Load();
    EXPECT_EQ(g_nSysProfile, 1);
    EXPECT_EQ(g_nAppProfile, 2);
    EXPECT_STREQ(g_AppProfile[0].szSection, "User0");
    EXPECT_STREQ(g_AppProfile[0].szName, "C:\\Tools\\a.exe");
    EXPECT_STREQ(g_AppProfile[0].szAlias, "first");
    EXPECT_EQ(Values(g_AppProfile[0]), (std::array{1, 71, 61, 81, 12, 91, 92, -1}));
    EXPECT_EQ(Values(g_AppProfile[239]), (std::array{0, 72, 62, 82, 5, 94, 95, 96}));
    EXPECT_STREQ(g_SysProfile[15].szName, "mine");

    // Into the record of the selected monitor, narrowed to 16 bits.
    g_AppProfile[0].nContrast = 0x12345;
    SetProfileData(PROFILE_APP_TAKE, 0, nullptr, nullptr);
    EXPECT_EQ(Values(g_CurSetting[1]), (std::array<LONG, 8>{1, 0x2345, 61, 81, 12, 91, 92, 0xFFFF}));
    SetProfileData(PROFILE_SYS_TAKE, 0, nullptr, nullptr);
    EXPECT_EQ(Values(g_CurSetting[1]), (std::array<LONG, 8>{0, 65, 255, 0, 1, 0, 0, 0}));
    EXPECT_EQ(Values(g_CurSetting[0]), (std::array<LONG, 8>{})) << "the selected monitor's alone";
}

TEST_F(ProfileStoreTest, WrittenSectionsAreReadRightMuchLater)
{
    LoadFrom("");
    SetProfileData(PROFILE_APP_SET, 0, "C:\\a.exe", "a");
    WriteAppProfile(0);
    Sleep(2500); // until the system trusts what it has kept of the file
    SetProfileData(PROFILE_APP_SET, 1, "C:\\b.exe", "b");
    WriteAppProfile(1);
    EXPECT_EQ(StoredFile(), Section("User0", "C:\\a.exe", "a", {}) + Section("User1", "C:\\b.exe", "b", {}));
    Sleep(2500);
    Load();
    EXPECT_STREQ(g_AppProfile[0].szAlias, "a");
    EXPECT_STREQ(g_AppProfile[1].szName, "C:\\b.exe");
}

TEST_F(ProfileStoreTest, ModesSlotsAndTextsOutOfRange)
{
    LoadFrom("");
    const std::string longText(300, 'x');
    SetProfileData(PROFILE_APP_SET, 3, longText.c_str(), longText.c_str());
    EXPECT_EQ(g_AppProfile[3].szName, longText.substr(0, 259));
    for (const int mode : {0, 10, -1})
        SetProfileData(mode, 3, "no", "no");
    for (int mode = PROFILE_APP_CLEAR; mode <= PROFILE_SYS_TAKE; ++mode)
        for (const int slot : {-1, mode < PROFILE_SYS_CLEAR ? 240 : 16, 100000})
            SetProfileData(mode, slot, "no", "no");
    EXPECT_EQ(g_AppProfile[3].szAlias, longText.substr(0, 259));
    for (const int slot : {-1, 240}) {
        EXPECT_EQ(WriteAppProfile(slot), 0);
        EXPECT_EQ(WriteSysProfile(slot), 0);
        DeleteAppProfile(slot);
        DeleteSysProfile(slot);
        AddAppListItem(nullptr, slot);
    }
    EXPECT_EQ(g_nAppProfile, 0);
    EXPECT_EQ(g_nSysProfile, 0);
    for (const LONG monitor : {-1L, MAX_MONITOR}) { // a profile without a monitor to take values from
        g_nCurMonitor = monitor;
        SetProfileData(PROFILE_APP_SET, 3, "C:\\a.exe", nullptr);
        SetProfileData(PROFILE_APP_TAKE, 3, nullptr, nullptr);
    }
    EXPECT_STREQ(g_AppProfile[3].szName, "C:\\a.exe");
    EXPECT_STREQ(g_AppProfile[3].szAlias, "");
    SetProfileData(PROFILE_APP_CLEAR, 3, nullptr, nullptr);
    EXPECT_STREQ(g_AppProfile[3].szSection, "");
}

TEST_F(ProfileStoreTest, FilesMadeByHand)
{
    const std::string n259(259, 'n'), n300(300, 'm');
    const std::string values = "contrast=2\r\nred=6\r\n";
    // With its other lines, each with an end of one byte, a section of 775 bytes: the most that is read.
    const auto filled = [](size_t more) {
        return "name=C:\\c.exe\r\nx=" + std::string(752 + more, 'f') + "\r\nred=6\r\n";
    };
    LoadFrom(
        "[user1]\r\nred=4\r\nname=C:\\a.exe\r\n[User2]\r\nname=?\r\n[User3]\r\nalias=no name\r\n[User5]\r\nname=\r\n"
        "[User007]\r\nname=C:\\seven.exe\r\n[User10]\r\nname=" +
        n259 + "\r\n" + values + "[User11]\r\nname=" + n300 + "\r\nalias=" + n300 + "\r\n" + values + "[User12]\r\n" +
        filled(0) + "[User13]\r\n" + filled(1) + "[User14]\r\n" + filled(1248) +
        "[User15]\r\nname=??\r\n[User240]\r\nname=C:\\x.exe\r\n[Standard16]\r\nname=x\r\n[Standard4]\r\nname=" +
        Ansi("設定4") + "\r\n");
    EXPECT_EQ(g_nAppProfile, 8);
    EXPECT_EQ(g_nSysProfile, 1);
    const struct {
        int slot;
        std::string name;
        std::string alias;
        int red;
    } cases[] = {
        {1, "C:\\a.exe", "", 4},                   // the section's letter case does not matter
        {2, "", "", 0},                            // absent: not touched
        {3, "", "", 0},           {5, "", "", -1}, // there, with an empty name
        {7, "", "", 0},           {10, n259, "", 6},         {11, n300.substr(0, 259), n300.substr(0, 259), 6},
        {12, "C:\\c.exe", "", 6}, {13, "C:\\c.exe", "", -1}, {14, "C:\\c.exe", "", -1},
        {15, "??", "", -1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.slot);
        EXPECT_EQ(g_AppProfile[c.slot].szName, c.name);
        EXPECT_EQ(g_AppProfile[c.slot].szAlias, c.alias);
        EXPECT_EQ(g_AppProfile[c.slot].nRed, c.red);
    }
    EXPECT_EQ(g_SysProfile[4].szName, Ansi("設定4"));
}

TEST_F(ProfileStoreTest, DeletedSlotsBetweenOthers)
{
    std::string file = SystemSections();
    for (const int slot : {4, 5, 6})
        file += Section("Standard" + std::to_string(slot), "mine" + std::to_string(slot), "", {});
    for (const int slot : {0, 1, 2, 4})
        file += Section("User" + std::to_string(slot), Ansi("C:\\能力\\表") + std::to_string(slot) + ".exe", "", {});
    LoadFrom(file);
    EXPECT_EQ(GetFreeAppSection(), 3);
    DeleteSysProfile(5);
    DeleteAppProfile(1);
    EXPECT_EQ(g_nSysProfile, 6);
    EXPECT_EQ(g_nAppProfile, 3);
    EXPECT_STREQ(g_AppProfile[1].szName, "");
    EXPECT_EQ(GetFreeAppSection(), 1) << "of the file";
    EXPECT_NE(StoredFile().find("[User1]\r\n[User2]\r\n"), std::string::npos) << "the section stays, without keys";

    Page page;
    Load(page.Window());
    EXPECT_EQ(g_nSysProfile, 6);
    EXPECT_EQ(g_nAppProfile, 3);
    EXPECT_STREQ(g_SysProfile[6].szName, "mine6");
    EXPECT_EQ(page.Profiles().back(), "mine4=5") << "behind the gap nothing can be shown";
    // Only a backslash of its own ends a directory: Shift-JIS characters may have one for their second byte.
    EXPECT_EQ(page.Apps(), (Lines{Ansi("表") + "0.exe=0", Ansi("表") + "2.exe=2", Ansi("表") + "4.exe=4"}));

    strcpy(g_AppProfile[7].szName, "no backslash");
    AddAppListItem(page.Window(), 7);
    EXPECT_EQ(page.Apps().back(), "no backslash=7");
    EXPECT_EQ(g_nAppProfile, 4);
}

TEST_F(ProfileStoreTest, FullTables)
{
    std::string file;
    for (int slot = 0; slot < 16; ++slot)
        file += Section("Standard" + std::to_string(slot), "s" + std::to_string(slot), "", {});
    for (int slot = 0; slot < 240; ++slot)
        file += Section("User" + std::to_string(slot), "C:\\" + std::to_string(slot) + ".exe", "", {slot});
    Page page;
    LoadFrom(file, page.Window());
    EXPECT_EQ(g_nSysProfile, 16);
    EXPECT_EQ(g_nAppProfile, 240);
    EXPECT_EQ(page.Profiles().size(), 17u);
    EXPECT_EQ(page.Profiles().back(), "s15=16");
    EXPECT_EQ(page.Apps().size(), 240u);
    EXPECT_EQ(page.Apps().back(), "239.exe=239");
    EXPECT_EQ(g_AppProfile[239].nEcoMode, 239);
    EXPECT_EQ(GetFreeAppSection(), -1);
    DeleteAppProfile(239);
    EXPECT_EQ(GetFreeAppSection(), 239);
}

// ---- First run with programs on the machine ----

namespace {

// A registry value, with its key, below HKEY_LOCAL_MACHINE. Without a name the key alone.
struct MachineValue {
    std::string key;
    std::string name;
    std::string text;
    DWORD type = REG_SZ;
};

void Put(const MachineValue &value)
{
    HKEY key;
    ASSERT_EQ(RegCreateKeyA(HKEY_LOCAL_MACHINE, ("SOFTWARE\\Microsoft\\" + value.key).c_str(), &key), ERROR_SUCCESS);
    if (!value.name.empty())
        RegSetValueExA(key, value.name.c_str(), 0, value.type, reinterpret_cast<const BYTE *>(value.text.data()),
                       static_cast<DWORD>(value.text.size()));
    RegCloseKey(key);
}

std::string Directory(const std::string &name)
{
    return IniFolder::Path("office_" + name);
}

} // namespace

TEST_F(ProfileStoreTest, FirstRunRegistersTheProgramsThatAreThere)
{
    const std::string office8 = "Office\\8.0\\Common\\InstallRoot", office9 = "Office\\9.0\\Common\\InstallRoot",
                      office10 = "Office\\10.0\\Common\\InstallRoot";
    const std::string player = "Microsoft Windows Media Player";
    const Lines files = {"a\\excel.exe", "a\\msaccess.exe", "b\\winword.exe", "b\\powerpnt.exe", "b\\excel.exe"};
    const std::string a = Directory("a"), b = Directory("b"), none = Directory("none");
    const struct {
        std::vector<MachineValue> machine;
        Lines programs; // path, alias of each profile
    } cases[] = {
        {{}, {}},
        {{{office10, "Path", b + "\\"}},
         {b + "\\excel.exe", "Microsoft Excel", b + "\\winword.exe", "Microsoft Word", b + "\\powerpnt.exe",
          "Microsoft Power Point"}},
        // The old version alone names its directory without a backslash at the end, and under another value.
        {{{office8, "OfficeBin", a}, {office9, "Path", b}, {office10, "Path", none + "\\"}},
         {a + "\\excel.exe", "Microsoft Excel", a + "\\msaccess.exe", "Microsoft Access"}},
        {{{office8, "Path", a}, {office10, "OfficeBin", b + "\\"}}, {}},
        {{{office9, "Path", a + "\\"}, {"MediaPlayer", "Installation Directory", none}},
         {a + "\\excel.exe", "Microsoft Excel", a + "\\msaccess.exe", "Microsoft Access", none + "\\wmplayer.exe",
          player}},
        // The player's key alone, its directory too long to be read, of another type, or too long for an entry.
        {{{"MediaPlayer", "", ""}}, {"\\wmplayer.exe", player}},
        {{{"MediaPlayer", "Installation Directory", std::string(261, 'x')}}, {"\\wmplayer.exe", player}},
        {{{"MediaPlayer", "Installation Directory", "abcd", REG_DWORD}}, {"\\wmplayer.exe", player}},
        {{{"MediaPlayer", "Installation Directory", std::string(258, 'x')}}, {}},
        {{{"MediaPlayer", "Installation Directory", std::string(246, 'x')}},
         {std::string(246, 'x') + "\\wmplayer.exe", player}},
    };
    for (const std::string &directory : {a, b})
        CreateDirectoryA(directory.c_str(), nullptr);
    for (const std::string &file : files)
        WriteFileBytes(Directory(file), "x");
    for (size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        DeleteFileA(IniFolder::Path("profile.ini").c_str());
        WritePrivateProfileStringA(nullptr, nullptr, nullptr, IniFolder::Path("profile.ini").c_str());
        ResetPluginState();
        for (const char *key : {office8.c_str(), office9.c_str(), office10.c_str(), "MediaPlayer"})
            RegDeleteKeyA(HKEY_LOCAL_MACHINE, (std::string("SOFTWARE\\Microsoft\\") + key).c_str());
        for (const MachineValue &value : cases[i].machine)
            Put(value);
        Load();
        std::string expected = SystemSections();
        const Lines &programs = cases[i].programs;
        for (size_t slot = 0; slot < programs.size() / 2; ++slot)
            expected += Section("User" + std::to_string(slot), programs[2 * slot], programs[2 * slot + 1],
                                {1, 70, 0, 80, 11, 72, 88, 100});
        EXPECT_EQ(StoredFile(), expected);
        EXPECT_EQ(g_nAppProfile, static_cast<int>(programs.size() / 2));
    }
    for (const std::string &file : files)
        DeleteFileA(Directory(file).c_str());
    for (const std::string &directory : {a, b})
        RemoveDirectoryA(directory.c_str());
}
