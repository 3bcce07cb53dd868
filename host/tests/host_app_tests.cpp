// The running host, with a plug-in that the test scripts and simulated monitors: its icon and balloons, the end of a
// session, monitors that come and go, and the menu's switches.
#include <gtest/gtest.h>

#include <shlwapi.h>

#include <memory>

#include "host/autostart.h"
#include "host/base/program_path.h"
#include "host/base/resource.h"
#include "host/base/text.h"
#include "host/host_app.h"
#include "host/tests/support/fake_plugin.h"
#include "host/tests/support/fake_shell.h"
#include "monitor/vcp_codes.h"
#include "panel/resources/resource.h"
#include "tour/tour_hands.h"

constexpr DWORD LONG_ENOUGH = 40000; // ms: nothing here takes so long, however loaded the machine is

// What the scripted plug-in was called for, in order.
static std::mutex s_mutex;
static std::string s_slots;
static bool s_wasAnsweredAtStop;

static int Note(const char *slot)
{
    std::lock_guard lock(s_mutex);
    s_slots += slot;
    return 1;
}

static std::string Slots()
{
    std::lock_guard lock(s_mutex);
    return s_slots;
}

class HostApp : public testing::Test {
protected:
    void SetUp() override
    {
        ResetFakePlugin();
        ResetFakeShell(0, false);
        s_slots.clear();
        g_FakePlugin.slots[PLUGIN_SLOT_INIT] = [](void *) { return Note("start "); };
        g_FakePlugin.slots[PLUGIN_SLOT_OPEN_PANEL] = [](void *) { return Note("panel "); };
        g_FakePlugin.slots[PLUGIN_SLOT_STOP] = [](void *) { return Note("stop "); };
        folder = ProgramFolder() + "\\host_app_monitors";
        RemoveFolder(); // of a run that was ended on the way
        CreateDirectoryW(Widen(folder).c_str(), nullptr);
        Describe("1", "[vcp]\n10 = 80 / 100\n12 = 1 / 2, delay 20000\n");
    }

    void TearDown() override
    {
        Stop();
        ResetFakePlugin();
        RemoveFolder();
    }

    void RemoveFolder() const
    {
        for (const char *name : {"1", "2"})
            DeleteFileW(Widen(FileOf(name)).c_str());
        RemoveDirectoryW(Widen(folder).c_str());
    }

    std::string FileOf(const std::string &name) const { return folder + "\\" + name + ".ini"; }

    void Describe(const std::string &name, const std::string &lines)
    {
        const std::string text = "[monitor]\nmodel = " + name + "\ncapabilities = (vcp(10 12))\n" + lines;
        DWORD written = 0;
        const HANDLE file =
            CreateFileW(Widen(FileOf(name)).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        ASSERT_TRUE(WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr));
        CloseHandle(file);
    }

    void Start(void (*alter)(HOSTAPP *) = nullptr)
    {
        std::string error;
        app = std::make_unique<HOSTAPP>();
        app->hInstance = GetModuleHandleW(nullptr);
        ASSERT_TRUE(ParseOptions({"--monitors", folder, "--plugin", Narrow(ProgramPath())}, &app->options, &error));
        if (alter)
            alter(app.get());
        thread = std::thread([this] { status = RunHost(app.get()); });
        ASSERT_TRUE(WaitUntil([] { return ReceivedCount() == 1; }, LONG_ENOUGH)) << "the greeting";
    }

    // Returns when the host has ended.
    void Stop()
    {
        if (!thread.joinable())
            return;
        EndHost(&app->window, 0);
        thread.join();
        EXPECT_EQ(status, 0);
    }

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return SendMessageW(app->window.hWnd, message, wParam, lParam);
    }

    void SendFromPlugin(WORD command, WORD code, const std::vector<BYTE> &payload)
    {
        PACKET packet = MakePacket({PLUGIN_ENDPOINT_ID, 2, 1}, HostEndpoint(), command, code, 1, payload);
        packet.header.lpData = PacketData(&packet);
        EXPECT_EQ(Send(WM_HOST_PACKET, 0, reinterpret_cast<LPARAM>(&packet.header)), 1);
    }

    bool WaitForSlots(const std::string &slots)
    {
        const bool isSo = WaitUntil([&] { return Slots() == slots; }, LONG_ENOUGH);
        EXPECT_EQ(Slots(), slots);
        return isSo;
    }

    int Brightness() const { return GetMonitorState(&app->monitors.simulation, 0).brightness.value; }

    std::string folder;
    std::unique_ptr<HOSTAPP> app;
    std::thread thread;
    int status = -1;
};

