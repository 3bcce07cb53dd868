// The text of the file that keeps capability strings.
#include "host/windows_monitors/kept_text.h"

#include "host/base/text.h"

static const char s_head[] = "Lumivane capability strings 1";

static unsigned Checksum(std::string_view text)
{
    unsigned sum = 0x811C9DC5; // FNV-1a
    for (const char c : text)
        sum = (sum ^ static_cast<unsigned char>(c)) * 0x01000193;
    return sum;
}

// Every byte that could be taken for something else is \xNN, so that a string is one line.
static std::string Escape(std::string_view text)
{
    std::string escaped;
    for (const char c : text) {
        if (c > ' ' && c <= '~' && c != '\\')
            escaped += c;
        else
            escaped += c == ' ' ? std::string(" ") : Format("\\x%02X", static_cast<unsigned char>(c));
    }
    return escaped;
}

static bool Unescape(std::string_view text, std::string *plain)
{
    plain->clear();
    for (size_t i = 0; i < text.size(); i++) {
        if (text[i] != '\\') {
            *plain += text[i];
            continue;
        }
        unsigned value = 0;
        if (text.size() - i < 4 || text[i + 1] != 'x' || !ParseNumber(text.substr(i + 2, 2), 16, 0xFF, &value))
            return false;
        *plain += static_cast<char>(value);
        i += 3;
    }
    return true;
}

std::string WriteKeptText(const std::vector<KEPTCAPABILITIES> &kept)
{
    std::string text = std::string(s_head) + "\n";
    for (const KEPTCAPABILITIES &entry : kept)
        text += entry.key + "=" + Escape(entry.text) + "\n";
    return text + Format("end %08X\n", Checksum(text));
}

bool ReadKeptText(const std::string &text, std::vector<KEPTCAPABILITIES> *kept)
{
    kept->clear();
    const size_t end = text.rfind("end ");
    if (end == std::string::npos || text.substr(end) != Format("end %08X\n", Checksum(text.substr(0, end))))
        return false;
    const std::vector<std::string_view> lines = SplitLines(std::string_view(text).substr(0, end));
    bool good = !lines.empty() && lines[0] == s_head;
    for (size_t i = 1; good && i < lines.size(); i++) {
        const size_t equals = lines[i].find('=');
        KEPTCAPABILITIES entry;
        good = equals != std::string_view::npos && equals > 0 && Unescape(lines[i].substr(equals + 1), &entry.text);
        if (good) {
            entry.key = lines[i].substr(0, equals);
            kept->push_back(entry);
        }
    }
    if (!good)
        kept->clear();
    return good;
}
