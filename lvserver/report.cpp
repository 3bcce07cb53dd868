// Lines for people, JSON for programs.
#include "report.h"

#include <windows.h>

#include <cstdio>

constexpr UINT CLIENT_CODE_PAGE = 932; // clients speak Shift-JIS

EXITSTATUS ExitStatusOf(const EXCHANGE *lpExchange)
{
    if (!lpExchange->error.empty())
        return EXIT_NO_NETWORK;
    if (!lpExchange->bFinal)
        return EXIT_NO_ANSWER;
    return lpExchange->replies.back().head.bStatus == SERVER_STATUS_DONE ? EXIT_DONE : EXIT_REFUSED;
}

static const char *ResultText(EXITSTATUS status)
{
    switch (status) {
    case EXIT_DONE:
        return "carried out";
    case EXIT_REFUSED:
        return "refused";
    case EXIT_NO_NETWORK:
        return "no network";
    default:
        return "no answer";
    }
}

static const char *StatusText(uint8_t status)
{
    switch (status) {
    case SERVER_STATUS_DONE:
        return "done";
    case SERVER_STATUS_DATA:
        return "data";
    case SERVER_STATUS_IDENTITY:
        return "identity";
    case SERVER_STATUS_REFUSED:
        return "refused";
    default:
        return "unknown";
    }
}

static std::wstring Widen(const std::string &bytes, UINT codePage)
{
    std::wstring wide(bytes.size(), L'\0');
    if (!bytes.empty())
        wide.resize(static_cast<size_t>(MultiByteToWideChar(codePage, 0, bytes.data(), static_cast<int>(bytes.size()),
                                                            wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

// The text that the data of a reply holds: up to its zero.
static std::wstring TextOf(const REPLY &reply)
{
    return Widen(reply.data.substr(0, reply.data.find('\0')), CLIENT_CODE_PAGE);
}

// ---- Output -------------------------------------------------------------------------------------------------------

static void Print(const std::wstring &text)
{
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode;
    DWORD written;
    if (GetConsoleMode(output, &mode)) {
        WriteConsoleW(output, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
        return;
    }
    const UINT codePage = GetConsoleOutputCP() ? GetConsoleOutputCP() : GetACP();
    std::string bytes(text.size() * 4, '\0');
    const int size = WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
    fwrite(bytes.data(), 1, static_cast<size_t>(size), stdout);
}

// Client texts reach a terminal: no control characters.
static std::wstring Printable(std::wstring text)
{
    for (wchar_t &character : text)
        if (character < L' ' || character == 0x7F)
            character = L' ';
    return text;
}

static void PrintLines(const REQUEST *request, const EXCHANGE *exchange)
{
    char line[256];
    snprintf(line, sizeof line, "sent    %s (%u) to %s, %s%s\n", request->name.c_str(), request->bCommand,
             AddressText(request->dwTo).c_str(), request->dwTarget ? "for " : "for all clients",
             request->dwTarget ? AddressText(request->dwTarget).c_str() : "");
    Print(Widen(line, CP_UTF8));
    for (const REPLY &reply : exchange->replies) {
        snprintf(line, sizeof line, "reply   from %s: status %u (%s), %lu bytes",
                 AddressText(reply.head.dwFrom).c_str(), reply.head.bStatus, StatusText(reply.head.bStatus),
                 static_cast<unsigned long>(reply.head.dwLength));
        const std::wstring text = Printable(TextOf(reply));
        Print(Widen(line, CP_UTF8) + (text.empty() ? L"" : L": " + text) + L"\n");
    }
    if (exchange->nBroken)
        Print(L"broken  " + std::to_wstring(exchange->nBroken) + L" connection(s) brought no whole message\n");
    Print(L"result  " + Widen(ResultText(ExitStatusOf(exchange)), CP_UTF8) + L"\n");
}

static std::string JsonText(const std::wstring &text)
{
    std::string json = "\"";
    for (const wchar_t character : text) {
        char escaped[8];
        if (character == L'"' || character == L'\\')
            json += '\\';
        if (character >= L' ' && character < 0x7F) {
            json += static_cast<char>(character);
            continue;
        }
        snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(character));
        json += escaped;
    }
    return json + "\"";
}

static std::string JsonText(const std::string &ascii)
{
    return JsonText(Widen(ascii, CP_UTF8));
}

static void PrintJson(const REQUEST *request, const EXCHANGE *exchange)
{
    std::string json = "{\"command\":" + JsonText(request->name) + ",\"number\":" + std::to_string(request->bCommand) +
                       ",\"to\":" + JsonText(AddressText(request->dwTo)) +
                       ",\"target\":" + (request->dwTarget ? JsonText(AddressText(request->dwTarget)) : "null") +
                       ",\"server\":" + JsonText(AddressText(exchange->dwServer)) + ",\"replies\":[";
    const char *separator = "";
    for (const REPLY &reply : exchange->replies) {
        json += std::string(separator) + "{\"from\":" + JsonText(AddressText(reply.head.dwFrom)) +
                ",\"status\":" + std::to_string(reply.head.bStatus) +
                ",\"kind\":" + JsonText(std::string(StatusText(reply.head.bStatus))) +
                ",\"length\":" + std::to_string(reply.head.dwLength) + ",\"text\":" + JsonText(TextOf(reply)) + "}";
        separator = ",";
    }
    json += "],\"broken\":" + std::to_string(exchange->nBroken) +
            ",\"result\":" + JsonText(std::string(ResultText(ExitStatusOf(exchange)))) + "}\n";
    Print(Widen(json, CP_UTF8));
}

void PrintReport(const REQUEST *lpRequest, const EXCHANGE *lpExchange)
{
    if (lpRequest->bJson)
        PrintJson(lpRequest, lpExchange);
    else
        PrintLines(lpRequest, lpExchange);
    fflush(stdout);
}