// ---- Icon and balloons ----------------------------------------------------------------------------------------------

TEST_F(HostApp, HasItsIconAsSoonAsThereIsAPlaceForIt)
{
    ResetFakeShell(2, false);
    Start();
    const BALLOON balloon = {L"T", L"text", true};
    CallOnWindow(&app->window, [&] { TellUser(&app->tray.notices, app->window.hWnd, app->tray.isThere, balloon); });
    const auto isThere = [this] {
        Send(WM_TIMER, TIMER_TRAY);
        return LookAtIcon().isThere;
    };
    EXPECT_TRUE(WaitUntil(isThere, LONG_ENOUGH));
    EXPECT_EQ(LookAtIcon().adds, 3);
    EXPECT_EQ(LookAtIcon().balloons, 1) << "what had waited for the icon";
    Send(WM_TIMER, TIMER_TRAY);
    EXPECT_EQ(LookAtIcon().adds, 3) << "a late timer message tries no more";

    RestartFakeShell();
    Send(RegisterWindowMessageW(L"TaskbarCreated"));
    EXPECT_TRUE(LookAtIcon().isThere);
    EXPECT_EQ(LookAtIcon().balloons, 1) << "told once";
    Stop();
    EXPECT_FALSE(LookAtIcon().isThere);
}

TEST_F(HostApp, TakesAnIconThatWasThoughtRefusedForShown)
{
    ResetFakeShell(1, true);
    Start();
    EXPECT_TRUE(LookAtIcon().isThere);
    CallOnWindow(&app->window, [this] { EXPECT_TRUE(app->tray.isThere); });
}

TEST(Balloon, HasWhatTheShellCanTake)
{
    EXPECT_EQ(NotifyIconDataSize(4), 152u);
    EXPECT_EQ(NotifyIconDataSize(5), 936u);
    EXPECT_EQ(NotifyIconDataSize(6), 952u);

    ResetFakeShell(0, false);
    AddTrayIcon(nullptr, nullptr);
    ShowBalloon(nullptr, {std::wstring(100, L't'), L"一行目\n" + std::wstring(300, L'x'), true});
    const NOTIFYICONDATAW balloon = LookAtIcon().balloon;
    EXPECT_EQ(balloon.uFlags, static_cast<UINT>(NIF_INFO));
    EXPECT_EQ(balloon.dwInfoFlags, static_cast<DWORD>(NIIF_WARNING));
    EXPECT_EQ(std::wstring(balloon.szInfoTitle), std::wstring(62, L't') + L"…");
    EXPECT_EQ(std::wstring(balloon.szInfo), L"一行目…");
}

TEST(Balloon, IsCutAtALineOrACharacter)
{
    const struct {
        const wchar_t *text;
        size_t limit;
        const wchar_t *cut;
    } cases[] = {
        {L"", 8, L""},
        {L"1234567", 8, L"1234567"},
        {L"12345678", 8, L"123456…"},
        {L"12\n45678", 8, L"12…"},
        {L"123456\n8", 8, L"123456…"},
        {L"\n2345678", 8, L"\n23456…"},
        {L"12345\xD83D\xDE00x", 8, L"12345…"},
    };
    for (const auto &one : cases)
        EXPECT_EQ(CutBalloonText(one.text, one.limit), one.cut);
}

TEST(Notices, AreTellingOfEachMatterOnce)
{
    NOTICES notices = {};
    const struct {
        NOTICEMATTER matter;
        const wchar_t *text;
        bool isNews;
    } steps[] = {
        {MATTER_TROUBLE, L"", false},   {MATTER_TROUBLE, L"none", true}, {MATTER_TROUBLE, L"none", false},
        {MATTER_CHANGE, L"none", true}, {MATTER_TROUBLE, L"bad", true},  {MATTER_TROUBLE, L"", false},
        {MATTER_TROUBLE, L"bad", true}, {MATTER_CHANGE, L"none", false},
    };
    for (const auto &step : steps)
        EXPECT_EQ(IsNews(&notices, step.matter, step.text), step.isNews) << &step - steps;
}

