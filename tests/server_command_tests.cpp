// What each command of the management server does, over real sockets.
#include "server/server_command.h"

#include "monitor/color_features.h"
#include "panel/resources/resource.h"
#include "server/server_state.h"
#include "support/server_session.h"

namespace {

// A window that is both, the communication log and a program that hears of the monitors' power.
class LogWindow {
public:
    explicit LogWindow(TestHost &host) : m_host(host)
    {
        m_window = m_host.MakeWindow("lvkernel_tests_log", Proc);
        m_host.Run([this] {
            CreateWindowA("EDIT", "", WS_CHILD, 0, 0, 5, 5, m_window, reinterpret_cast<HMENU>(IDC_NETWORK_LOG), nullptr,
                          nullptr);
        });
        g_hCommLogWnd = m_window;
    }
    ~LogWindow()
    {
        g_hCommLogWnd = nullptr;
        m_host.DropWindow(m_window);
    }
    LogWindow(const LogWindow &) = delete;
    LogWindow &operator=(const LogWindow &) = delete;

    // The line since the last call, "-" when there was none; then the power commands, such as " power 2".
    std::string Take()
    {
        char line[128];
        GetDlgItemTextA(m_window, IDC_NETWORK_LOG, line, sizeof line);
        SetDlgItemTextA(m_window, IDC_NETWORK_LOG, "-");
        return line + std::exchange(s_power, "");
    }

private:
    static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_SYSCOMMAND && wParam == SC_MONITORPOWER) {
            s_power += " power " + std::to_string(lParam);
            return 0;
        }
        return DefWindowProcA(window, message, wParam, lParam);
    }

    static std::string s_power;
    TestHost &m_host;
    HWND m_window;
};
std::string LogWindow::s_power;

using Messages = std::vector<std::pair<uint8_t, std::string>>;

Messages Done(const std::string &text)
{
    return {{SERVER_STATUS_DONE, text + '\0'}};
}

} // namespace

