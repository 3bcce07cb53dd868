// The text of the file that keeps capability strings: a line a string, and a checksum, so that no half-written file is
// believed.
#pragma once

#include <string>
#include <vector>

struct KEPTCAPABILITIES {
    std::string key;  // EdidKey of the monitor
    std::string text; // any bytes, not empty
};

// Any thread. Reading gives false, and no entry, when a byte of it is wrong.
std::string WriteKeptText(const std::vector<KEPTCAPABILITIES> &kept);
bool ReadKeptText(const std::string &text, std::vector<KEPTCAPABILITIES> *kept);