// ---- A program that has the host in it ------------------------------------------------------------------------------

TEST_F(HostApp, LetsAProgramThatHasItPrepareAndBegin)
{
    Start([](HOSTAPP *host) {
        host->prepare = [](HOSTAPP *, std::string *) { return Note("prepare ") == 1; };
        host->begin = [](HOSTAPP *) { Note("begin "); };
        host->reload.keepsMonitors = true;
    });
    ASSERT_TRUE(WaitForSlots("prepare start begin "));
    Send(WM_COMMAND, IDM_DETECT_MONITORS);
    Stop();
    EXPECT_EQ(Slots(), "prepare start begin stop ") << "not started anew for other monitors";
}

// ---- The end of the session -----------------------------------------------------------------------------------------

// An access to a monitor that takes 20 seconds hangs meanwhile: its answer comes before the plug-in has stopped.
TEST_F(HostApp, StopsThePluginWhenTheSessionEnds)
{
    g_FakePlugin.slots[PLUGIN_SLOT_STOP] = [](void *) {
        s_wasAnsweredAtStop = WaitForReceived(2).size() == 2;
        return Note("stop ");
    };
    Start();
    SendFromPlugin(HOST_GET_VCP, 0x12, std::vector<BYTE>(4, 0));
    EXPECT_TRUE(Send(WM_QUERYENDSESSION));
    Send(WM_ENDSESSION, FALSE);
    EXPECT_EQ(Slots(), "start ") << "another program has kept the session from ending";
    Send(WM_ENDSESSION, TRUE);
    EXPECT_EQ(Slots(), "start stop ") << "Windows may end the process now";
    EXPECT_TRUE(s_wasAnsweredAtStop);
    thread.join();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Slots(), "start stop ") << "once";
}

// ---- Monitors that come and go --------------------------------------------------------------------------------------

TEST_F(HostApp, TakesUpAMonitorThatIsPlugged)
{
    Start();
    SendFromPlugin(HOST_NOTICE, HOST_NOTICE_STARTED, {});
    Send(WM_DISPLAYCHANGE); // without a change, as a look in passing
    app->monitors.simulation.monitors[0].features[VCP_BRIGHTNESS].value = 33;
    Describe("2", "");
    Send(WM_DISPLAYCHANGE);
    ASSERT_TRUE(WaitForSlots("start stop start "));
    EXPECT_TRUE(WaitUntil([] { return LookAtIcon().balloons == 1; }, LONG_ENOUGH));
    EXPECT_EQ(std::wstring(LookAtIcon().balloon.szInfo), L"2 台のモニタを検出しました。");
    CallOnWindow(&app->window, [this] {
        EXPECT_EQ(MonitorsInUse(&app->monitors).size(), 2u);
        EXPECT_EQ(Brightness(), 33) << "the one that stayed is as it was";
        EXPECT_FALSE(HasNotice(&app->plugin.router, HOST_NOTICE_STARTED))
            << "what the former plug-in said is forgotten";
    });
    EXPECT_TRUE(WaitUntil([] { return ReceivedCount() == 2; }, LONG_ENOUGH)) << "greeted again";
    EXPECT_EQ(LookAtIcon().adds, 1) << "the icon has stayed";

    // And lets one go, when the user asks, together with a description that is not what it was.
    DeleteFileW(Widen(FileOf("2")).c_str());
    Describe("1", "[vcp]\n10 = 70 / 100\n");
    Send(WM_COMMAND, IDM_DETECT_MONITORS);
    ASSERT_TRUE(WaitForSlots("start stop start stop start "));
    CallOnWindow(&app->window, [this] {
        EXPECT_EQ(MonitorsInUse(&app->monitors).size(), 1u);
        EXPECT_EQ(Brightness(), 70);
    });
}

// What cannot be read now, as a file that is just being written, changes nothing; nor does an event without a change.
TEST_F(HostApp, KeepsItsMonitorsWhenNothingCanBeSaid)
{
    Start();
    Describe("2", "[nonsense");
    Send(WM_DISPLAYCHANGE);
    Send(WM_COMMAND, IDM_DETECT_MONITORS);
    ASSERT_TRUE(WaitForSlots("start stop start ")) << "by the user's wish, not by the event";
    CallOnWindow(&app->window, [this] { EXPECT_EQ(MonitorsInUse(&app->monitors).size(), 1u); });
}

