// A thread that looks for message boxes and presses their buttons.
#include "support/box_answerer.h"

#include "support/comes.h"

#include <algorithm>
#include <utility>

static std::string TextOf(HWND window)
{
    char text[1024] = "";
    GetWindowTextA(window, text, sizeof text);
    return text;
}

static std::vector<int> ButtonsOf(HWND box)
{
    std::vector<int> buttons;
    for (int id = IDOK; id <= IDNO; ++id)
        if (GetDlgItem(box, id) && IsWindowVisible(GetDlgItem(box, id)))
            buttons.push_back(id);
    return buttons;
}

static bool IsOwnDialog(HWND window)
{
    DWORD process = 0;
    char className[32] = "";
    GetWindowThreadProcessId(window, &process);
    GetClassNameA(window, className, sizeof className);
    return process == GetCurrentProcessId() && !strcmp(className, "#32770") && IsWindowVisible(window);
}

HWND FindDialog(const std::string &caption)
{
    HWND window = nullptr;
    while ((window = FindWindowExA(nullptr, window, "#32770", caption.c_str())) &&
           !(IsOwnDialog(window) && !ButtonsOf(window).empty())) {
    }
    return window;
}

HWND WaitForDialog(const std::string &caption)
{
    HWND dialog = nullptr;
    Comes([&] { return (dialog = FindDialog(caption)) != nullptr; });
    return dialog;
}

BoxAnswerer::BoxAnswerer(std::string caption, int button)
    : m_caption(std::move(caption)), m_button(button), m_stop(CreateEventA(nullptr, TRUE, FALSE, nullptr)),
      m_thread([this] { Watch(); })
{
}

BoxAnswerer::~BoxAnswerer()
{
    SetEvent(m_stop);
    m_thread.join();
    CloseHandle(m_stop);
}

std::vector<std::string> BoxAnswerer::Boxes()
{
    const std::lock_guard lock(m_lock);
    return m_boxes;
}

std::vector<std::string> BoxAnswerer::TakeBoxes()
{
    const std::lock_guard lock(m_lock);
    return std::exchange(m_boxes, {});
}

bool BoxAnswerer::WaitForBoxes(size_t count)
{
    return Comes([&] {
        const std::lock_guard lock(m_lock);
        return m_count >= count;
    });
}

void BoxAnswerer::Watch()
{
    while (WaitForSingleObject(m_stop, 10) == WAIT_TIMEOUT)
        EnumWindows(OnWindow, reinterpret_cast<LPARAM>(this));
}

BOOL CALLBACK BoxAnswerer::OnWindow(HWND window, LPARAM self)
{
    // Item 0xFFFF is the text of a message box; other dialogs have none.
    if (IsOwnDialog(window) && GetDlgItem(window, 0xFFFF))
        reinterpret_cast<BoxAnswerer *>(self)->Answer(window);
    return TRUE;
}

static char IconOf(HWND box)
{
    const struct {
        LPCSTR icon;
        char letter;
    } icons[] = {{IDI_HAND, 'x'}, {IDI_QUESTION, '?'}, {IDI_EXCLAMATION, '!'}, {IDI_ASTERISK, 'i'}};
    char className[32];
    for (HWND child = GetWindow(box, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        GetClassNameA(child, className, sizeof className);
        if (_stricmp(className, "Static") != 0 || (GetWindowLongA(child, GWL_STYLE) & SS_TYPEMASK) != SS_ICON)
            continue;
        const auto shown = reinterpret_cast<HICON>(SendMessageA(child, STM_GETICON, 0, 0));
        for (const auto &known : icons)
            if (shown && shown == LoadIconA(nullptr, known.icon))
                return known.letter;
    }
    return '-';
}

void BoxAnswerer::Answer(HWND box)
{
    if (TextOf(box) != m_caption || std::count(m_answered.begin(), m_answered.end(), box))
        return;
    static const char *const names[] = {"", "OK", "CANCEL", "ABORT", "RETRY", "IGNORE", "YES", "NO"};
    std::string seen(1, IconOf(box));
    for (const int button : ButtonsOf(box))
        seen += std::string(" ") + names[button];
    seen += (GetWindow(box, GW_OWNER) ? " owned: " : ": ") + TextOf(GetDlgItem(box, 0xFFFF));
    std::erase(seen, '\r');
    m_answered.push_back(box);
    {
        const std::lock_guard lock(m_lock);
        m_boxes.push_back(seen);
        ++m_count;
    }
    PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(m_button), 0);
}
