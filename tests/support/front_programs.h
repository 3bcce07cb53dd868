// Real second programs: copies of front_program.exe under names of the test's choice, with their windows.
#pragma once

#include <windows.h>

#include <string>

// Brings a window of any process to the front. False when that does not succeed.
bool MoveToFront(HWND window);

class FrontProgram {
public:
    // Copies the program to that name beside this one, starts it and waits for its windows.
    explicit FrontProgram(const std::string &name);
    ~FrontProgram();
    FrontProgram(const FrontProgram &) = delete;
    FrontProgram &operator=(const FrontProgram &) = delete;

    const std::string &Path() const { return m_path; }

    // The path as the plug-in gets to know it: on the Windows 95 family Wine's list of processes has file names alone,
    // where the real one has full paths.
    std::string KnownPath() const;

    // Brings its main window, or the dialog that this owns, to the front; as MoveToFront.
    bool BringToFront();
    bool BringDialogToFront();

    HWND Window() const { return m_window; }

private:
    std::string m_path;
    HANDLE m_process = nullptr;
    HWND m_window = nullptr;
    HWND m_dialog = nullptr;
};
