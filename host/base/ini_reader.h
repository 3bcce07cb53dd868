// Reads the INI files that describe monitors, line by line, so that a complaint can name its line.
//
// A line is "[TITLE]", "KEY = VALUE", empty, or a comment after ';' or '#'. Blanks count nowhere but within texts,
// capital letters nowhere in keys. Which titles there are and which keys below them is each kind of file's own, in
// tables.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

// A line that is left out; the rest of the file holds.
struct INIFAULT {
    int line;           // counted from 1; 0: the file cannot be read
    std::string reason; // English
};

struct INILINE {
    std::string_view key, value;
    std::string_view keyEnd; // what the '*' of the key's name stands for
};

enum INIKEYUSE {
    KEY_ONCE,    // in a file
    KEY_ONCE_0X, // as a hexadecimal number: 0A is A again
    KEY_REPEATS,
};

// A key below a title. `take` keeps what the line says in the context of ReadIni; false and a reason when it is wrong.
struct INIKEY {
    const char *name; // a '*' at its end stands for a word, or the end of one
    INIKEYUSE use;
    bool (*take)(void *context, const INILINE &line, std::string *reason);
};

// What may stand below a title.
struct INISECTION {
    std::span<const INIKEY> keys; // the first that fits counts
    const char *unknown;          // what to say of another key, with %s for it
};

// Finds the section that a line such as "[vcp]" begins. Null and a reason when it is none; what stands below it is then
// left out without a word.
typedef const INISECTION *(*INITITLE)(void *context, std::string_view line, std::string *reason);

// Reads a text (UTF-8). Returns the first `faultLimit` faults.
std::vector<INIFAULT> ReadIni(std::string_view text, INITITLE title, size_t faultLimit, void *context);

// ---- Values ---------------------------------------------------------------------------------------------------------

// The functions below return false and say why in *reason when the value is not what it should be; what they fill is
// then untouched.

// Fails with this reason.
bool RefuseIni(std::string *reason, const std::string &text);

// 1 to `limit` printable ASCII characters. `what` is the text's name, such as "a model name".
bool ReadIniText(std::string_view value, size_t limit, const char *what, std::string *text, std::string *reason);

// A number from `low` to `high`: decimal, or hexadecimal with 0x.
bool ReadIniNumber(std::string_view value, unsigned low, unsigned high, const char *what, unsigned *number,
                   std::string *reason);

// A piece of a capability string, which is appended: a long one may be given in several lines.
bool ReadIniCapabilities(std::string_view value, std::string *capabilities, std::string *reason);