TEST_F(ServerTest, EveryCommand)
{
    const SERVERCOLORS colors = {0, 33, 44, 55, 0, 0, 0, 5, 0};
    server.answer = std::string(reinterpret_cast<const char *>(&colors), sizeof colors);
    strcpy(g_szUserName, "tanaka");
    memset(g_szUserName + 6, 0, sizeof g_szUserName - 6);
    g_nCurMonitor = 1; // chosen in the panel; the server does not name one
    const Messages changed = Done(Ansi("色情報を変更しました。"));
    struct CASE {
        int command;
        Lines monitor;
        std::string log; // "-": none
        Messages messages;
        std::string box = {};
    };
    std::vector<CASE> cases = {
        {2, {"set 1 12 = 22136"}, "Receive [LVS_SETFEATURE]", changed},
        {18,
         {"set 1 E0 = 0", "set 1 10 = 44", "set 1 12 = 55", "set 1 14 = 5"},
         "Receive [LVS_SETFEATUREALL]",
         {{SERVER_STATUS_DATA, ""}, changed[0]}},
        {32, {}, "DPMS OFF power 2", Done("DPMS OFF")},
        {33, {}, "DPMS ON power -1", Done("DPMS ON")},
        {34, {"set 1 E0 = 0"}, "ECO Mode Off", Done("ECO Mode Off")},
        {35, {"set 1 E0 = 1"}, "ECO Mode On", Done("ECO Mode On")},
        {36, {"set 1 1E = 1"}, "Auto Adjust Done", Done("Auto Adjust Done")},
        {48, {"set 1 60 = 1"}, "Select Analog RGB", Done("Select Analog RGB")},
        {49, {"set 1 60 = 3"}, "Select Digital RGB", Done("Select Digital RGB")},
        {50, {"set 1 60 = 9"}, "Select TV Tuner", Done("Select TV Tuner")},
        {51, {"set 1 60 = 7"}, "Select S-Video", Done("Select S-Video")},
        {52, {"set 1 60 = 5"}, "Select Composite", Done("Select Composite")},
        {128,
         {},
         "Server address : 127.0.0.1",
         {{SERVER_STATUS_IDENTITY, "tanaka" + std::string(58, '\0')}, Done("Ready")[0]}},
        {129, {}, "Requested Version Information", {{SERVER_STATUS_DATA, Done("3.00")[0].second}, Done("3.00")[0]}},
        {160, {}, "-", Done(""), "- OK: "},
    };
    for (const int unsupported : {1, 3, 4, 5, 17, 144})
        cases.push_back({unsupported, {}, "", Done("Not Support")});
    // All that have a neighbour with a meaning.
    for (const int unknown : {0, 6, 16, 19, 31, 37, 47, 53, 127, 131, 143, 145, 159, 161, 255})
        cases.push_back({unknown,
                         {},
                         "-",
                         {{SERVER_STATUS_REFUSED, Done("Not Support command")[0].second}},
                         "x OK: Unknown command(" + std::to_string(unknown) + ") was found\n"});
    LogWindow log(host);
    log.Take();
    BoxAnswerer answerer("Lumivane 2", IDOK);
    const auto ask = [&](const CASE &c) {
        SCOPED_TRACE(c.command);
        const auto messages = server.Ask(Datagram(static_cast<uint8_t>(c.command), 0x12, 0x12345678));
        EXPECT_TRUE(std::equal(messages.begin(), messages.end(), c.messages.begin(), c.messages.end()));
        for (const ServerMessage &message : messages) {
            EXPECT_EQ(message.from, g_dwMyIpAddr);
            EXPECT_EQ(message.to, 0x0100007Fu);
        }
        EXPECT_EQ(host.TakeLog(), c.monitor);
        EXPECT_EQ(log.Take(), c.log);
        EXPECT_EQ(answerer.TakeBoxes(), c.box.empty() ? Lines{} : Lines{c.box});
    };
    for (const CASE &c : cases)
        ask(c);
    EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, "Lumivane2", "EnableChangeName").value_or(0), 0u);
    ask({130, {}, "Enable to change User and Group Name", Done("Enable to change User and Group Name")});
    EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, "Lumivane2", "EnableChangeName"), 1u);
    EXPECT_STREQ(g_szServerAddr, "127.0.0.1");
    EXPECT_EQ(g_dwServerAddr, 0x0100007Fu);
}

TEST_F(ServerTest, WrittenFeaturesAreKeptInTheCachedSettings)
{
    const COLORSETTING before = {0, 1, 2, 3, 4, 5, 6, 7, 0};
    const struct {
        DWORD eco;
        uint8_t command;
        uint8_t code;
        DWORD value;
        COLORSETTING after;
        const char *written;
    } cases[] = {
        {0, 2, 0x10, 0x10032, {0, 1, 50, 3, 4, 5, 6, 7, 0}, "set 0 10 = 50"},
        {9, 2, 0x10, 50, {9, 50, 2, 3, 4, 5, 6, 7, 0}, "set 0 10 = 50"},
        {0, 2, 0x12, 50, {0, 1, 2, 50, 4, 5, 6, 7, 0}, "set 0 12 = 50"},
        {0, 2, 0x14, 0xFFFF, {0, 1, 2, 3, 4, 5, 6, -1, 0}, "set 0 14 = 65535"},
        {0, 2, 0x16, 50, {0, 1, 2, 3, 50, 5, 6, 7, 0}, "set 0 16 = 50"},
        {0, 2, 0x18, 50, {0, 1, 2, 3, 4, 50, 6, 7, 0}, "set 0 18 = 50"},
        {0, 2, 0x1A, 50, {0, 1, 2, 3, 4, 5, 50, 7, 0}, "set 0 1A = 50"},
        {0, 2, 0xE0, 65537, {65537, 1, 2, 3, 4, 5, 6, 7, 0}, "set 0 E0 = 1"},
        {0, 2, 0x60, 3, {0, 1, 2, 3, 4, 5, 6, 7, 0}, "set 0 60 = 3"},
        {0, 35, 0, 0, {1, 1, 2, 3, 4, 5, 6, 7, 0}, "set 0 E0 = 1"},
        {9, 34, 0, 0, {0, 1, 2, 3, 4, 5, 6, 7, 0}, "set 0 E0 = 0"},
    };
    for (const auto &c : cases) {
        g_CurSetting[0] = before;
        g_CurSetting[0].dwEco = c.eco;
        ASSERT_EQ(server.Ask(Datagram(c.command, c.code, c.value)).size(), 1u);
        EXPECT_EQ(host.TakeLog(), Lines{c.written});
        EXPECT_EQ(memcmp(&g_CurSetting[0], &c.after, sizeof c.after), 0) << int(c.command) << " " << int(c.code);
    }
    for (const LONG monitor : {-1L, 10L, 999L}) {
        g_nCurMonitor = monitor;
        EXPECT_EQ(server.Ask(Datagram(2, 0x10, 77)).size(), 1u) << "no cached settings to harm";
        EXPECT_EQ(server.Ask(Datagram(18)).size(), 2u);
    }
}

