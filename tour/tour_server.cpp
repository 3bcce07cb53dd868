// Steps of the tour that play the management server: lvserver.exe beside the host, over real sockets of this PC.
#include "host/base/console.h"
#include "host/base/program_path.h"
#include "host/base/text.h"
#include "monitor/vcp_codes.h"
#include "panel/resources/resource.h"
#include "tour/tour_hands.h"
#include "tour/tour_monitors.h"
#include "tour/tour_panel.h"
#include "tour/tour_steps.h"

#include <initializer_list>

constexpr int SERVER_PATIENCE = 5;            // s for one answer
constexpr DWORD PROCESS_PATIENCE = 5000;      // ms for the program's own start and end
constexpr size_t OUTPUT_LIMIT = 65536;        // bytes of output that are looked at
constexpr int SERVER_DONE = 0, NO_ANSWER = 3; // exit statuses of lvserver.exe
constexpr int NOT_RUN = -1;

// The inputs that a server can choose.
static const struct INPUTWORD {
    const char *word;
    WORD value;
} s_inputs[] = {{"tv", INPUT_TV},
                {"s-video", INPUT_S_VIDEO},
                {"composite", INPUT_VIDEO},
                {"digital", INPUT_DIGITAL},
                {"analog", INPUT_ANALOG}};

// ---- lvserver.exe ---------------------------------------------------------------------------------------------------

// A file and no pipe, so that nobody waits for whatever else inherits it.
static HANDLE OpenOutput(const std::string &path)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileW(Widen(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

// Returns the exit status, or NOT_RUN with the reason in *error.
static int RunAndWait(const std::string &commandLine, HANDLE output, std::string *error)
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = output;
    PROCESS_INFORMATION process;
    std::wstring wide = Widen(commandLine);
    // Without a console, so that it writes in the system's code page.
    if (!CreateProcessW(nullptr, wide.data(), nullptr, nullptr, TRUE, DETACHED_PROCESS, nullptr, nullptr, &startup,
                        &process)) {
        *error = "it cannot be started: " + SystemErrorText(GetLastError());
        return NOT_RUN;
    }
    DWORD status = 0;
    const bool ended =
        WaitForSingleObject(process.hProcess, SERVER_PATIENCE * 1000 + PROCESS_PATIENCE) == WAIT_OBJECT_0;
    if (ended)
        GetExitCodeProcess(process.hProcess, &status);
    else
        TerminateProcess(process.hProcess, 1);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    if (!ended)
        *error = "it did not come to an end";
    return ended ? static_cast<int>(status) : NOT_RUN;
}

static void PrintOutput(const std::string &path)
{
    std::string bytes, error;
    if (!ReadWholeFile(path, OUTPUT_LIMIT, &bytes, &error)) {
        ConsoleLine("    its output cannot be read: " + error);
        return;
    }
    for (std::string line : SplitAt(Narrow(WidenAnsi(bytes)), '\n')) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty())
            ConsoleLine("    " + line);
    }
}

// Gives one command to the plug-in as the server does, and prints what lvserver.exe says. Returns its exit status, or
// NOT_RUN with the reason in *error.
static int AskAsServer(const TOUR *tour, const std::string &command, std::string *error)
{
    const std::string path = tour->folder + "\\lvserver.txt";
    const HANDLE output = OpenOutput(path);
    if (output == INVALID_HANDLE_VALUE) {
        *error = path + ": " + SystemErrorText(GetLastError());
        return NOT_RUN;
    }
    ConsoleLine("  lvserver " + command);
    const std::string program = "\"" + ProgramFolder() + "\\lvserver.exe\"";
    const int status =
        RunAndWait(Format("%s --timeout %d ", program.c_str(), SERVER_PATIENCE) + command, output, error);
    CloseHandle(output);
    PrintOutput(path);
    return status;
}

// A datagram that comes while the plug-in is between two sockets is lost; a server sends it again, once here.
static bool CarryOut(TOUR *tour, const std::string &command)
{
    std::string error;
    int status = AskAsServer(tour, command, &error);
    if (status == NO_ANSWER)
        status = AskAsServer(tour, command, &error);
    if (status == SERVER_DONE)
        return true;
    tour->reason = "lvserver " + command + ": " + (status == NOT_RUN ? error : Format("status %d", status));
    return false;
}

// ---- The steps ------------------------------------------------------------------------------------------------------

// An input that the first monitor has and does not show; null when there is none.
static const INPUTWORD *OtherInput(const TOUR *tour)
{
    const WORD shown = TourMonitor(tour, 0).input;
    const std::vector<WIREMONITOR> monitors = CopyWireMonitors(&tour->app->plugin.router);
    for (const INPUTWORD &input : s_inputs)
        if (!monitors.empty() && monitors[0].hasInputs && monitors[0].inputs[input.value] && input.value != shown)
            return &input;
    return nullptr;
}

// The server does not choose a monitor: its commands go to the one selected in the panel, the first until then.
STEPRESULT StepServer(TOUR *tour)
{
    for (const char *command : {"version", "identity"})
        if (!CarryOut(tour, command))
            return STEP_FAILED;
    const INPUTWORD *input = OtherInput(tour);
    if (!input) {
        tour->seen = "version and identity; the first monitor has no other input that a server can choose";
        return STEP_DONE;
    }
    const WORD before = TourMonitor(tour, 0).input;
    if (!CarryOut(tour, std::string("input ") + input->word))
        return STEP_FAILED;
    const WORD after = TourMonitor(tour, 0).input;
    tour->seen = Format("monitor 1: input %u -> %u", before, after);
    ConsoleLine("  " + tour->seen);
    return after == input->value ? STEP_DONE : FailStep(tour, Format("the input was to become %u", input->value));
}

// Until the server allows it, the page shows the names only.
STEPRESULT StepNames(TOUR *tour)
{
    static const char user[] = "tanaka", group[] = "開発部";
    std::string question;
    if (!ChoosePage(tour, "ネットワーク設定"))
        return STEP_FAILED;
    // The page is there before it has asked what its user may do.
    if (!WaitUntil([] { return !IsWindowEnabled(GetDlgItem(FindPage(), IDC_NETWORK_USER_NAME)); }))
        return FailStep(tour, "the page lets the names be changed before the server has allowed it");
    if (!CarryOut(tour, "allow-names") || !ChoosePage(tour, "Lumivane2") || !ChoosePage(tour, "ネットワーク設定") ||
        !TypeInto(tour, GetDlgItem(FindPage(), IDC_NETWORK_USER_NAME), user, "the user name") ||
        !PasteInto(tour, GetDlgItem(FindPage(), IDC_NETWORK_GROUP_NAME), group, "the group name"))
        return STEP_FAILED;
    TakePanelPicture(tour, "network-page");
    if (!ClickControl(tour, FindPage(), IDC_NETWORK_APPLY, "the button 設定変更") || !AnswerBox(tour, IDYES, &question))
        return STEP_FAILED;
    ConsoleLine("  asked: " + question.substr(0, question.find('\n')));
    if (!WaitUntil([] { return !IsWindowEnabled(GetDlgItem(FindPage(), IDC_NETWORK_USER_NAME)); }))
        return FailStep(tour, "the page still lets the names be changed");
    if (!CarryOut(tour, "identity") || !GiveCommand(tour, "identity", &tour->seen))
        return STEP_FAILED;
    if (tour->seen.find(user) == std::string::npos || tour->seen.find(group) == std::string::npos)
        return FailStep(tour, "the plug-in's identity is now: " + tour->seen);
    return STEP_DONE;
}
