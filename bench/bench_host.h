// The peer of the plug-in in a benchmark: a host window on a thread of its own, that keeps nothing but counts. It takes
// bare calls, too, and does for them what it does for a request, so that the two differ in the plug-in's share alone.
#pragma once

#include "kernel/link/host_packet.h"

#include <functional>
#include <mutex>
#include <queue>
#include <thread>

// A call without the plug-in: sent with WM_BARE_CALL, answered by eight bytes and the event.
struct BARECALL {
    HANDLE hEvent;
    LONG answer[2];
};
constexpr UINT WM_BARE_CALL = WM_APP;

class BenchHost {
public:
    // receive: slot 2 of the plug-in that is served.
    explicit BenchHost(PLUGINSLOT receive = PluginReceive);
    ~BenchHost();
    BenchHost(const BenchHost &) = delete;
    BenchHost &operator=(const BenchHost &) = delete;

    HWND Window() const { return m_window; }

    // Set these while nothing is asked.
    LONG monitors = 1;  // how many there are, all alike and with all features
    bool later = false; // answers come from another thread, not while the asker is inside its message
    DWORD delayMs = 0;  // what each answer that comes later takes

    // Runs something on the thread of the host's window, as a host calls a slot, and waits for its end.
    void Run(const std::function<void()> &what);

    // Makes the plug-in know the host's address, by a packet that answers nothing.
    void Introduce();

    // Slots 0 and 15 as the host calls them. Result: the slot's.
    int Init(PLUGINSLOT slot);
    int Stop(PLUGINSLOT slot);

    // Since the host began: requests answered, and the time from their arrival to the call of slot 2, added up.
    struct TOTALS {
        long requests;
        double answeringUs;
        bool started; // the notice that monitors were found has come
    };
    TOTALS Totals();

private:
    // A request or a bare call, without the pointers of the message that brought it.
    struct JOB {
        BARECALL *bare; // null: a request
        ENDPOINT from;
        WORD command;
        WORD code;
        DWORD id;
        LONG monitor;
        double arrivalUs;
    };

    void Serve();
    void Work();
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void OnRequest(const HOSTPACKET *packet);
    void Take(const JOB &job);
    void Complete(const JOB &job);
    void Answer(const JOB &job);
    DWORD FillPayload(const JOB &job, BYTE *payload) const;

    const PLUGINSLOT m_receive;
    HWND m_window = nullptr;
    HANDLE m_wake; // signalled for each job that waits, and for the end
    std::mutex m_lock;
    std::queue<JOB> m_jobs; // an empty job ends the worker
    TOTALS m_totals = {};
    std::thread m_windowThread;
    std::thread m_worker;
};
