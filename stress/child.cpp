// Start, pipe and end of a process of this program.
#include "stress/child.h"

#include <stdexcept>

constexpr DWORD POLL_MS = 10;
constexpr UINT KILLED = 99;

static std::string ProgramPath()
{
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    return path;
}

ChildProcess::ChildProcess(const std::string &arguments)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    HANDLE write;
    if (!CreatePipe(&m_pipe, &write, &inherited, 1 << 16))
        throw std::runtime_error("no pipe");
    SetHandleInformation(m_pipe, HANDLE_FLAG_INHERIT, 0);

    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = write;
    startup.hStdError = write;
    PROCESS_INFORMATION process;
    std::string command = "\"" + ProgramPath() + "\" " + arguments;
    const BOOL started =
        CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process);
    CloseHandle(write);
    if (!started) {
        CloseHandle(m_pipe);
        throw std::runtime_error("cannot start " + command);
    }
    CloseHandle(process.hThread);
    m_process = process.hProcess;
}

ChildProcess::~ChildProcess()
{
    Kill();
    CloseHandle(m_process);
    CloseHandle(m_pipe);
}

// Takes what is in the pipe. False when there is nothing.
bool ChildProcess::Fetch()
{
    char buffer[4096];
    DWORD available = 0, read = 0;
    if (!PeekNamedPipe(m_pipe, nullptr, 0, nullptr, &available, nullptr) || available == 0)
        return false;
    if (!ReadFile(m_pipe, buffer, available < sizeof buffer ? available : sizeof buffer, &read, nullptr))
        return false;
    m_read.append(buffer, read);
    return read > 0;
}

std::optional<std::string> ChildProcess::ReadLine(DWORD milliseconds)
{
    m_silent = false;
    const DWORD start = GetTickCount();
    for (;;) {
        const size_t end = m_read.find('\n');
        if (end != std::string::npos) {
            std::string line = m_read.substr(0, end);
            m_read.erase(0, end + 1);
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            return line;
        }
        const bool ran = Runs(); // looked at before the pipe: what it wrote last is not missed
        if (Fetch())
            continue;
        if (!ran)
            return std::nullopt;
        if (GetTickCount() - start >= milliseconds) {
            m_silent = true;
            return std::nullopt;
        }
        Sleep(POLL_MS);
    }
}

bool ChildProcess::Runs() const
{
    return WaitForSingleObject(m_process, 0) == WAIT_TIMEOUT;
}

void ChildProcess::Kill()
{
    if (!Runs())
        return;
    TerminateProcess(m_process, KILLED);
    WaitForSingleObject(m_process, INFINITE);
}

DWORD ChildProcess::ExitCode() const
{
    DWORD code = 0;
    GetExitCodeProcess(m_process, &code);
    return code;
}