TEST_F(ServerTest, SettingsThatTheServerSends)
{
    const COLORSETTING before = {0, 31, 0x0142, 33, 34, 35, 36, 11, 0};
    const auto bytes = [](DWORD eco, int16_t preset, size_t length) {
        const SERVERCOLORS sent = {eco, 11, 22, 3, 4, 5, 6, preset, 0xFFFF};
        return std::string(reinterpret_cast<const char *>(&sent), sizeof sent).substr(0, length);
    };
    // A record for ECO mode with a user preset, and how much of it each length reaches.
    const Lines all = {"set 0 E0 = 1", "set 0 10 = 11", "set 0 12 = 3", "set 0 14 = 11",
                       "set 0 16 = 4", "set 0 18 = 5",  "set 0 1A = 6"};
    const auto first = [&all](size_t count) { return Lines(all.begin(), all.begin() + static_cast<int>(count)); };
    const struct {
        std::string what;
        std::optional<std::string> answer;
        Lines written;
    } cases[] = {
        {"accepts and closes", std::nullopt, {}},
        {"sends nothing", "", {}},
        {"ends in the ECO mode", bytes(1, 11, 3), {}},
        {"ends in the brightness", bytes(1, 11, 5), first(1)},
        {"ends in the other brightness", bytes(1, 11, 7), first(2)},
        {"ends in the brightness without ECO mode", bytes(0, 11, 7), {"set 0 E0 = 0"}},
        {"ends in the preset", bytes(1, 11, 17), first(3)},
        {"sends all but the filling", bytes(1, 11, 18), all},
        {"sends a record without gains",
         bytes(0, 10, 20),
         {"set 0 E0 = 0", "set 0 10 = 22", "set 0 12 = 3", "set 0 14 = 10"}},
        {"sends too much", bytes(1, 11, 20) + std::string(108, 'x'), all},
    };
    g_CurSetting[0] = before;
    for (const auto &c : cases) {
        server.answer = c.answer;
        ASSERT_EQ(server.Ask(Datagram(18)).size(), 2u) << c.what;
        EXPECT_EQ(host.TakeLog(), c.written) << c.what;
        EXPECT_EQ(memcmp(&g_CurSetting[0], &before, sizeof before), 0) << c.what;
    }
    server.StopListening();
    server.Send(Datagram(18));
    ASSERT_TRUE(SendUntilLogged(Datagram(SERVER_ECO_ON), "set 0 E0 = 1")) << "carried out behind it";
    for (const std::string &line : host.TakeLog())
        EXPECT_EQ(line, "set 0 E0 = 1") << "there is nobody to ask, so nothing is written";
}
