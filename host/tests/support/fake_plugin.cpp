// A plug-in that the tests script. The test program exports it, so the loader can load the program as a plug-in.
#include "host/tests/support/fake_plugin.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

FAKEPLUGIN g_FakePlugin;

static std::mutex s_mutex;
static std::condition_variable s_arrived;
static std::vector<PACKET> s_received; // what slot 2 was handed

extern "C" __declspec(dllexport) int GetPluginFunc(PLUGINFUNC *lpFunc)
{
    *lpFunc = {g_FakePlugin.count, g_FakePlugin.table};
    return g_FakePlugin.exportResult;
}

static int Nop(void *)
{
    return 1;
}

static int Receive(void *packet)
{
    PACKET copy;
    const char *fault = CopyPacket(static_cast<const HOSTPACKET *>(packet), &copy);
    std::lock_guard lock(s_mutex);
    s_received.push_back(copy);
    s_arrived.notify_all();
    return fault == nullptr;
}

static int Command(void *packet)
{
    return g_FakePlugin.onCommand ? g_FakePlugin.onCommand(static_cast<HOSTPACKET *>(packet)) : 1;
}

static int SendIdentity(void *)
{
    return g_FakePlugin.onSendIdentity ? g_FakePlugin.onSendIdentity() : 1;
}

void ResetFakePlugin()
{
    std::fill(std::begin(g_FakePlugin.slots), std::end(g_FakePlugin.slots), Nop);
    g_FakePlugin.slots[PLUGIN_SLOT_RECEIVE] = Receive;
    g_FakePlugin.slots[PLUGIN_SLOT_COMMAND] = Command;
    g_FakePlugin.slots[PLUGIN_SLOT_SEND_IDENTITY] = SendIdentity;
    g_FakePlugin.slots[PLUGIN_SLOT_COUNT - 1] = nullptr;
    g_FakePlugin.count = PLUGIN_SLOT_COUNT;
    g_FakePlugin.exportResult = 1;
    g_FakePlugin.table = g_FakePlugin.slots;
    g_FakePlugin.onCommand = nullptr;
    g_FakePlugin.onSendIdentity = nullptr;
    std::lock_guard lock(s_mutex);
    s_received.clear();
}

std::vector<PACKET> WaitForReceived(size_t count)
{
    std::unique_lock lock(s_mutex);
    s_arrived.wait_for(lock, std::chrono::seconds(5), [count] { return s_received.size() >= count; });
    return s_received;
}

size_t ReceivedCount()
{
    std::lock_guard lock(s_mutex);
    return s_received.size();
}
