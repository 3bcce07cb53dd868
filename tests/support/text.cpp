// Conversions between UTF-8 and the code pages of the plug-in and the system; whole files.
#include "support/text.h"

#include <windows.h>

#include <fstream>
#include <iterator>

static std::string FromUtf8(const std::string &utf8, UINT codePage)
{
    std::wstring wide(utf8.size() + 1, L'\0');
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                                           static_cast<int>(wide.size()));
    std::string bytes(static_cast<size_t>(length) * 2 + 1, '\0');
    const int size = WideCharToMultiByte(codePage, 0, wide.data(), length, bytes.data(), static_cast<int>(bytes.size()),
                                         nullptr, nullptr);
    bytes.resize(static_cast<size_t>(size));
    return bytes;
}

std::string Sjis(const std::string &utf8)
{
    return FromUtf8(utf8, 932);
}

std::string Ansi(const std::string &utf8)
{
    return FromUtf8(utf8, CP_ACP);
}

std::string ReadFileBytes(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteFileBytes(const std::string &path, const std::string &bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}
