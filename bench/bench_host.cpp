// Host window, worker and answers.
#include "bench/bench_host.h"

#include "bench/measure.h"
#include "monitor/vcp.h"

#include <cstdio>
#include <cstring>

static const char s_szClass[] = "lvkernel_bench_host";
static const ENDPOINT s_Address = {0x1234, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_DDCCI};
constexpr WORD PLUGIN_ID = 7;
constexpr UINT WM_RUN = WM_APP + 1; // wParam: a function to run

// ---- Threads and messages -----------------------------------------------------------------------------------------

BenchHost::BenchHost(PLUGINSLOT receive)
    : m_receive(receive), m_wake(CreateSemaphoreA(nullptr, 0, REQUEST_COUNT, nullptr))
{
    const HANDLE ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    m_windowThread = std::thread([this, ready] {
        WNDCLASSA windowClass = {};
        windowClass.lpfnWndProc = WindowProc;
        windowClass.hInstance = GetModuleHandleA(nullptr);
        windowClass.lpszClassName = s_szClass;
        RegisterClassA(&windowClass);
        m_window = CreateWindowA(s_szClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, windowClass.hInstance, this);
        SetEvent(ready);
        Serve();
    });
    m_worker = std::thread([this] { Work(); });
    WaitForSingleObject(ready, INFINITE);
    CloseHandle(ready);
}

BenchHost::~BenchHost()
{
    PostMessageA(m_window, WM_CLOSE, 0, 0);
    m_windowThread.join();
    ReleaseSemaphore(m_wake, 1, nullptr);
    m_worker.join();
    CloseHandle(m_wake);
}

void BenchHost::Serve()
{
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
}

void BenchHost::Work()
{
    for (;;) {
        WaitForSingleObject(m_wake, INFINITE);
        JOB job;
        {
            const std::lock_guard lock(m_lock);
            if (m_jobs.empty())
                return;
            job = m_jobs.front();
            m_jobs.pop();
        }
        if (delayMs != 0)
            SleepEx(delayMs, FALSE);
        Complete(job);
    }
}

LRESULT CALLBACK BenchHost::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_CREATE)
        SetWindowLongA(window, GWL_USERDATA,
                       reinterpret_cast<LONG>(reinterpret_cast<const CREATESTRUCTA *>(lParam)->lpCreateParams));
    auto *host = reinterpret_cast<BenchHost *>(GetWindowLongA(window, GWL_USERDATA));
    switch (message) {
    case WM_HOST_PACKET:
        host->OnRequest(reinterpret_cast<const HOSTPACKET *>(lParam));
        return 0;
    case WM_BARE_CALL:
        host->Take({reinterpret_cast<BARECALL *>(lParam), {}, 0, 0, 0, 0, NowUs()});
        return 0;
    case WM_RUN:
        (*reinterpret_cast<const std::function<void()> *>(wParam))();
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

void BenchHost::Run(const std::function<void()> &what)
{
    SendMessageA(m_window, WM_RUN, reinterpret_cast<WPARAM>(&what), 0);
}

void BenchHost::Introduce()
{
    HOSTPACKET packet = {};
    packet.src = s_Address;
    packet.wCommand = HOST_NOTICE;
    m_receive(&packet);
}

int BenchHost::Init(PLUGINSLOT slot)
{
    HOSTPACKET packet = {};
    packet.dst.wID = PLUGIN_ID;
    packet.dwDataSize = sizeof m_window;
    packet.lpData = reinterpret_cast<HOSTDATA *>(&m_window);
    int result = 0;
    Run([&] { result = slot(&packet); });
    Introduce();
    return result;
}

int BenchHost::Stop(PLUGINSLOT slot)
{
    int result = 0;
    Run([&] { result = slot(nullptr); });
    return result;
}

BenchHost::TOTALS BenchHost::Totals()
{
    const std::lock_guard lock(m_lock);
    return m_totals;
}

// ---- Answers ------------------------------------------------------------------------------------------------------

void BenchHost::OnRequest(const HOSTPACKET *packet)
{
    const HOSTDATA *data = packet->lpData;
    if (packet->wCommand == HOST_NOTICE) {
        const std::lock_guard lock(m_lock);
        m_totals.started = m_totals.started || data->wCode == HOST_NOTICE_STARTED;
        return;
    }
    JOB job = {nullptr, packet->src, packet->wCommand, data->wCode, data->dwRequestID, 0, NowUs()};
    if (data->dwSize >= sizeof(HOSTDATA) + sizeof job.monitor)
        memcpy(&job.monitor, HostPayload(data), sizeof job.monitor);
    Take(job);
}

void BenchHost::Take(const JOB &job)
{
    if (!later) {
        Complete(job);
        return;
    }
    {
        const std::lock_guard lock(m_lock);
        m_jobs.push(job);
    }
    ReleaseSemaphore(m_wake, 1, nullptr);
}

void BenchHost::Complete(const JOB &job)
{
    {
        const std::lock_guard lock(m_lock);
        ++m_totals.requests;
        m_totals.answeringUs += NowUs() - job.arrivalUs;
    }
    if (!job.bare) {
        Answer(job);
        return;
    }
    job.bare->answer[0] = 50;
    job.bare->answer[1] = 100;
    SetEvent(job.bare->hEvent);
}

// Result: the payload's length. payload: as large as the largest answer, and zero.
DWORD BenchHost::FillPayload(const JOB &job, BYTE *payload) const
{
    static const char capabilities[] =
        "(prot(monitor)type(lcd)model(BENCH)cmds(01 02 03)"
        "vcp(02 04 10 12 14(01 05 08 0B) 16 18 1A 60(01 03 05 07 09) E0 E8 F2 F4)mccs_ver(2.0))";
    char name[HOST_NAME_SIZE] = "";
    LONG words[2] = {1, 0};
    switch (job.command) {
    case HOST_GET_MONITOR_NAME:
        snprintf(name, sizeof name, "BENCH%ld", job.monitor);
        memcpy(payload, name, sizeof name);
        return HOST_NAME_SIZE;
    case HOST_GET_CAPABILITIES:
        memcpy(payload, capabilities, sizeof capabilities);
        return HOST_CAPABILITIES_SIZE;
    case HOST_GET_EDID:
        return HOST_EDID_SIZE;
    case HOST_GET_MONITOR_COUNT:
        words[0] = monitors;
        break;
    case HOST_GET_VCP:
        // A button register that reports no press has the code in its high byte.
        words[0] = job.code == VCP_BUTTON_PRESSED ? BUTTON_PRESSED_NONE << 8
                   : job.code == VCP_INPUT_SOURCE ? INPUT_DIGITAL
                                                  : 50;
        words[1] = job.code == VCP_BUTTON_PRESSED ? BUTTON_PRESSED_NONE << 8 : 100;
        memcpy(payload, words, sizeof words);
        return sizeof words;
    }
    memcpy(payload, words, sizeof words[0]);
    return sizeof words[0];
}

void BenchHost::Answer(const JOB &job)
{
    struct {
        HOSTDATA head;
        BYTE payload[HOST_CAPABILITIES_SIZE];
    } block = {};
    block.head = {0, job.id, job.code};
    block.head.dwSize = static_cast<DWORD>(sizeof block.head) + FillPayload(job, block.payload);
    HOSTPACKET packet = {s_Address, job.from, 0, 0, block.head.dwSize, &block.head, job.command, 0};
    m_receive(&packet);
}
