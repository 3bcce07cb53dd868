// The peer of the plug-in in a test: a real host window on its own thread, scripted monitors behind it, and a log of
// every packet in the order of its arrival.
//
//     TestHost host;
//     host.monitors = {ColorMonitor("NRV-PA1")};
//     ... call the plug-in ...
//     EXPECT_EQ(host.TakeLog(), (Lines{"get 0 12", "set 0 12 = 50"}));
#pragma once

#include "kernel/link/host_packet.h"

#include <array>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

using Lines = std::vector<std::string>;

// The first lines, and then the others.
Lines operator+(Lines first, const Lines &second);

struct TestFeature {
    LONG current;
    LONG maximum;
};

// A monitor: what it answers. A code that is not among the features reads as -1 (maximum -1) and refuses writes.
struct TestMonitor {
    std::string model;        // up to 12 bytes
    std::string capabilities; // up to 512 bytes
    std::map<BYTE, TestFeature> features;
    std::array<BYTE, HOST_EDID_SIZE> edid = {};
};

// A monitor with all features of the colour settings (each maximum 100, presets 1, 5, 8 and 11, inputs 1 and 3), ECO
// mode and button lock.
TestMonitor ColorMonitor(const std::string &model);

// A request as the host received it.
struct TestRequest {
    HOSTPACKET packet; // its data pointer is no longer valid
    DWORD id;
    WORD code;
    std::vector<BYTE> payload;
    LONG Word(size_t index) const; // 32-bit word of the payload; 0 beyond its end
};

// How a request is answered.
struct Answer {
    enum Kind {
        Inline,       // rightly, while the plug-in is inside its message
        Later,        // rightly, from another thread after `delay` ms
        Never,        // not at all
        Twice,        // rightly, two times
        WrongSize,    // header and block disagree on the size
        ShortBlock,   // both agree, but half the answer is missing
        WrongSource,  // from an endpoint that is not the DDC/CI one
        WrongCommand, // with the command of an acknowledged notice
        WrongNumber,  // with a request number beyond the table
    } kind = Inline;
    DWORD delay = 0;
    bool rightLater = false; // a wrong answer is followed by the right one as with Later
};

// A reply of the plug-in to a command of the host.
struct TestReply {
    ENDPOINT dst;
    WORD command;
    WORD flags;
    DWORD id;
    WORD code;
    std::vector<BYTE> payload;
};

class TestHost {
public:
    explicit TestHost(PLUGINSLOT receive = PluginReceive);
    ~TestHost();
    TestHost(const TestHost &) = delete;
    TestHost &operator=(const TestHost &) = delete;

    // Set these before the plug-in asks; monitors are changed by its writes. Hold Lock() to touch them while it runs.
    std::vector<TestMonitor> monitors;
    std::optional<LONG> count; // what to say instead of the number of monitors
    std::function<Answer(const TestRequest &)> plan = [](const TestRequest &) { return Answer{}; };
    ENDPOINT address = {0x1234, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_DDCCI};
    // What is answered instead of what the monitors say, when it is set; it may be called for any monitor number.
    std::function<std::vector<LONG>(const TestRequest &)> answer;
    bool recording = true; // false: log, requests and replies stay empty

    HWND Window() const { return m_window; }
    std::unique_lock<std::mutex> Lock() { return std::unique_lock(m_lock); }

    // Runs something on the thread that owns the host's window, as a host calls a slot, and waits for its end.
    void Run(const std::function<void()> &what);

    // A hidden window of the host's thread, of a class of its own that belongs to a module. DropWindow destroys it.
    HWND MakeWindow(const char *className, WNDPROC procedure = DefWindowProcA,
                    HINSTANCE module = GetModuleHandleA(nullptr));
    void DropWindow(HWND window);

    // Makes the plug-in know the host's address, by a packet that answers nothing.
    void Introduce();

    // Requests, notices and replies so far: "notice 8", "count", "name 0", "capabilities 0", "inputs 0: 1 3", "edid 0",
    // "get 0 12", "set 0 12 = 50", "directlink -1 = 1", "reply 2 code 128 id 7: 140 bytes". TakeLog empties the log.
    Lines Log();
    Lines TakeLog();

    // Adds a line to the log.
    void Note(const std::string &line);

    // Waits until an entry is in the log; false after ten seconds.
    bool WaitFor(const std::string &entry);

    std::vector<TestRequest> Requests();
    std::vector<TestReply> Replies();

private:
    struct LateAnswer {
        DWORD due; // GetTickCount
        TestRequest request;
        std::vector<BYTE> payload;
    };
    void Serve();
    void PutOff(const TestRequest &request, const std::vector<BYTE> &payload, DWORD delay);
    void ServeLate();
    static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void OnRequest(const HOSTPACKET &packet);
    void OnReply(const HOSTPACKET &packet);
    std::vector<BYTE> Carry(const TestRequest &request);
    void Deliver(const TestRequest &request, const std::vector<BYTE> &payload, Answer::Kind kind);

    const PLUGINSLOT m_receive;
    HWND m_window = nullptr;
    std::mutex m_lock; // log, requests, replies, monitors, late answers
    std::condition_variable m_noted;
    Lines m_log;
    std::vector<TestRequest> m_requests;
    std::vector<TestReply> m_replies;
    std::deque<LateAnswer> m_late; // in the order of their time
    std::condition_variable m_lateCame;
    bool m_ending = false;
    std::thread m_thread;
    std::thread m_lateThread;
};
