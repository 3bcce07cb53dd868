// Texts: sources are UTF-8, the plug-in speaks Shift-JIS.
#pragma once

#include <string>

// A UTF-8 text as the plug-in holds it in memory: code page 932.
std::string Sjis(const std::string &utf8);

// A UTF-8 text as the ANSI functions of this system show it: on a system of another language, whatever is left of it.
std::string Ansi(const std::string &utf8);

std::string ReadFileBytes(const std::string &path); // empty when it cannot be read
void WriteFileBytes(const std::string &path, const std::string &bytes);
