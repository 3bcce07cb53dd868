// A process of this very program, and the lines that it prints.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

class ChildProcess {
public:
    // Starts the program anew with these arguments.
    explicit ChildProcess(const std::string &arguments);
    ~ChildProcess(); // ends it when it still runs
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    // The next line, without its end. None when the process has ended and all is read, and none, with Silent true, when
    // nothing came for that long.
    std::optional<std::string> ReadLine(DWORD milliseconds);
    bool Silent() const { return m_silent; }

    bool Runs() const;
    void Kill();

    // After its end: what it ended with.
    DWORD ExitCode() const;

private:
    bool Fetch();

    HANDLE m_process = nullptr;
    HANDLE m_pipe = nullptr;
    std::string m_read; // and not yet given out
    bool m_silent = false;
};
