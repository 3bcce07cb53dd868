// Answers message boxes: real ones, found on the screen by their caption, as a user would find them.
#pragma once

#include <windows.h>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

struct AnsweredBox {
    std::string caption;
    std::string text;
    std::vector<int> buttons; // identifiers, IDOK and so on, ascending
    char icon;                // 'x' stop, '?' question, '!' exclamation, 'i' information, ' ' none
    bool owned;               // the box has an owner window
};

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

    // What was answered so far.
    std::vector<AnsweredBox> Boxes();

    // Waits until that many boxes were answered; false after ten seconds.
    bool WaitForBoxes(size_t count);

private:
    void Watch();
    void Answer(HWND box);
    static BOOL CALLBACK OnWindow(HWND window, LPARAM self);

    const std::string m_caption;
    const int m_button;
    std::mutex m_lock;
    std::vector<AnsweredBox> m_boxes;
    std::vector<HWND> m_answered;
    HANDLE m_stop;
    std::thread m_thread;
};
