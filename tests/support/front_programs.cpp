// Copies, starts and ends programs, and moves windows of other processes to the front.
#include "support/front_programs.h"

#include "kernel/base/platform.h"
#include "support/comes.h"
#include "support/ini_folder.h"

#include <stdexcept>

static HWND WindowOf(LPCSTR className, DWORD process)
{
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, className, nullptr))) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process)
            return window;
    }
    return nullptr;
}

FrontProgram::FrontProgram(const std::string &name) : m_path(IniFolder::Path(name))
{
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process;
    if (!CopyFileA(IniFolder::Path("front_program.exe").c_str(), m_path.c_str(), FALSE) ||
        !CreateProcessA(m_path.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
        throw std::runtime_error("cannot start " + m_path);
    CloseHandle(process.hThread);
    m_process = process.hProcess;
    Comes([&] {
        m_window = WindowOf("lvkernel_front", process.dwProcessId);
        m_dialog = WindowOf("lvkernel_front_dialog", process.dwProcessId);
        return m_window && m_dialog;
    });
    WaitForInputIdle(m_process, 10000);
}

// Not closed by its window: without a window manager that takes two seconds for each.
FrontProgram::~FrontProgram()
{
    TerminateProcess(m_process, 0);
    WaitForSingleObject(m_process, 10000);
    CloseHandle(m_process);
    Comes([&] { return DeleteFileA(m_path.c_str()) != 0; });
}

std::string FrontProgram::KnownPath() const
{
    return GetPlatformId() == PLATFORM_NT ? m_path : m_path.substr(m_path.rfind('\\') + 1);
}

bool MoveToFront(HWND window)
{
    return Comes([&] {
        SetForegroundWindow(window);
        return GetForegroundWindow() == window;
    });
}

bool FrontProgram::BringToFront()
{
    return MoveToFront(m_window);
}

bool FrontProgram::BringDialogToFront()
{
    ShowWindow(m_dialog, SW_SHOW);
    return MoveToFront(m_dialog);
}
