// What a button starts: the shell call, to the byte.
#include "launcher/launch.h"

#include "support/plugin_session.h"

namespace {

using Text = std::optional<std::string>;

class LaunchTest : public HostTest {
protected:
    static void Assign(const std::string &name, const Text &value)
    {
        const REGENTRY entry = {SUBKEY_LAUNCHER, name.c_str(), 0, nullptr, 0};
        DeleteSetting(&entry);
        if (value)
            PutText(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name.c_str(), *value);
    }
};

Lines Opened(const std::string &file, const std::string &parameters)
{
    return {"ShellExecute open|" + file + "|" + parameters + "|(null)|5"};
}

} // namespace

TEST_F(LaunchTest, WhatReachesTheShell)
{
    const std::string editor = "C:\\edit.exe";
    const std::string document = "C:\\a text.txt";
    const std::string kanji = Sjis("C:\\予定表 ソ.txt"); // its last character ends in the byte of a backslash
    const std::string longest = "a " + std::string(257, 'b');
    const struct {
        const char *what;
        Text name, path, parameter;
        Lines calls;
    } cases[] = {
        {"program alone", "edit.exe", editor, {}, Opened(editor, "")},
        {"empty parameter", "edit.exe", editor, "", Opened(editor, "")},
        {"a parameter without a blank is not passed", "edit.exe", editor, "/p", Opened(editor, "")},
        {"one with a blank is passed in quotes", "edit.exe", editor, document, Opened(editor, '"' + document + '"')},
        {"of two bytes a character", "edit.exe", editor, kanji, Opened(editor, '"' + kanji + '"')},
        {"of full length", "edit.exe", editor, longest, Opened(editor, '"' + longest + '"')},
        {"longer than that: absent", "edit.exe", editor, longest + "b", Opened(editor, "")},
        {"document", "a text.txt", document, document, Opened(document, "")},
        {"other letters are another text", "x", document, "c:\\A text.txt", Opened(document, "\"c:\\A text.txt\"")},
        {"empty name", "", editor, {}, Opened(editor, "")},
        {"no path", "edit.exe", {}, "a b", Opened("", "")},
        {"empty path", "edit.exe", "", "a b", Opened("", "")},
        {"no path, no parameter", "edit.exe", {}, {}, Opened("", "")},
        {"parameter alone", {}, {}, "D:\\my folder", Opened("D:\\my folder", "")},
        {"parameter and a forgotten path", {}, editor, "D:\\", Opened("D:\\", "")},
        {"empty parameter alone", {}, {}, "", {}},
        {"nothing", {}, {}, {}, {}},
    };
    for (const auto &c : cases) {
        Assign("exe_1_3", c.name);
        Assign("exe_1_3_Path", c.path);
        Assign("exe_1_3_Param", c.parameter);
        EXPECT_EQ(LaunchButton(nullptr, 1, 3), 1);
        EXPECT_EQ(TakeRecordedCalls(), c.calls) << c.what;
    }
}

TEST_F(LaunchTest, ANumberInThePlaceOfATextIsNoAssignment)
{
    PutDword(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, "exe_1_3", 0x41414141);
    PutDword(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, "exe_1_3_Param", 0x41414141);
    LaunchButton(nullptr, 1, 3);
    EXPECT_EQ(TakeRecordedCalls(), Lines{});
}

TEST_F(LaunchTest, MonitorZeroStandsForTheSelectedOne)
{
    for (const char *name : {"exe_0_6", "exe_1_6", "exe_2_6"}) {
        Assign(name, name);
        Assign(std::string(name) + "_Path", name);
    }
    const struct {
        LONG selected, monitor;
        Lines calls;
    } cases[] = {{0, 0, Opened("exe_0_6", "")},
                 {1, 0, Opened("exe_1_6", "")},
                 {1, 2, Opened("exe_2_6", "")},
                 {-1, 0, {}},
                 {0, 3, {}}};
    const HWND owner = host.Window();
    for (const auto &c : cases) {
        g_nCurMonitor = c.selected;
        LaunchButton(owner, c.monitor, 6);
        EXPECT_EQ(TakeRecordedCalls(), c.calls) << c.selected << " " << c.monitor;
        EXPECT_EQ(LastOwner(), owner);
    }
}
