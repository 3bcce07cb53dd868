// trayhub.exe as a user starts it, beside the stand-in: what it prints about the monitors, and what it ends with.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "host/base/program_path.h"
#include "host/base/text.h"
#include "tests/dxva2_stand_in/tests/stand_in_control.h"
#include "tour/tour_hands.h"

static std::string TempPath(const char *name)
{
    wchar_t folder[MAX_PATH] = L"";
    GetTempPathW(MAX_PATH, folder);
    return Narrow(folder) + name;
}

// For the stand-ins of programs that are started from now on.
static void Control(const std::string &text)
{
    const std::string file = TempPath("stand-in.ini");
    std::ofstream(file) << text;
    SetEnvironmentVariableW(L"DXVA2_STAND_IN", Widen(file).c_str());
}

// Runs the program to its end, with a control file for its stand-in. Returns its exit status, -1 when it does not end.
static int RunTrayhub(const std::string &arguments, const std::string &control, std::string *output)
{
    const std::string path = TempPath("stand-in.txt");
    Control(control);
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError =
        CreateFileW(Widen(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
    PROCESS_INFORMATION process = {};
    std::wstring line = Widen("\"" + ProgramFolder() + "\\trayhub.exe\" " + arguments);
    EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process));
    DWORD status = 0;
    const bool ended = WaitForSingleObject(process.hProcess, 60000) == WAIT_OBJECT_0;
    if (!ended)
        TerminateProcess(process.hProcess, 1);
    GetExitCodeProcess(process.hProcess, &status);
    for (const HANDLE handle : {process.hProcess, process.hThread, startup.hStdOutput})
        CloseHandle(handle);
    std::string error;
    EXPECT_TRUE(ReadWholeFile(path, 1 << 20, output, &error)) << error;
    return ended ? static_cast<int>(status) : -1;
}

TEST(TrayhubOnRealMonitors, ListsWhatTheySayAndWhyTheyDoNot)
{
    const struct {
        const char *option, *control;
        int status;
        std::vector<const char *> said;
    } cases[] = {
        {"--list",
         "[monitor 2]\nfails = 1\n[monitor 3]\nanswers-every = 3\n",
         0,
         {"3 monitors", "Monitor 1: U3011", "75 of 100", "60 input source: 01 03 04 0C 0F 11 12",
          "F2 maker's own, button-lock      0xC0262584", "Monitor 2: Generic PnP", "0xC0262583", "Monitor 3: MP76",
          "14 colour preset: 01 05 06 07 08 0B", "60 of 100"}},
        {"--read 60",
         "[monitor 2]\nfails = 1\n",
         0,
         {"Monitor 1 (Generic PnP): 60 input source 15 of 18", "Monitor 2 (Generic PnP): 60 input source 0xC0262583",
          "Monitor 3"}},
        {"--list",
         "[monitor 1]\ngone = 1\n[monitor 2]\ngone = 1\n[monitor 3]\ngone = 1\n",
         1,
         {"0 monitors", "the display has no monitor"}},
    };
    for (const auto &one : cases) {
        std::string output;
        EXPECT_EQ(RunTrayhub(one.option, one.control, &output), one.status);
        for (const char *said : one.said)
            EXPECT_NE(output.find(said), std::string::npos) << one.option << ": " << said << " is not in:\n" << output;
    }
}

static bool IsAtConsole(DWORD processId)
{
    DWORD ids[16] = {};
    const DWORD count = GetConsoleProcessList(ids, 16);
    return std::find(ids, ids + std::min<DWORD>(count, 16), processId) != ids + std::min<DWORD>(count, 16);
}

static BOOL WINAPI IgnoreEvent(DWORD)
{
    return TRUE;
}

// Started from a prompt it lets go of that, and Ctrl+C there is not for it; unless it has something to say there: then
// that ends it in order.
TEST(TrayhubOnRealMonitors, IsEndedInOrderByAConsoleThatItStaysAt)
{
    Control("[monitor 1]\ngone = 1\n[monitor 3]\ngone = 1\n");
    FreeConsole();
    ASSERT_TRUE(AllocConsole());
    SetConsoleCtrlHandler(IgnoreEvent, TRUE);
    for (const bool stays : {false, true}) {
        const std::string log = TempPath("console.log");
        DeleteFileW(Widen(log).c_str());
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process = {};
        std::wstring line = Widen("\"" + ProgramFolder() + "\\trayhub.exe\" --another --no-tray --log \"" + log + "\"" +
                                  (stays ? " --command \"lock 3\"" : ""));
        ASSERT_TRUE(
            CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process));
        const auto hasLogged = [&](const char *what) {
            std::string text, error;
            ReadWholeFile(log, 1 << 20, &text, &error);
            return text.find(what) != std::string::npos;
        };
        EXPECT_TRUE(WaitUntil([&] { return hasLogged("the plug-in has started"); }, 60000));
        EXPECT_EQ(IsAtConsole(process.dwProcessId), stays);
        GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
        EXPECT_EQ(WaitForSingleObject(process.hProcess, stays ? 60000 : 2000), stays ? WAIT_OBJECT_0 : WAIT_TIMEOUT);
        DWORD status = 0;
        GetExitCodeProcess(process.hProcess, &status);
        EXPECT_EQ(status, stays ? 1 : STILL_ACTIVE);
        EXPECT_EQ(hasLogged("slot=15"), stays);
        TerminateProcess(process.hProcess, 0);
        CloseHandle(process.hProcess);
        CloseHandle(process.hThread);
    }
    FreeConsole();
}
