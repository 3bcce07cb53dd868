// Where the running program stands.
#include "host/base/program_path.h"

#include <windows.h>

#include "host/base/text.h"

constexpr size_t LONGEST_PATH = 0x8000;

std::wstring ProgramPath()
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size() || path.size() >= LONGEST_PATH)
            return path.substr(0, length);
        path.resize(path.size() * 2);
    }
}

std::string ProgramFolder()
{
    const std::string text = Narrow(ProgramPath());
    return text.substr(0, text.find_last_of('\\'));
}
