// One host a session: who is the first, what becomes of the others, and two real hosts.
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "host/base/program_path.h"
#include "host/base/text.h"
#include "host/host_window.h"
#include "host/options.h"
#include "host/single_instance.h"
#include "tour/tour_hands.h"

constexpr DWORD LONG_ENOUGH = 40000; // ms: nothing here takes so long, however loaded the machine is

static const INSTANCENAMES s_names = {L"trayhub_tests instance", L"STATIC", L"trayhub_tests first", WM_HOST_SHOW};

static LRESULT s_Answer;
static LRESULT CALLBACK AnswerProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return message == WM_HOST_SHOW ? s_Answer : DefWindowProcW(hWnd, message, wParam, lParam);
}

// Another instance, on a thread of its own: holds the mutex, has a window or none, and answers or hangs until the gate
// opens; then it ends as a process does, without giving anything back.
class SingleInstance : public testing::Test {
protected:
    void TearDown() override
    {
        EndFirst();
        CloseHandle(gate);
    }

    void StartFirst(bool hasWindow, bool answers)
    {
        const HANDLE ready = CreateEventW(nullptr, FALSE, FALSE, nullptr);
        ResetEvent(gate);
        first = std::thread([=, this] {
            HANDLE hold = nullptr;
            EXPECT_EQ(JoinInstances(s_names, 0, &hold), INSTANCE_FIRST);
            HWND window = nullptr;
            if (hasWindow) {
                window = CreateWindowExW(0, s_names.windowClass, s_names.windowTitle, WS_POPUP, 0, 0, 9, 9, nullptr,
                                         nullptr, nullptr, nullptr);
                SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AnswerProc));
            }
            SetEvent(ready);
            MSG message;
            while (answers && MsgWaitForMultipleObjects(1, &gate, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0 + 1)
                while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                    DispatchMessageW(&message);
            WaitForSingleObject(gate, INFINITE);
        });
        WaitForSingleObject(ready, INFINITE);
        CloseHandle(ready);
    }

    void EndFirst()
    {
        SetEvent(gate);
        if (first.joinable())
            first.join();
    }

    static INSTANCEROLE Join(DWORD patience)
    {
        HANDLE hold = nullptr;
        const INSTANCEROLE role = JoinInstances(s_names, patience, &hold);
        EXPECT_EQ(hold != nullptr, role == INSTANCE_FIRST);
        LeaveInstances(hold);
        return role;
    }

    HANDLE gate = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread first;
};

TEST_F(SingleInstance, HandsOverOrFindsTheFirstStuck)
{
    const struct {
        const char *what;
        bool hasWindow, answers;
        LRESULT answer;
        INSTANCEROLE role;
    } cases[] = {
        {"it opens its panel", true, true, 1, INSTANCE_SECOND},
        {"it is ending, and does not come to an end", true, true, 0, INSTANCE_STUCK},
        {"it hangs", true, false, 1, INSTANCE_STUCK},
        {"it has no window and gets none", false, true, 1, INSTANCE_STUCK},
    };
    for (const auto &one : cases) {
        s_Answer = one.answer;
        StartFirst(one.hasWindow, one.answers);
        EXPECT_EQ(Join(300), one.role) << one.what;
        EndFirst();
        EXPECT_EQ(Join(0), INSTANCE_FIRST) << "whatever it was, it has ended";
    }
}

TEST_F(SingleInstance, TakesThePlaceOfOneThatEndsMeanwhile)
{
    StartFirst(false, true);
    INSTANCEROLE role = INSTANCE_STUCK;
    std::thread second([&] { role = Join(LONG_ENOUGH); });
    EndFirst();
    second.join();
    EXPECT_EQ(role, INSTANCE_FIRST);
}

// ---- Two real hosts -------------------------------------------------------------------------------------------------

static HANDLE StartHost(const std::string &arguments)
{
    std::wstring line = Widen("\"" + ProgramFolder() + "\\..\\..\\trayhub.exe\" " + arguments);
    STARTUPINFOW start = {};
    PROCESS_INFORMATION process = {};
    start.cb = sizeof start;
    EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process));
    CloseHandle(process.hThread);
    return process.hProcess;
}

static DWORD StatusOf(HANDLE process)
{
    DWORD status = STILL_ACTIVE;
    if (WaitForSingleObject(process, LONG_ENOUGH) != WAIT_OBJECT_0)
        TerminateProcess(process, 99);
    GetExitCodeProcess(process, &status);
    CloseHandle(process);
    return status;
}

static bool LogHas(const std::string &path, const char *text)
{
    std::string log, error;
    return ReadWholeFile(path, 1 << 20, &log, &error) && log.find(text) != std::string::npos;
}

// Without monitors the panel cannot come, so the first shows a box that says so; the log tells that it was asked.
TEST(TwoHosts, TheSecondHasTheFirstOpenItsPanel)
{
    const std::string log = ProgramFolder() + "\\single_instance.log";
    DeleteFileW(Widen(log).c_str());
    const HANDLE first = StartHost("--no-tray --log \"" + log + "\"");
    ASSERT_TRUE(WaitUntil([&] { return LogHas(log, "slot=2"); }, LONG_ENOUGH));
    EXPECT_EQ(StatusOf(StartHost("--no-tray")), 0u);
    EXPECT_TRUE(WaitUntil([&] { return LogHas(log, "slot=3"); }, LONG_ENOUGH));
    EXPECT_TRUE(LogHas(log, "a second start wishes the panel"));

    const HANDLE another = StartHost("--no-tray --another");
    HWND window = nullptr;
    const auto isThere = [&] {
        return (window = FindWindowW(HOST_WINDOW_CLASS, HOST_WINDOW_TITLE L" (another)")) != nullptr;
    };
    EXPECT_TRUE(WaitUntil(isThere, LONG_ENOUGH));
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(StatusOf(another), 0u);

    PostMessageW(FindWindowW(HOST_WINDOW_CLASS, HOST_WINDOW_TITLE), WM_CLOSE, 0, 0);
    EXPECT_EQ(StatusOf(first), 0u);
    DeleteFileW(Widen(log).c_str());
}
