// lvserver.exe, run as a user runs it, against the plug-in in this program.
#include "server/server_state.h"
#include "support/server_session.h"

#include <winsock.h>

namespace {

struct ProgramRun {
    DWORD status;
    std::string output; // what it printed, with plain ends of line
};

ProgramRun RunLvserver(const std::string &arguments)
{
    SECURITY_ATTRIBUTES inherit = {sizeof inherit, nullptr, TRUE};
    const HANDLE file = CreateFileA("lvserver.out", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, &inherit,
                                    CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = file;
    PROCESS_INFORMATION process;
    std::string line = "lvserver.exe " + arguments;
    ProgramRun run = {STILL_ACTIVE, ""};
    char folder[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, folder, sizeof folder);
    *strrchr(folder, '\\') = '\0';
    if (CreateProcessA((std::string(folder) + "\\lvserver.exe").c_str(), line.data(), nullptr, nullptr, TRUE, 0,
                       nullptr, nullptr, &startup, &process)) {
        WaitForSingleObject(process.hProcess, 30000);
        GetExitCodeProcess(process.hProcess, &run.status);
        CloseHandle(process.hProcess);
        CloseHandle(process.hThread);
    }
    DWORD size = GetFileSize(file, nullptr);
    run.output.resize(size);
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    ReadFile(file, run.output.data(), size, &size, nullptr);
    CloseHandle(file);
    std::erase(run.output, '\r');
    return run;
}

class LvserverTest : public LinkTest {
protected:
    void SetUp() override
    {
        host.monitors = {ColorMonitor("NRV-PA1")};
        PutDword(HKEY_CURRENT_USER, "Lumivane2", "IiF", 1);
        PutText(HKEY_CURRENT_USER, "Lumivane2", "LocalUserName", Sjis("田中"));
        StartLink();
    }
};

} // namespace

TEST_F(LvserverTest, WordsOfTheCommands)
{
    const std::string changed = Ansi("色情報を変更しました。");
    const struct {
        std::string arguments;
        std::string text; // of the final reply
        Lines monitor;
    } cases[] = {
        {"set-feature 1a 0x32", changed, {"set 0 1A = 50"}},
        {"set-all eco=on brightness=40 brightness-eco=30 contrast=50 preset=5",
         changed,
         {"set 0 E0 = 1", "set 0 10 = 30", "set 0 12 = 50", "set 0 14 = 5"}},
        {"set-all eco=off brightness=40 contrast=50 preset=11 red=1 green=2 blue=3",
         changed,
         {"set 0 E0 = 0", "set 0 10 = 40", "set 0 12 = 50", "set 0 14 = 11", "set 0 16 = 1", "set 0 18 = 2",
          "set 0 1A = 3"}},
        {"power off", "DPMS OFF", {}},
        {"power on", "DPMS ON", {}},
        {"eco off", "ECO Mode Off", {"set 0 E0 = 0"}},
        {"eco on", "ECO Mode On", {"set 0 E0 = 1"}},
        {"auto-adjust", "Auto Adjust Done", {"set 0 1E = 1"}},
        {"input analog", "Select Analog RGB", {"set 0 60 = 1"}},
        {"input digital", "Select Digital RGB", {"set 0 60 = 3"}},
        {"input tv", "Select TV Tuner", {"set 0 60 = 9"}},
        {"input s-video", "Select S-Video", {"set 0 60 = 7"}},
        {"input composite", "Select Composite", {"set 0 60 = 5"}},
        {"version", "3.00", {}},
        {"allow-names", "Enable to change User and Group Name", {}},
        {"raw 2 60 3", changed, {"set 0 60 = 3"}},
        {"raw 144", "Not Support", {}},
    };
    for (const auto &c : cases) {
        const ProgramRun run = RunLvserver(c.arguments);
        EXPECT_EQ(run.status, 0u) << c.arguments << "\n" << run.output;
        EXPECT_NE(run.output.find("status 0 (done), " + std::to_string(c.text.size() + 1) + " bytes: " + c.text + "\n"),
                  std::string::npos)
            << run.output;
        EXPECT_EQ(host.TakeLog(), c.monitor) << c.arguments;
    }
}

TEST_F(LvserverTest, Reports)
{
    in_addr address;
    address.s_addr = g_dwMyIpAddr;
    const std::string me = inet_ntoa(address);
    EXPECT_EQ(RunLvserver("identity").output, "sent    identity (128) to 127.0.0.1, for all clients\n"
                                              "reply   from " +
                                                  me + ": status 128 (identity), 64 bytes: " + Ansi("田中") +
                                                  "\n"
                                                  "reply   from " +
                                                  me +
                                                  ": status 0 (done), 6 bytes: Ready\n"
                                                  "result  carried out\n");
    EXPECT_EQ(RunLvserver("--json --target " + me + " identity").output,
              "{\"command\":\"identity\",\"number\":128,\"to\":\"127.0.0.1\",\"target\":\"" + me +
                  "\",\"server\":\"127.0.0.1\",\"replies\":[{\"from\":\"" + me +
                  "\",\"status\":128,\"kind\":\"identity\",\"length\":64,\"text\":\"\\u7530\\u4e2d\"},{\"from\":\"" +
                  me +
                  "\",\"status\":0,\"kind\":\"done\",\"length\":6,\"text\":\"Ready\"}],\"broken\":0,"
                  "\"result\":\"carried out\"}\n");
}

TEST_F(LvserverTest, RefusalsBoxesAndSilence)
{
    BoxAnswerer answerer("Lumivane 2", IDOK);
    const ProgramRun refused = RunLvserver("raw 7");
    EXPECT_EQ(refused.status, 1u);
    EXPECT_NE(refused.output.find("status 255 (refused)"), std::string::npos) << refused.output;
    EXPECT_EQ(RunLvserver("message \"two words\"").status, 0u);
    EXPECT_EQ(answerer.Boxes().size(), 2u);

    const ProgramRun silent = RunLvserver("--timeout 0.5 --target 192.0.2.1 eco on");
    EXPECT_EQ(silent.status, 3u);
    EXPECT_NE(silent.output.find("result  no answer\n"), std::string::npos);
    EXPECT_EQ(host.TakeLog(), Lines{});

    TestServer other;
    const ProgramRun taken = RunLvserver("eco on");
    EXPECT_EQ(taken.status, 4u);
    EXPECT_EQ(taken.output.substr(0, 43), "lvserver: TCP port 9700 of 127.0.0.1 cannot");
}

TEST(LvserverCommandLine, WrongOnesAreRefusedWithAReason)
{
    const struct {
        const char *arguments;
        const char *reason; // how it begins
    } cases[] = {
        {"", "no command given"},
        {"dance", "'dance' is no command"},
        {"input", "input needs one of: analog, digital, tv, s-video, composite"},
        {"eco maybe", "eco needs one of: off, on"},
        {"version now", "'now' is one word too many"},
        {"set-feature 10", "set-feature needs"},
        {"set-feature 100 5", "'100' is no VCP code"},
        {"set-feature 10 -5", "'-5' is no value"},
        {"set-all eco=on brightness=5 preset=5", "set-all needs contrast=..."},
        {"set-all eco=on brightness=5 contrast=5 preset=11 red=1", "set-all needs green=..."},
        {"set-all eco=on brightness=70000", "'brightness=70000' is no setting"},
        {"raw 256", "'256' is no command number"},
        {"--to 127.0.0 version", "'127.0.0' is no value for --to"},
        {"--to 1.2.3.4.5 version", "'1.2.3.4.5' is no value for --to"},
        {"--timeout 0 version", "'0' is no value for --timeout"},
        {"--target", "--target needs a value"},
        {"--colour version", "'--colour' is no option"},
    };
    for (const auto &c : cases) {
        const ProgramRun run = RunLvserver(c.arguments);
        EXPECT_EQ(run.status, 2u) << c.arguments;
        EXPECT_EQ(run.output.substr(0, 10 + strlen(c.reason)), std::string("lvserver: ") + c.reason);
    }
    const ProgramRun help = RunLvserver("--help");
    EXPECT_EQ(help.status, 0u);
    EXPECT_NE(help.output.find("lvserver --json --timeout 3 identity"), std::string::npos);
}
