// Fixtures: the plug-in with its server link up, and the management server.
#pragma once

#include "kernel/base/plugin_state.h"
#include "server/server_link.h"
#include "server/server_state.h"
#include "support/plugin_session.h"
#include "support/test_server.h"

#include <algorithm>

class LinkTest : public PluginTest {
protected:
    // Starts the plug-in up to where its listener is there; the host's log is then empty.
    void StartLink()
    {
        g_bAbort = 0;
        static constexpr char NOT_READ_YET = '\x01';
        g_szGroupName[0] = NOT_READ_YET;
        ASSERT_TRUE(Start());
        StartUp();
        // The port alone would tell little: another plug-in on this machine may share it. The group's name is the last
        // thing that the listener finds out about itself.
        ASSERT_TRUE(Comes([] { return g_szGroupName[0] != NOT_READ_YET; }));
        ASSERT_TRUE(WaitForPort(true));
        host.TakeLog();
    }
};

class ServerTest : public LinkTest {
protected:
    void SetUp() override
    {
        host.monitors = {ColorMonitor("NRV-PA1"), ColorMonitor("NRV-PA2")};
        StartLink();
    }

    // Sends a datagram to which no answer comes, again and again while the client is between two sockets, until the
    // host has heard of it. It may be carried out more than once.
    bool SendUntilLogged(const std::string &datagram, const std::string &entry)
    {
        for (int round = 0; round < 50; ++round) {
            server.Send(datagram);
            Sleep(50);
            const Lines log = host.Log();
            if (std::find(log.begin(), log.end(), entry) != log.end())
                return true;
        }
        return false;
    }

    TestServer server;
};
