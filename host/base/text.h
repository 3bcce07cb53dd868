// Text as the host handles it: UTF-8 in std::string everywhere inside, UTF-16 at the Windows interfaces.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// UTF-8 to UTF-16 and back. Bytes that are no valid UTF-8 (or surrogates) become the replacement character.
std::wstring Widen(std::string_view text);
std::string Narrow(std::wstring_view text);

// Text of the plug-in, which is Shift-JIS whatever the system's code page is, as UTF-16.
std::wstring WidenShiftJis(std::string_view text);

// Text in the system's own ANSI code page, as other programs write it, as UTF-16.
std::wstring WidenAnsi(std::string_view text);

// Whether the system's ANSI code page has all characters of a text.
bool FitsAnsi(std::wstring_view text);

// printf into a std::string.
std::string Format(const char *format, ...) __attribute__((format(gnu_printf, 1, 2)));

// The text without blanks and tabs at either end.
std::string_view Trim(std::string_view text);

// The words of a text, separated by any number of blanks and tabs.
std::vector<std::string> SplitWords(std::string_view text);

// The pieces between separators, trimmed; an empty text gives no piece.
std::vector<std::string> SplitAt(std::string_view text, char separator);

// The lines of a text file, without their LF or CR LF and without a byte order mark.
std::vector<std::string_view> SplitLines(std::string_view text);

// Whether two ASCII texts are equal without regard to case.
bool EqualNoCase(std::string_view a, std::string_view b);

// Reads a whole number that makes up the whole text: decimal, or hexadecimal with 0x (base 10) or without (base 16).
// Returns false for anything else and for a number above `limit`; *value is then unchanged.
bool ParseNumber(std::string_view text, int base, unsigned limit, unsigned *value);

// The text in double quotes, with backslashes before quotes and backslashes and \xNN for control characters.
std::string Quoted(std::string_view text);

// The file's bytes. Returns false and says why in *error when it cannot be read or is larger than `limit` bytes.
bool ReadWholeFile(const std::string &path, size_t limit, std::string *content, std::string *error);

// What Windows says about an error code, in one line without a full stop at the end.
std::string SystemErrorText(unsigned long code);
