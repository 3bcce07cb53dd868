// A plug-in that the tests script: its slots record what the host hands them and do what the test says.
#pragma once

#include <functional>
#include <vector>

#include "host/packet.h"

struct FAKEPLUGIN {
    PLUGINSLOT slots[PLUGIN_SLOT_COUNT];
    DWORD count;      // what GetPluginFunc reports
    int exportResult; // what GetPluginFunc returns
    const PLUGINSLOT *table;

    std::function<int(HOSTPACKET *)> onCommand; // slot 16; null: returns 1
    std::function<int()> onSendIdentity;        // slot 10; null: returns 1
};

// The one that the test program exports; ResetFakePlugin makes it a good one again.
extern FAKEPLUGIN g_FakePlugin;
void ResetFakePlugin();

// Waits until slot 2 has been called `count` times since the reset, for up to five seconds; returns what it was handed.
std::vector<PACKET> WaitForReceived(size_t count);
size_t ReceivedCount();
