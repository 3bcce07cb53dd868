// Answers message boxes: real ones, found on the screen by their caption, as a user would find them.
#pragma once

#include <windows.h>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

// The message box or file dialog of this process with this caption that is on screen; null without one. The panel and
// its prompt are neither. WaitForDialog waits for it to come: null after ten seconds.
HWND FindDialog(const std::string &caption);
HWND WaitForDialog(const std::string &caption);

// While it exists, each message box of this process with the given caption gets the given button pressed.
class BoxAnswerer {
public:
    explicit BoxAnswerer(std::string caption, int button);
    ~BoxAnswerer();
    BoxAnswerer(const BoxAnswerer &) = delete;
    BoxAnswerer &operator=(const BoxAnswerer &) = delete;

    // What was answered so far, a line a box: icon, buttons, whether it has an owner window, and the text, such as
    // "? YES NO owned: Really?". Icons are "x" stop, "?" question, "!" exclamation, "i" information, "-" none; lines of
    // the text end with '\n'. TakeBoxes forgets them.
    std::vector<std::string> Boxes();
    std::vector<std::string> TakeBoxes();

    // Waits until that many boxes were answered; false after ten seconds.
    bool WaitForBoxes(size_t count);

private:
    void Watch();
    void Answer(HWND box);
    static BOOL CALLBACK OnWindow(HWND window, LPARAM self);

    const std::string m_caption;
    const int m_button;
    std::mutex m_lock;
    std::vector<std::string> m_boxes;
    size_t m_count = 0; // with those that were forgotten
    std::vector<HWND> m_answered;
    HANDLE m_stop;
    std::thread m_thread;
};
