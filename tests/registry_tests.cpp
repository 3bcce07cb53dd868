// The settings store: which root is written and read, and values that are not what they should be.
#include "settings/registry.h"

#include "settings/ini.h"
#include "support/ini_folder.h"
#include "support/registry_sandbox.h"
#include "support/replaced_imports.h"

#include <gtest/gtest.h>

namespace {

class RegistryTest : public testing::Test {
    RegistrySandbox registry;
};

const char launcher[] = "LumvanLauncher";

LONG Read(const char *name)
{
    return ReadSettingDword(launcher, REG_DWORD, name);
}

} // namespace

TEST_F(RegistryTest, WritesAreTheUsersAndReadsFallBackToTheMachine)
{
    EXPECT_EQ(Read("dwLTimer"), -1);
    PutDword(HKEY_LOCAL_MACHINE, launcher, "dwLTimer", 3);
    EXPECT_EQ(Read("dwLTimer"), 3);
    EXPECT_EQ(RegistryAccess(), static_cast<REGSAM>(KEY_READ)) << "more is refused to most users";
    EXPECT_EQ(WriteSettingDword(launcher, REG_DWORD, "dwLTimer", 5), 1);
    EXPECT_EQ(Read("dwLTimer"), 5);
    EXPECT_EQ(DwordAt(HKEY_CURRENT_USER, launcher, "dwLTimer"), 5u);
    EXPECT_EQ(DwordAt(HKEY_LOCAL_MACHINE, launcher, "dwLTimer"), 3u);

    const REGENTRY entry = {launcher, "dwLTimer", 0, nullptr, 0};
    DeleteSetting(&entry);
    EXPECT_EQ(Read("dwLTimer"), 3) << "only the user's value is gone";
    DeleteSetting(&entry);
    EXPECT_EQ(Read("dwLTimer"), -1);
    DeleteSetting(&entry);
}

TEST_F(RegistryTest, PoliciesAreTheUsersAlone)
{
    DWORD value = 9;
    REGENTRY entry = {"System", "NoDispCPL", REG_DWORD, &value, sizeof value};
    EXPECT_EQ(ReadPolicySetting(&entry), 0);
    EXPECT_EQ(value, 9u) << "a failed read leaves the buffer alone";
    value = 1;
    EXPECT_EQ(WritePolicySetting(&entry), 1);
    value = 0;
    EXPECT_EQ(ReadPolicySetting(&entry), 1);
    EXPECT_EQ(value, 1u);
    EXPECT_TRUE(
        BytesAt(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\System", "NoDispCPL"));
}

TEST_F(RegistryTest, ValuesOfOtherTypesAndSizes)
{
    const BYTE bytes[8] = {1, 0, 0, 0, 2, 0, 0, 0};
    PutValue(HKEY_CURRENT_USER, launcher, "eight", REG_BINARY, bytes, 8);
    PutValue(HKEY_CURRENT_USER, launcher, "four", REG_BINARY, bytes, 4);
    PutValue(HKEY_CURRENT_USER, launcher, "two", REG_BINARY, bytes, 2);
    PutText(HKEY_CURRENT_USER, launcher, "text", "12");
    EXPECT_EQ(Read("eight"), -1);
    EXPECT_EQ(Read("four"), 1) << "older systems store flags as binary";
    EXPECT_EQ(Read("two"), -1);
    EXPECT_EQ(Read("text"), -1);

    // A value that does not fit under the user's root does not hide the machine's.
    PutDword(HKEY_LOCAL_MACHINE, launcher, "eight", 4);
    EXPECT_EQ(Read("eight"), 4);
}

TEST_F(RegistryTest, Texts)
{
    char text[SETTING_TEXT_SIZE] = "before";
    EXPECT_EQ(ReadSettingText(launcher, "exe_0_1", text, sizeof text), 0);
    EXPECT_STREQ(text, "before");

    PutDword(HKEY_CURRENT_USER, launcher, "exe_0_1", 0x41414141);
    EXPECT_EQ(ReadSettingText(launcher, "exe_0_1", text, sizeof text), 0);
    EXPECT_STREQ(text, "before");

    char full[SETTING_TEXT_SIZE] = "notepad.exe";
    EXPECT_EQ(WriteSettingText(launcher, "exe_0_1", full, sizeof full), 1);
    const char path[] = "SOFTWARE\\Norvale DEVICE,INC.\\Trayhub\\LumvanLauncher";
    EXPECT_EQ(BytesAt(HKEY_CURRENT_USER, path, "exe_0_1")->size(), sizeof full) << "the whole buffer is stored";
    EXPECT_EQ(ReadSettingText(launcher, "exe_0_1", text, sizeof text), 1);
    EXPECT_STREQ(text, "notepad.exe");

    const std::string longest(259, 'x');
    PutText(HKEY_CURRENT_USER, launcher, "exe_0_1", longest);
    EXPECT_EQ(ReadSettingText(launcher, "exe_0_1", text, sizeof text), 1);
    EXPECT_EQ(text, longest);
    PutText(HKEY_CURRENT_USER, launcher, "exe_0_1", longest + "y");
    EXPECT_EQ(ReadSettingText(launcher, "exe_0_1", text, sizeof text), 0) << "too long counts as absent";

    // Stored without a terminator, as some installers do.
    PutValue(HKEY_CURRENT_USER, launcher, "exe_0_1", REG_SZ, "abcd", 4);
    char small[8];
    memset(small, 'z', sizeof small);
    EXPECT_EQ(ReadSettingText(launcher, "exe_0_1", small, sizeof small), 1);
    EXPECT_STREQ(small, "abcd");
}

TEST(IniPaths, BesideTheProgramAndInTheSystemDirectory)
{
    char path[MAX_PATH];
    BuildIniPath(path, "profile.ini");
    EXPECT_EQ(path, IniFolder::Path("profile.ini"));
    BuildSystemIniPath(path, "lvcap.ini");
    EXPECT_EQ(path, IniFolder::Path("lvcap.ini"));
    BuildIniPath(path, std::string(MAX_PATH, 'n').c_str());
    EXPECT_STREQ(path, "");
}
