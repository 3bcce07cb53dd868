// Text as the host handles it: conversions, small scanners, and reading a file whole.
#include "host/base/text.h"

#include <windows.h>

#include <cstdarg>
#include <cstdio>

static std::wstring WidenFrom(UINT codePage, std::string_view text)
{
    const int length = static_cast<int>(text.size());
    std::wstring wide(static_cast<size_t>(MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0)), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::wstring Widen(std::string_view text)
{
    return WidenFrom(CP_UTF8, text);
}

std::wstring WidenShiftJis(std::string_view text)
{
    return WidenFrom(932, text);
}

std::wstring WidenAnsi(std::string_view text)
{
    return WidenFrom(CP_ACP, text);
}

bool FitsAnsi(std::wstring_view text)
{
    BOOL isReplaced = FALSE;
    const int length = static_cast<int>(text.size());
    return length == 0 || (WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), length, nullptr, 0, nullptr,
                                               &isReplaced) > 0 &&
                           !isReplaced);
}

std::string Narrow(std::wstring_view text)
{
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

std::string Format(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = __mingw_vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    if (length > 0)
        __mingw_vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

std::string_view Trim(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string> SplitWords(std::string_view text)
{
    std::vector<std::string> words;
    for (size_t at = text.find_first_not_of(" \t"); at != std::string_view::npos;) {
        const size_t end = text.find_first_of(" \t", at);
        words.emplace_back(text.substr(at, end == std::string_view::npos ? end : end - at));
        at = text.find_first_not_of(" \t", end);
    }
    return words;
}

std::vector<std::string> SplitAt(std::string_view text, char separator)
{
    std::vector<std::string> pieces;
    while (!text.empty()) {
        const size_t end = text.find(separator);
        pieces.emplace_back(Trim(text.substr(0, end)));
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
    }
    return pieces;
}

std::vector<std::string_view> SplitLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    if (text.substr(0, 3) == "\xEF\xBB\xBF")
        text.remove_prefix(3);
    while (!text.empty()) {
        const size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        lines.push_back(line);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

static char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualNoCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); i++)
        if (Lower(a[i]) != Lower(b[i]))
            return false;
    return true;
}

static int DigitValue(char c)
{
    const char lower = Lower(c);
    if (lower >= '0' && lower <= '9')
        return lower - '0';
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 99;
}

bool ParseNumber(std::string_view text, int base, unsigned limit, unsigned *value)
{
    if (text.size() > 2 && text[0] == '0' && Lower(text[1]) == 'x') {
        text.remove_prefix(2);
        base = 16;
    }
    if (text.empty())
        return false;
    unsigned long long number = 0;
    for (const char c : text) {
        if (DigitValue(c) >= base)
            return false;
        number = number * static_cast<unsigned>(base) + static_cast<unsigned>(DigitValue(c));
        if (number > limit)
            return false;
    }
    *value = static_cast<unsigned>(number);
    return true;
}

std::string Quoted(std::string_view text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            quoted += Format("\\x%02X", static_cast<unsigned char>(c));
        else
            quoted += c;
    }
    return quoted + '"';
}

bool ReadWholeFile(const std::string &path, size_t limit, std::string *content, std::string *error)
{
    const HANDLE file = CreateFileW(Widen(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        *error = SystemErrorText(GetLastError());
        return false;
    }
    std::string bytes(limit + 1, '\0');
    DWORD read = 0;
    const bool done = ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) != 0;
    if (!done)
        *error = SystemErrorText(GetLastError());
    CloseHandle(file);
    if (!done)
        return false;
    if (read > limit) {
        *error = Format("the file is larger than %u bytes", static_cast<unsigned>(limit));
        return false;
    }
    bytes.resize(read);
    *content = std::move(bytes);
    return true;
}

std::string SystemErrorText(unsigned long code)
{
    wchar_t text[256];
    // In English where the system has it, as all console output is.
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                                  MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), text, 256, nullptr);
    if (length == 0)
        length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text, 256,
                                nullptr);
    std::wstring message(text, length);
    while (!message.empty() && wcschr(L"\r\n. ", message.back()))
        message.pop_back();
    if (const size_t insert = message.find(L"%1"); insert != std::wstring::npos)
        message.replace(insert, 2, L"the file");
    return message.empty() ? Format("error %lu", code) : Narrow(message);
}
