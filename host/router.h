// The host's end of the packet link. Requests of the plug-in are copied before the message returns and worked off on
// other threads, so a reply can arrive while the plug-in's caller is still inside slot 15 or 16 on the window's thread.
// Each monitor has one thread for its requests, its backend's or one of the router's: one that is slow or hangs holds
// up no other.
#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/base/monitor_backend.h"
#include "host/packet.h"

constexpr WORD HOST_ENDPOINT_ID = 1;   // our own identifier
constexpr WORD PLUGIN_ENDPOINT_ID = 2; // the one that slot 0 gives the plug-in
constexpr int WIRE_MONITOR_LIMIT = 10; // the plug-in's table holds no more
constexpr size_t REPLY_LIMIT = 64;     // replies that nobody takes: the oldest go

// What has gone over the wire about one monitor: all that the plug-in can know of it.
struct WIREMONITOR {
    bool hasName, hasCapabilities, hasInputs;
    bool directLink; // its colours follow the program in front
    std::string name, capabilities;
    std::array<DWORD, HOST_INPUT_COUNT> inputs; // the flags that the plug-in sent back
    struct READING {
        bool done;          // the plug-in asked for the code and got an answer
        int value, maximum; // -1: the read failed
    };
    std::array<READING, 256> readings; // the last answer to a read, per VCP code
};

enum REQUESTSTATE {
    REQUEST_WAITS,
    REQUEST_IN_HAND,
    REQUEST_IS_OVER, // whoever sets this answers; to all others neither the router nor the plug-in need be there any
                     // more
};

// Held by the thread that works it off, too, which may be in a driver for ever.
struct ROUTERREQUEST {
    PACKET packet;
    DWORD arrivalTick;
    std::atomic<REQUESTSTATE> state;
};

// Requests that are worked off one after the other, in the order in which they came.
struct ROUTERLANE {
    std::deque<std::shared_ptr<ROUTERREQUEST>> requests; // with that in hand
    std::condition_variable arrived;
    std::thread worker; // from the first request on that the backend takes on no thread of its own
};

// A lane for each monitor, and one for what is about none in particular: the count, and DirectLink of all.
constexpr size_t COMMON_LANE = WIRE_MONITOR_LIMIT;
constexpr size_t ROUTER_LANE_COUNT = COMMON_LANE + 1;

struct ROUTER {
    const PLUGINSLOT *slots; // the plug-in's slot table
    MONITORBACKEND backend;
    void (*noticed)(void *context, WORD notice); // told of each notice, on the thread of the message
    void *noticedContext;

    std::mutex mutex;                // guards all that follows
    std::condition_variable settled; // a request is over
    std::array<ROUTERLANE, ROUTER_LANE_COUNT> lanes;
    std::deque<PACKET> replies; // of the plug-in to commands
    std::vector<WIREMONITOR> wire;
    std::vector<WORD> notices; // each code once
    DWORD lastPacketTick;      // of either side
    bool stopping;
};

// From now on requests are worked off, and nothing that an earlier run has left is known any more. Slots and backend
// must live until StopRouter has returned.
void StartRouter(ROUTER *router, const PLUGINSLOT *slots, const MONITORBACKEND &backend);

// Waits for the requests in hand, one a lane, until they are done or given up, drops those behind them, and ends the
// router's threads. Call before the plug-in is unloaded.
void StopRouter(ROUTER *router);

// The host address that the plug-in sends to, and the source of all that the host sends.
ENDPOINT HostEndpoint();

// WM_HOST_PACKET: takes a request or notice. Never waits and never calls the plug-in. A packet that is malformed or of
// an unknown command is logged and gets no answer. Returns 1 when it was taken, else 0.
LRESULT RouterTakePacket(ROUTER *router, const HOSTPACKET *source);

// WM_HOST_REPLY: keeps the plug-in's reply to a command for TakeReply. Returns 1 when it was taken, else 0.
LRESULT RouterTakeReply(ROUTER *router, const HOSTPACKET *source);

// Takes the oldest reply that nobody has taken yet; false when there is none.
bool TakeReply(ROUTER *router, PACKET *reply);

// Sends the plug-in a packet that tells it the host's address. Without it the first request would go out without a
// request number. Call after slot 0.
void GreetPlugin(ROUTER *router);

// Whether a notice has come.
bool HasNotice(ROUTER *router, WORD notice);

// How long ago the last packet of either side went over the link, in milliseconds.
DWORD MillisecondsSincePacket(ROUTER *router);

// Whether no packet has gone over the link for so many milliseconds, and none is being worked on.
bool IsLinkQuiet(ROUTER *router, DWORD milliseconds);

// A copy of what has gone over the wire, one entry per monitor that the plug-in asked about.
std::vector<WIREMONITOR> CopyWireMonitors(ROUTER *router);
