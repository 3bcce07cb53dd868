// The plug-in loader and the command line. The test program exports a scripted plug-in, so it can be loaded as one.
#include <gtest/gtest.h>

#include "host/base/text.h"
#include "host/options.h"
#include "host/plugin_loader.h"
#include "host/tests/support/fake_plugin.h"

static std::string OwnPath()
{
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return Narrow(path);
}

TEST(PluginLoader, RefusesWhatIsNoGoodPlugin)
{
    const struct {
        const char *reason;
        std::string path;
        void (*breakIt)();
    } cases[] = {
        {"cannot be loaded", "no such plugin.dll", [] {}},
        {"code page", "C:\\\xED\x95\x9C\xEA\xB8\x80\\lvkernel.dll", [] {}}, // Korean, of which a Japanese one has none
        {"does not export GetPluginFunc", "kernel32.dll", [] {}},
        {"refuses to give its table", OwnPath(), [] { g_FakePlugin.exportResult = 0; }},
        {"has not 18 entries", OwnPath(), [] { g_FakePlugin.count = 17; }},
        {"has not 18 entries", OwnPath(), [] { g_FakePlugin.count = 0x7FFFFFFF; }},
        {"gives no slot table", OwnPath(), [] { g_FakePlugin.table = nullptr; }},
        {"is missing", OwnPath(), [] { g_FakePlugin.slots[PLUGIN_SLOT_STOP] = nullptr; }},
    };
    for (const auto &one : cases) {
        ResetFakePlugin();
        one.breakIt();
        PLUGIN plugin;
        std::string error;
        EXPECT_FALSE(LoadPlugin(one.path, &plugin, &error)) << one.reason;
        EXPECT_EQ(error.rfind(one.path + ": ", 0), 0u) << error;
        EXPECT_NE(error.find(one.reason), std::string::npos) << error;
        EXPECT_EQ(plugin.hModule, nullptr);
    }
    ResetFakePlugin();
}

TEST(PluginLoader, DrivesTheFirstSlots)
{
    ResetFakePlugin();
    static HOSTPACKET init;
    static HWND window;
    g_FakePlugin.slots[PLUGIN_SLOT_INIT] = [](void *packet) {
        init = *static_cast<HOSTPACKET *>(packet);
        window = *reinterpret_cast<HWND *>(init.lpData);
        return 1;
    };
    g_FakePlugin.slots[PLUGIN_SLOT_INFO] = [](void *packet) {
        static PLUGININFO info = {"T", "\x8A\x4A\x8E\x6E", nullptr, {0, 0}};
        static_cast<HOSTPACKET *>(packet)->dwDataSize = sizeof info;
        static_cast<HOSTPACKET *>(packet)->lpData = reinterpret_cast<HOSTDATA *>(&info);
        return 1;
    };
    PLUGIN plugin;
    std::string error;
    ASSERT_TRUE(LoadPlugin(OwnPath(), &plugin, &error)) << error;
    const HWND handle = reinterpret_cast<HWND>(0x1234);
    EXPECT_TRUE(InitPlugin(&plugin, handle, 2));
    EXPECT_EQ(window, handle);
    EXPECT_EQ(init.dwDataSize, 4u);
    EXPECT_EQ(init.dst.wID, 2);
    const PLUGINTEXTS texts = GetPluginTexts(&plugin);
    EXPECT_EQ(texts.title, L"T");
    EXPECT_EQ(texts.description, L"開始") << "Shift-JIS whatever the code page of the system is";
    EXPECT_EQ(texts.version, L"");
    g_FakePlugin.slots[PLUGIN_SLOT_INFO] = [](void *) { return 0; };
    EXPECT_EQ(GetPluginTexts(&plugin).title, L"");
    UnloadPlugin(&plugin);
    EXPECT_EQ(plugin.slots, nullptr);
    ResetFakePlugin();
}

TEST(Options, AreReadOrRefused)
{
    const struct {
        std::vector<std::string> words;
        const char *error; // null: good
    } cases[] = {
        {{}, nullptr},
        {{"--monitors", "a.ini, b.ini", "--windows", "--no-tray", "--panel", "--quit", "--log", "l", "--plugin", "p"},
         nullptr},
        {{"--command", "count", "--command", "get-vcp 10"}, nullptr},
        {{"--press", "1:MENU", "--press", " 2 : 6"}, nullptr},
        {{"--list", "--fresh"}, nullptr},
        {{"--list", "--monitors", "none"}, "leave --monitors out"},
        {{"--read", "100"}, "VCP code"},
        {{"--monitors", "none", "--report", "r"}, "leave --monitors out"},
        {{"--press"}, "--press needs a WHAT"},
        {{"--press", "MENU"}, "--press 'MENU' is not MONITOR:BUTTON"},
        {{"--window"}, "'--window' is no option"},
        {{"file.ini"}, "'file.ini' is no option"},
        {{"--log"}, "--log needs a FILE"},
        {{"--log", ""}, "--log needs a FILE"},
        {{"--monitors", "a,,b"}, "empty name"},
        {{"--command", "make-coffee"}, "no command"},
        {{"--command", "set-vcp 10"}, "set-vcp takes"},
    };
    for (const auto &one : cases) {
        OPTIONS options;
        std::string error;
        EXPECT_EQ(ParseOptions(one.words, &options, &error), one.error == nullptr) << error;
        EXPECT_NE(error.find(one.error ? one.error : ""), std::string::npos) << error;
    }
    OPTIONS options;
    std::string error;
    ParseOptions(cases[1].words, &options, &error);
    EXPECT_EQ(options.monitors, (std::vector<std::string>{"a.ini", "b.ini"}));
    EXPECT_TRUE(options.windows && options.noTray && options.panel && options.quit && !options.help);
    EXPECT_EQ(options.log + options.plugin, "lp");
    EXPECT_FALSE(options.windowsMonitors);
    ParseOptions({"--monitors", "none"}, &options, &error);
    EXPECT_TRUE(options.monitors.empty() && !options.windowsMonitors);
    ParseOptions({}, &options, &error);
    EXPECT_TRUE(options.monitors.empty() && options.windowsMonitors);
    for (const char *word : {"--help", "--plugin", "--monitors", "--press", "shutdown-pc", "set-settings"})
        EXPECT_NE(HelpText().find(word), std::string::npos) << word;
}
