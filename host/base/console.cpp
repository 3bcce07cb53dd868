// Where a program without a console says something: the handles it inherited, the console it was started from, or a
// box.
#include "host/base/console.h"

#include <windows.h>

#include <initializer_list>
#include <mutex>

#include "host/base/text.h"

static HANDLE s_hOutput;   // null when there is none
static HANDLE s_hError;    // null when there is none
static bool s_bMayShowBox; // boxes are for a user at the screen only
static std::mutex s_mutex; // one line at a time

static HANDLE UsableHandle(DWORD which)
{
    const HANDLE handle = GetStdHandle(which);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE || GetFileType(handle) == FILE_TYPE_UNKNOWN)
        return nullptr;
    return handle;
}

// Windows 2000 has no AttachConsole, so it is looked up.
static HANDLE ParentConsole()
{
    typedef BOOL(WINAPI * ATTACHCONSOLE)(DWORD);
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "AttachConsole");
    const auto attach = reinterpret_cast<ATTACHCONSOLE>(reinterpret_cast<void *>(found));
    if (!attach || !attach(static_cast<DWORD>(-1)))
        return nullptr;
    const HANDLE handle = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_EXISTING, 0, nullptr);
    return handle == INVALID_HANDLE_VALUE ? nullptr : handle;
}

void OpenConsole(bool mayShowBox)
{
    s_bMayShowBox = mayShowBox;
    s_hOutput = UsableHandle(STD_OUTPUT_HANDLE);
    s_hError = UsableHandle(STD_ERROR_HANDLE);
    if (!s_hOutput && !s_hError)
        s_hOutput = s_hError = ParentConsole();
}

void LeaveConsole()
{
    std::lock_guard lock(s_mutex);
    for (HANDLE *handle : {&s_hOutput, &s_hError}) {
        DWORD mode = 0;
        if (*handle && GetConsoleMode(*handle, &mode))
            *handle = nullptr;
    }
    FreeConsole();
}

enum OUTPUT { OUTPUT_PLAIN, OUTPUT_ERROR };

// A console takes UTF-16, a file or a pipe UTF-8. Returns false when there is no output.
static bool Write(OUTPUT output, const std::string &text)
{
    std::lock_guard lock(s_mutex);
    const HANDLE handle = output == OUTPUT_ERROR && s_hError ? s_hError : s_hOutput;
    DWORD mode = 0, written = 0;
    if (!handle)
        return false;
    if (GetConsoleMode(handle, &mode)) {
        const std::wstring wide = Widen(text);
        WriteConsoleW(handle, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
    } else {
        WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    }
    return true;
}

static void ShowBox(const std::string &text, UINT icon)
{
    if (s_bMayShowBox)
        MessageBoxW(nullptr, Widen(text).c_str(), L"Trayhub", MB_OK | icon | MB_SETFOREGROUND);
}

bool HasConsole()
{
    return s_hOutput != nullptr;
}

void ConsoleLine(const std::string &text)
{
    Write(OUTPUT_PLAIN, text + "\n");
}

void ConsoleError(const std::string &text)
{
    if (!Write(OUTPUT_ERROR, "trayhub: " + text + "\n"))
        ShowBox(text, MB_ICONSTOP);
}

void ConsoleText(const std::string &text)
{
    if (!Write(OUTPUT_PLAIN, text))
        ShowBox(text, MB_ICONINFORMATION);
}
