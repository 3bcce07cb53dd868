// The listener: its life, and what it makes of datagrams of any kind.
#include "server/server_link.h"

#include "server/server_state.h"
#include "support/server_session.h"

#include <winsock.h>

using namespace std::string_literals;

namespace {

// A test starts the link by itself.
class ServerLinkTest : public LinkTest {
protected:
    ServerLinkTest() { host.monitors = {ColorMonitor("NRV-PA1")}; }

    bool IsAnswered() { return server.Ask(Datagram(SERVER_INPUT_DIGITAL)).size() == 1; }

    TestServer server;
};

DWORD TimeOf(const std::function<void()> &what)
{
    const DWORD start = GetTickCount();
    what();
    return GetTickCount() - start;
}

} // namespace

TEST_F(ServerTest, SizesOfDatagrams)
{
    const std::string input = Datagram(SERVER_INPUT_DIGITAL);
    const struct {
        std::string datagram;
        const char *written;
    } cases[] = {
        {input, "set 0 60 = 3"},
        {Datagram(SERVER_ECO_ON) + std::string(236, 'x'), "set 0 E0 = 1"},
        {Datagram(SERVER_AUTO_ADJUST) + std::string(280, 'x'), "set 0 1E = 1"},
        // Behind a short one stands what the one before left.
        {std::string(1, 127), "set 0 1E = 1"},
        {input.substr(0, 17), "set 0 60 = 3"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(server.Ask(c.datagram).size(), 1u) << c.datagram.size();
        EXPECT_EQ(host.TakeLog(), Lines{c.written}) << c.datagram.size();
    }
}

TEST_F(ServerTest, TheFirstDatagramMayBeShort)
{
    BoxAnswerer answerer("Lumivane 2", IDOK);
    server.Ask(Datagram(SERVER_ECO_ON).substr(0, 4)); // the rest is zero: command 0, of this server
    EXPECT_EQ(answerer.Boxes(), Lines{"x OK: Unknown command(0) was found\n"});
}

TEST_F(ServerTest, CommandsForOthersAreDropped)
{
    char name[256] = "";
    gethostname(name, sizeof name);
    EXPECT_EQ(memcmp(gethostbyname(name)->h_addr_list[0], &g_dwMyIpAddr, sizeof(DWORD)), 0);
    server.Send(Datagram(SERVER_ECO_ON, 0, 0, g_dwMyIpAddr ^ 0x01000000));
    EXPECT_TRUE(server.IsLeftAlone());
    EXPECT_EQ(server.Ask(Datagram(SERVER_INPUT_DIGITAL, 0, 0, g_dwMyIpAddr)).size(), 1u);
    EXPECT_EQ(host.TakeLog(), Lines{"set 0 60 = 3"});
}

TEST_F(ServerTest, AServerThatDoesNotListenIsServedAllTheSame)
{
    server.StopListening();
    EXPECT_TRUE(SendUntilLogged(Datagram(SERVER_INPUT_DIGITAL), "set 0 60 = 3"));
    server.Send(Datagram(SERVER_VERSION));
    EXPECT_TRUE(SendUntilLogged(Datagram(SERVER_ECO_ON), "set 0 E0 = 1"));
}

TEST_F(ServerTest, TheUsersPortsAndStopChangeNothing)
{
    EXPECT_EQ(g_wUdpPort, 9700);
    EXPECT_EQ(g_wTcpPort, 9700);
    g_wUdpPort = g_wTcpPort = 9800;
    EXPECT_EQ(g_hServerLinkWnd, nullptr);
    StopServerLink();
    EXPECT_EQ(server.Ask(Datagram(SERVER_INPUT_DIGITAL)).size(), 1u);
}

TEST_F(ServerTest, ManyCommandsLeaveNothingBehind)
{
    // LUMIVANE_STRESS=10000 makes it the long run.
    const char *wanted = getenv("LUMIVANE_STRESS");
    const int rounds = wanted ? atoi(wanted) : 300;
    const uint8_t commands[] = {SERVER_SET_FEATURE, SERVER_SET_ALL, SERVER_ECO_ON,      SERVER_INPUT_TV,
                                SERVER_IDENTITY,    SERVER_VERSION, SERVER_ALLOW_NAMES, SERVER_POWER_ON};
    int unanswered = 0;
    ExpectNothingLeft(rounds / 8, [&] {
        for (const uint8_t command : commands)
            unanswered += server.Ask(Datagram(command, 0x10, 50)).empty();
        server.Ask(Datagram(SERVER_ECO_ON)); // ends the version's connection
    });
    EXPECT_EQ(unanswered, 0);
    printf("%d commands, %d sent again after they were lost between two sockets\n", rounds, server.lost);
}

TEST_F(ServerLinkTest, NamesComeFromTheSettings)
{
    char hostName[17] = "";
    gethostname(hostName, sizeof hostName);
    const struct {
        std::optional<std::string> stored;
        std::string user; // and what is sent behind its zero
        std::string group;
    } cases[] = {
        {std::nullopt, std::string(hostName).substr(0, 16), Ansi("-- 指定なし --")},
        {"sato", "sato", "sato"},
        {"sato\0left"s, "sato\0left"s, "sato"},
        {"", "", ""},
        {std::string(63, 'n'), std::string(63, 'n'), std::string(63, 'n')},
        {std::string(64, 'n'), std::string(hostName).substr(0, 16), Ansi("-- 指定なし --")},
    };
    PutDword(HKEY_CURRENT_USER, "Lumivane2", "IiF", 1); // no first-run set-up of the names
    for (const auto &c : cases) {
        for (const char *name : {"LocalUserName", "LocalGroupName"})
            if (c.stored)
                PutText(HKEY_CURRENT_USER, "Lumivane2", name, *c.stored);
        StartLink();
        const auto messages = server.Ask(Datagram(SERVER_IDENTITY));
        ASSERT_EQ(messages.size(), 2u);
        EXPECT_EQ(messages[0].data, c.user + std::string(64 - c.user.size(), '\0'));
        EXPECT_EQ(g_szGroupName, c.group);
        Stop();
    }
}

TEST_F(ServerLinkTest, StartedTwiceItAnswersEachCommandOnce)
{
    StartLink();
    EXPECT_EQ(CreateServerLinkWindow(g_hKernelWnd), nullptr);
    EXPECT_EQ(g_hServerLinkWnd, nullptr);
    EXPECT_TRUE(IsPortShared());
    for (int round = 0; round < 20; ++round)
        EXPECT_TRUE(IsAnswered());
    EXPECT_TRUE(server.IsLeftAlone());
    for (int start = 0; start < 20; ++start)
        EXPECT_EQ(CreateServerLinkWindow(g_hKernelWnd), nullptr);
    EXPECT_TRUE(IsAnswered());
    InjectFault(Fault::Thread);
    EXPECT_EQ(CreateServerLinkWindow(g_hKernelWnd), nullptr) << "silently";
    Stop();
    EXPECT_TRUE(WaitForPort(false)) << "no listener is left";
}

TEST_F(ServerLinkTest, ItsWindowsCloseEndsTheListeners)
{
    StartLink();
    CreateServerLinkWindow(g_hKernelWnd);
    EXPECT_EQ(ServerLinkWndProc(nullptr, WM_CLOSE, 0, 0), 0);
    EXPECT_TRUE(WaitForPort(false));
    CreateServerLinkWindow(g_hKernelWnd);
    EXPECT_TRUE(WaitForPort(true));
    EXPECT_TRUE(IsAnswered());
}

TEST_F(ServerLinkTest, ThePortMayBeTakenAtFirst)
{
    {
        TakenPort other;
        ASSERT_TRUE(Start());
        StartUp();
        host.TakeLog();
        EXPECT_TRUE(server.IsLeftAlone());
    }
    ASSERT_TRUE(WaitForPort(true));
    EXPECT_TRUE(IsAnswered());
}

TEST_F(ServerLinkTest, TheStopEndsWhateverTheListenerWaitsIn)
{
    const struct {
        const char *what;
        uint8_t command;
        std::function<bool()> isWaiting;
    } cases[] = {
        {"a datagram", SERVER_ECO_ON, [this] { return host.WaitFor("set 0 E0 = 1"); }},
        {"a silent server", SERVER_SET_ALL, [this] { return server.HoldConnection(); }},
        {"a message box", 7, [] { return WaitForDialog("Lumivane 2") != nullptr; }},
    };
    for (const auto &c : cases) {
        StartLink();
        server.Send(Datagram(c.command));
        ASSERT_TRUE(c.isWaiting()) << c.what;
        EXPECT_LT(TimeOf([this] { Stop(); }), 3000u) << c.what;
        EXPECT_TRUE(WaitForPort(false)) << c.what;
        EXPECT_EQ(FindDialog("Lumivane 2"), nullptr);
    }
}

TEST_F(ServerLinkTest, StartsAndStopsLeaveNothingBehind)
{
    ExpectNothingLeft(5, [this] {
        StartLink();
        CreateServerLinkWindow(g_hKernelWnd);
        EXPECT_FALSE(server.Ask(Datagram(SERVER_VERSION)).empty());
        Stop();
    });
}
