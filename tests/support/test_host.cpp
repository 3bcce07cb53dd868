// A host window, scripted monitors, and answers right and wrong.
#include "support/test_host.h"

#include "monitor/vcp_codes.h"
#include "support/faults.h"

#include <algorithm>
#include <cstdio>
#include <utility>

static const char s_ClassName[] = "lvkernel_tests_host";
constexpr UINT WM_RUN = WM_APP; // wParam: a function to run

Lines operator+(Lines first, const Lines &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TestMonitor ColorMonitor(const std::string &model)
{
    return {model,
            "(prot(monitor)type(lcd)model(" + model +
                ")cmds(01 02 03)vcp(02 04 10 12 14(01 05 08 0B) 16 18 1A 60(01 03) E0 F2)mccs_ver(2.0))",
            {{VCP_BRIGHTNESS, {60, 100}},
             {VCP_CONTRAST, {70, 100}},
             {VCP_COLOR_PRESET, {5, 11}},
             {VCP_RED_GAIN, {81, 100}},
             {VCP_GREEN_GAIN, {82, 100}},
             {VCP_BLUE_GAIN, {83, 100}},
             {VCP_INPUT_SOURCE, {3, 3}},
             {VCP_ECO_MODE, {0, 1}},
             {VCP_BUTTON_LOCK, {0, 255}}},
            {}};
}

LONG TestRequest::Word(size_t index) const
{
    LONG word = 0;
    if ((index + 1) * sizeof word <= payload.size())
        memcpy(&word, payload.data() + index * sizeof word, sizeof word);
    return word;
}

TestHost::TestHost(PLUGINSLOT receive) : m_receive(receive)
{
    const HANDLE ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    m_thread = std::thread([this, ready] {
        WNDCLASSA windowClass = {};
        windowClass.lpfnWndProc = WindowProc;
        windowClass.hInstance = GetModuleHandleA(nullptr);
        windowClass.lpszClassName = s_ClassName;
        RegisterClassA(&windowClass);
        m_window = CreateWindowA(s_ClassName, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, windowClass.hInstance, this);
        SetEvent(ready);
        Serve();
    });
    m_lateThread = std::thread([this] { ServeLate(); });
    WaitForSingleObject(ready, INFINITE);
    CloseHandle(ready);
}

TestHost::~TestHost()
{
    PostMessageA(m_window, WM_CLOSE, 0, 0);
    m_thread.join();
    {
        const auto lock = Lock();
        m_ending = true;
        m_lateCame.notify_all();
    }
    m_lateThread.join();
}

void TestHost::Serve()
{
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
}

LRESULT CALLBACK TestHost::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_CREATE)
        SetWindowLongA(window, GWL_USERDATA,
                       reinterpret_cast<LONG>(reinterpret_cast<const CREATESTRUCTA *>(lParam)->lpCreateParams));
    auto *host = reinterpret_cast<TestHost *>(GetWindowLongA(window, GWL_USERDATA));
    const PluginCode outside(false); // may be on the thread and inside the call of a slot
    switch (message) {
    case WM_HOST_PACKET:
        host->OnRequest(*reinterpret_cast<const HOSTPACKET *>(lParam));
        return 0;
    case WM_HOST_REPLY:
        host->OnReply(*reinterpret_cast<const HOSTPACKET *>(lParam));
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

void TestHost::Run(const std::function<void()> &what)
{
    SendMessageA(m_window, WM_RUN, reinterpret_cast<WPARAM>(&what), 0);
}

HWND TestHost::MakeWindow(const char *className, WNDPROC procedure, HINSTANCE module)
{
    HWND window = nullptr;
    Run([&] {
        WNDCLASSA windowClass = {};
        windowClass.lpfnWndProc = procedure;
        windowClass.hInstance = module;
        windowClass.lpszClassName = className;
        RegisterClassA(&windowClass);
        window = CreateWindowA(className, "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, module, nullptr);
    });
    return window;
}

void TestHost::DropWindow(HWND window)
{
    Run([window] { DestroyWindow(window); });
}

void TestHost::Introduce()
{
    HOSTPACKET packet = {};
    packet.src = address;
    packet.wCommand = HOST_NOTICE;
    m_receive(&packet);
}

static TestRequest CopyRequest(const HOSTPACKET &packet)
{
    TestRequest request = {packet, packet.lpData->dwRequestID, packet.lpData->wCode, {}};
    const BYTE *payload = HostPayload(packet.lpData);
    request.payload.assign(payload, payload + packet.lpData->dwSize - sizeof(HOSTDATA));
    return request;
}

static std::string Describe(const TestRequest &request)
{
    char text[64] = "";
    const int monitor = static_cast<int>(request.Word(0));
    switch (request.packet.wCommand) {
    case HOST_NOTICE:
        return "notice " + std::to_string(request.code);
    case HOST_SET_VCP:
        snprintf(text, sizeof text, "set %d %02X = %ld", monitor, request.code, request.Word(1));
        return text;
    case HOST_GET_VCP:
        snprintf(text, sizeof text, "get %d %02X", monitor, request.code);
        return text;
    case HOST_SET_DIRECTLINK:
        snprintf(text, sizeof text, "directlink %d = %ld", monitor, request.Word(1));
        return text;
    case HOST_SET_INPUT_LIST: {
        std::string list = "inputs " + std::to_string(monitor) + ":";
        for (size_t value = 0; value < HOST_INPUT_COUNT; ++value)
            if (request.Word(value + 1))
                list += " " + std::to_string(value);
        return list;
    }
    case HOST_GET_MONITOR_COUNT:
        return "count";
    case HOST_GET_MONITOR_NAME:
        return "name " + std::to_string(monitor);
    case HOST_GET_CAPABILITIES:
        return "capabilities " + std::to_string(monitor);
    case HOST_GET_EDID:
        return "edid " + std::to_string(monitor);
    }
    return "unknown " + std::to_string(request.packet.wCommand);
}

static std::vector<BYTE> Bytes(const void *data, size_t size, size_t padded)
{
    std::vector<BYTE> bytes(padded, 0);
    memcpy(bytes.data(), data, size < padded ? size : padded);
    return bytes;
}

static std::vector<BYTE> Words(std::initializer_list<LONG> words)
{
    return Bytes(words.begin(), words.size() * sizeof(LONG), words.size() * sizeof(LONG));
}

// Carries a request out on the monitors. Result: the payload of the answer. Called with the lock held.
std::vector<BYTE> TestHost::Carry(const TestRequest &request)
{
    if (answer) {
        const std::vector<LONG> words = answer(request);
        return Bytes(words.data(), words.size() * sizeof(LONG), words.size() * sizeof(LONG));
    }
    const size_t index = static_cast<size_t>(request.Word(0));
    TestMonitor *monitor = index < monitors.size() ? &monitors[index] : nullptr;
    const auto feature = [&]() -> TestFeature * {
        const auto code = static_cast<BYTE>(request.code);
        return monitor && monitor->features.contains(code) ? &monitor->features[code] : nullptr;
    };
    switch (request.packet.wCommand) {
    case HOST_SET_VCP:
        if (!feature())
            return Words({-1});
        feature()->current = request.Word(1);
        return Words({1});
    case HOST_GET_VCP:
        return feature() ? Words({feature()->current, feature()->maximum}) : Words({-1, -1});
    case HOST_GET_MONITOR_COUNT:
        return Words({count.value_or(static_cast<LONG>(monitors.size()))});
    case HOST_GET_MONITOR_NAME:
        return monitor ? Bytes(monitor->model.data(), monitor->model.size(), HOST_NAME_SIZE)
                       : std::vector<BYTE>(HOST_NAME_SIZE);
    case HOST_GET_CAPABILITIES:
        return monitor ? Bytes(monitor->capabilities.data(), monitor->capabilities.size(), HOST_CAPABILITIES_SIZE)
                       : std::vector<BYTE>(HOST_CAPABILITIES_SIZE);
    case HOST_GET_EDID:
        return monitor ? Bytes(monitor->edid.data(), HOST_EDID_SIZE, HOST_EDID_SIZE)
                       : std::vector<BYTE>(HOST_EDID_SIZE);
    }
    return Words({1});
}

void TestHost::OnRequest(const HOSTPACKET &packet)
{
    const TestRequest request = CopyRequest(packet);
    std::vector<BYTE> payload;
    {
        const auto lock = Lock();
        if (recording) {
            m_requests.push_back(request);
            m_log.push_back(Describe(request));
        }
        payload = Carry(request);
        m_noted.notify_all();
    }
    if (packet.wCommand == HOST_NOTICE)
        return;
    const Answer how = plan(request);
    if (how.kind != Answer::Later)
        Deliver(request, payload, how.kind);
    if (how.kind == Answer::Later || how.rightLater)
        PutOff(request, payload, how.delay);
}

void TestHost::PutOff(const TestRequest &request, const std::vector<BYTE> &payload, DWORD delay)
{
    const DWORD due = GetTickCount() + delay;
    const auto lock = Lock();
    const auto later = [due](const LateAnswer &late) { return static_cast<int>(late.due - due) > 0; };
    m_late.insert(std::find_if(m_late.begin(), m_late.end(), later), {due, request, payload});
    m_lateCame.notify_all();
}

// Gives the answers that come later; the last of them before the host goes.
void TestHost::ServeLate()
{
    auto lock = Lock();
    for (;;) {
        m_lateCame.wait(lock, [this] { return m_ending || !m_late.empty(); });
        if (m_late.empty())
            return;
        const int wait = static_cast<int>(m_late.front().due - GetTickCount());
        if (wait > 0) {
            m_lateCame.wait_for(lock, std::chrono::milliseconds(wait));
            continue;
        }
        const LateAnswer late = m_late.front();
        m_late.pop_front();
        lock.unlock();
        Deliver(late.request, late.payload, Answer::Inline);
        lock.lock();
    }
}

void TestHost::Deliver(const TestRequest &request, const std::vector<BYTE> &payload, Answer::Kind kind)
{
    if (kind == Answer::Never)
        return;
    const size_t length = kind == Answer::ShortBlock ? payload.size() / 2 : payload.size();
    HOSTDATA *data = MakeDataBlock(request.code, payload.data(), static_cast<DWORD>(length), request.id);
    HOSTPACKET packet = {address, request.packet.src, 0, 0, data->dwSize, data, request.packet.wCommand, 0};
    if (kind == Answer::WrongSize)
        ++packet.dwDataSize;
    if (kind == Answer::WrongSource)
        ++packet.src.bSubClass;
    if (kind == Answer::WrongCommand)
        packet.wCommand = HOST_NOTICE;
    if (kind == Answer::WrongNumber)
        data->dwRequestID = REQUEST_COUNT + request.id;
    m_receive(&packet);
    if (kind == Answer::Twice)
        m_receive(&packet);
    FreeDataBlock(data);
}

void TestHost::OnReply(const HOSTPACKET &packet)
{
    const HOSTDATA *data = packet.lpData;
    TestReply reply = {packet.dst, packet.wCommand, packet.wFlags, data->dwRequestID, data->wCode, {}};
    reply.payload.assign(HostPayload(data), HostPayload(data) + data->dwSize - sizeof(HOSTDATA));
    char text[96];
    snprintf(text, sizeof text, "reply %d code %d id %lu: %u bytes", packet.wCommand, data->wCode, data->dwRequestID,
             static_cast<unsigned>(reply.payload.size()));
    const auto lock = Lock();
    if (recording) {
        m_replies.push_back(reply);
        m_log.push_back(text);
    }
    m_noted.notify_all();
}

Lines TestHost::Log()
{
    const auto lock = Lock();
    return m_log;
}

Lines TestHost::TakeLog()
{
    const auto lock = Lock();
    return std::exchange(m_log, {});
}

void TestHost::Note(const std::string &line)
{
    const auto lock = Lock();
    m_log.push_back(line);
}

bool TestHost::WaitFor(const std::string &entry)
{
    auto lock = Lock();
    return m_noted.wait_for(lock, std::chrono::seconds(10), [&] {
        for (const std::string &line : m_log)
            if (line == entry)
                return true;
        return false;
    });
}

std::vector<TestRequest> TestHost::Requests()
{
    const auto lock = Lock();
    return m_requests;
}

std::vector<TestReply> TestHost::Replies()
{
    const auto lock = Lock();
    return m_replies;
}