TEST_F(HostApp, OpensThePanelAgainOnceThePluginHasStarted)
{
    Start();
    SendFromPlugin(HOST_NOTICE, HOST_NOTICE_STARTED, {});
    const HWND panel = CreateWindowExW(0, L"#32770", L"Lumivane 2", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr,
                                       nullptr, nullptr);
    const HWND tree = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 9, 9, panel,
                                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_PANEL_TREE)), nullptr, nullptr);
    ASSERT_NE(tree, nullptr);
    Send(WM_COMMAND, IDM_DETECT_MONITORS);
    DestroyWindow(panel);
    ASSERT_TRUE(WaitForSlots("start stop start "));
    SendFromPlugin(HOST_NOTICE, HOST_NOTICE_STARTED, {});
    ASSERT_TRUE(WaitForSlots("start stop start panel "));

    Send(WM_COMMAND, IDM_DETECT_MONITORS);
    ASSERT_TRUE(WaitForSlots("start stop start panel stop start "));
    SendFromPlugin(HOST_NOTICE, HOST_NOTICE_STARTED, {});
    Send(WM_TIMER, TIMER_START_UP);
    EXPECT_EQ(Slots(), "start stop start panel stop start ") << "it was closed this time";
}

TEST_F(HostApp, SaysWhenThePluginIsGoneAndTriesAgain)
{
    Start();
    g_FakePlugin.exportResult = 0;
    Send(WM_COMMAND, IDM_DETECT_MONITORS);
    const auto isTold = [] {
        return std::wstring(LookAtIcon().balloon.szInfo).find(L"プラグインを開始できません") == 0;
    };
    EXPECT_TRUE(WaitUntil(isTold, LONG_ENOUGH));
    Send(WM_COMMAND, IDM_ABOUT);
    CallOnWindow(&app->window, [this] { OpenPanel(&app->plugin); });
    EXPECT_EQ(Slots(), "start stop ") << "nothing is called that is not there";
    g_FakePlugin.exportResult = 1;
    Send(WM_COMMAND, IDM_DETECT_MONITORS);
    ASSERT_TRUE(WaitForSlots("start stop start "));
    SendFromPlugin(HOST_NOTICE, HOST_NOTICE_STARTED, {});
    EXPECT_TRUE(WaitForSlots("start stop start panel ")) << "the wish was kept";
}

// ---- The start at log-on --------------------------------------------------------------------------------------------

// Each time on a registry of its own; one that takes no lasting keys cannot be written.
TEST_F(HostApp, SwitchesTheStartAtLogOnFromTheMenu)
{
    static const wchar_t scratch[] = L"Software\\trayhub_tests host";
    for (const DWORD options : {REG_OPTION_NON_VOLATILE, REG_OPTION_VOLATILE}) {
        HKEY key = nullptr;
        ASSERT_EQ(
            RegCreateKeyExW(HKEY_CURRENT_USER, scratch, 0, nullptr, options, KEY_ALL_ACCESS, nullptr, &key, nullptr),
            ERROR_SUCCESS);
        RegOverridePredefKey(HKEY_CURRENT_USER, key);
        Start();
        if (options == REG_OPTION_NON_VOLATILE) {
            Send(WM_COMMAND, IDM_AUTOSTART);
            EXPECT_TRUE(IsAutostartOn(ProgramPath()));
            Send(WM_COMMAND, IDM_AUTOSTART);
        } else {
            PostMessageW(app->window.hWnd, WM_COMMAND, IDM_AUTOSTART, 0);
            HWND box = nullptr;
            EXPECT_TRUE(WaitUntil([&] { return (box = FindWindowW(L"#32770", L"Trayhub")) != nullptr; }, LONG_ENOUGH));
            PostMessageW(box, WM_COMMAND, IDOK, 0);
            EXPECT_TRUE(WaitUntil([&] { return !IsWindow(box); }, LONG_ENOUGH));
        }
        EXPECT_FALSE(IsAutostartOn(ProgramPath()));
        Stop();
        ResetFakePlugin(); // counts its greetings anew
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        RegCloseKey(key);
        SHDeleteKeyW(HKEY_CURRENT_USER, scratch);
    }
}
