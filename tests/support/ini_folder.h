// The INI files of the product at their real places: beside this test program, and in the Windows system directory.
#pragma once

#include <string>

// While it exists, none of the product's INI files is there but those that the test writes.
class IniFolder {
public:
    // keep: the files of another process are taken as they are, and stay when this ends.
    explicit IniFolder(bool keep = false);
    ~IniFolder();
    IniFolder(const IniFolder &) = delete;
    IniFolder &operator=(const IniFolder &) = delete;

    // "lvcap.ini" is meant in the system directory, any other name beside the program.
    static std::string Path(const std::string &name);
    static void Write(const std::string &name, const std::string &bytes);
    static std::string Read(const std::string &name); // empty when it is not there
    static bool Exists(const std::string &name);
    static void Remove(const std::string &name);

private:
    const bool m_keep;
};
