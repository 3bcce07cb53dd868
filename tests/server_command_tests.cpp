// What each command of the management server does, over real sockets.
#include "server/server_command.h"

#include "monitor/color_features.h"
#include "monitor/monitor_table.h"
#include "monitor/selection.h"
#include "panel/resources/resource.h"
#include "server/server_state.h"
#include "support/box_answerer.h"
#include "support/server_session.h"
#include "support/text.h"

namespace {

// A window that is both, the communication log and a program that hears of the monitors' power.
class LogWindow {
public:
    explicit LogWindow(TestHost &host) : m_host(host)
    {
        m_host.Run([this] {
            WNDCLASSA windowClass = {};
            windowClass.lpfnWndProc = Proc;
            windowClass.hInstance = GetModuleHandleA(nullptr);
            windowClass.lpszClassName = "lvkernel_tests_log";
            RegisterClassA(&windowClass);
            m_window = CreateWindowA("lvkernel_tests_log", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                     windowClass.hInstance, nullptr);
            CreateWindowA("EDIT", "", WS_CHILD, 0, 0, 5, 5, m_window, reinterpret_cast<HMENU>(IDC_NETWORK_LOG),
                          windowClass.hInstance, nullptr);
        });
        g_hCommLogWnd = m_window;
    }
    ~LogWindow()
    {
        g_hCommLogWnd = nullptr;
        m_host.Run([this] { DestroyWindow(m_window); });
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

std::string WithZero(const std::string &text)
{
    return text + '\0';
}

// What a command brings about.
struct Effect {
    Lines monitor;
    std::string log = "-";
    Messages messages;
    std::string box = {};
};

// Names of the user and the server are those of the test below.
Effect ExpectedEffect(int command)
{
    const auto same = [](const Lines &monitor, const std::string &text) {
        return Effect{monitor, text, {{SERVER_STATUS_DONE, WithZero(text)}}};
    };
    const std::string changed = WithZero(Ansi("色情報を変更しました。"));
    switch (command) {
    case 1:
    case 3:
    case 4:
    case 5:
    case 17:
    case 144:
        return {{}, "", {{SERVER_STATUS_DONE, WithZero("Not Support")}}};
    case 2:
        return {{"set 1 12 = 22136"}, "Receive [LVS_SETFEATURE]", {{SERVER_STATUS_DONE, changed}}};
    case 18:
        return {{"set 1 E0 = 0", "set 1 10 = 44", "set 1 12 = 55", "set 1 14 = 5"},
                "Receive [LVS_SETFEATUREALL]",
                {{SERVER_STATUS_DATA, ""}, {SERVER_STATUS_DONE, changed}}};
    case 32:
        return {{}, "DPMS OFF power 2", {{SERVER_STATUS_DONE, WithZero("DPMS OFF")}}};
    case 33:
        return {{}, "DPMS ON power -1", {{SERVER_STATUS_DONE, WithZero("DPMS ON")}}};
    case 34:
        return same({"set 1 E0 = 0"}, "ECO Mode Off");
    case 35:
        return same({"set 1 E0 = 1"}, "ECO Mode On");
    case 36:
        return same({"set 1 1E = 1"}, "Auto Adjust Done");
    case 48:
        return same({"set 1 60 = 1"}, "Select Analog RGB");
    case 49:
        return same({"set 1 60 = 3"}, "Select Digital RGB");
    case 50:
        return same({"set 1 60 = 9"}, "Select TV Tuner");
    case 51:
        return same({"set 1 60 = 7"}, "Select S-Video");
    case 52:
        return same({"set 1 60 = 5"}, "Select Composite");
    case 128:
        return {{},
                "Server address : 127.0.0.1",
                {{SERVER_STATUS_IDENTITY, "tanaka" + std::string(58, '\0')}, {SERVER_STATUS_DONE, WithZero("Ready")}}};
    case 129:
        return {{},
                "Requested Version Information",
                {{SERVER_STATUS_DATA, WithZero("3.00")}, {SERVER_STATUS_DONE, WithZero("3.00")}}};
    case 130:
        return same({}, "Enable to change User and Group Name");
    case 160:
        return {{}, "-", {{SERVER_STATUS_DONE, WithZero("")}}, "' '"};
    }
    return {{},
            "-",
            {{SERVER_STATUS_REFUSED, WithZero("Not Support command")}},
            "'x'Unknown command(" + std::to_string(command) + ") was found"};
}

std::string BoxText(const AnsweredBox &box)
{
    return std::string("'") + box.icon + "'" + box.text.substr(0, box.text.find_first_of("\r\n"));
}

} // namespace

TEST_F(ServerTest, EveryCommandNumber)
{
    const SERVERCOLORS colors = {0, 33, 44, 55, 0, 0, 0, 5, 0};
    server.answer = std::string(reinterpret_cast<const char *>(&colors), sizeof colors);
    strcpy(g_szUserName, "tanaka");
    memset(g_szUserName + 6, 0, sizeof g_szUserName - 6);
    g_nCurMonitor = 1; // chosen in the panel; the server does not name one
    LogWindow log(host);
    log.Take();
    BoxAnswerer answerer("Lumivane 2", IDOK);
    size_t boxes = 0;
    for (int command = 0; command < 256; ++command) {
        const Effect expected = ExpectedEffect(command);
        const auto messages = server.Ask(Datagram(static_cast<uint8_t>(command), 0x12, 0x12345678));
        EXPECT_TRUE(std::equal(messages.begin(), messages.end(), expected.messages.begin(), expected.messages.end()))
            << command << ": " << messages.size() << " messages";
        for (const ServerMessage &message : messages) {
            EXPECT_EQ(message.from, g_dwMyIpAddr) << command;
            EXPECT_EQ(message.to, 0x0100007Fu) << command;
        }
        EXPECT_EQ(host.TakeLog(), expected.monitor) << command;
        EXPECT_EQ(log.Take(), expected.log) << command;
        const auto shown = answerer.Boxes();
        boxes += !expected.box.empty();
        ASSERT_EQ(shown.size(), boxes) << command;
        if (!expected.box.empty()) {
            EXPECT_EQ(BoxText(shown.back()), expected.box);
            EXPECT_FALSE(shown.back().owned);
        }
        EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, "Lumivane2", "EnableChangeName").value_or(0), command >= 130 ? 1u : 0u);
    }
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
