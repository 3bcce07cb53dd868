// The tour's settings: they hide the user's own, take the tour's, and leave nothing behind.
#include <gtest/gtest.h>

#include <optional>

#include "host/text.h"
#include "host/tour_settings.h"

#define OWN_KEY L"Software\\trayhub_tests"
#define SCRATCH_KEY L"Software\\Trayhub tour"
#define LAUNCHER_KEY L"SOFTWARE\\Norvale DEVICE,INC.\\Trayhub\\LumvanLauncher"

static bool HasKey(const wchar_t *path)
{
    HKEY key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

static void MakeKey(const wchar_t *path)
{
    HKEY key;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, path, &key), ERROR_SUCCESS);
    RegCloseKey(key);
}

// As the plug-in reads: through the ANSI functions.
static std::optional<std::string> LauncherValue(const char *name, DWORD type)
{
    HKEY key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, LAUNCHER_KEY, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return std::nullopt;
    char data[260];
    DWORD size = sizeof(data), stored = 0;
    const LSTATUS result = RegQueryValueExA(key, name, nullptr, &stored, reinterpret_cast<BYTE *>(data), &size);
    RegCloseKey(key);
    if (result != ERROR_SUCCESS || stored != type)
        return std::nullopt;
    return std::string(data, size);
}

TEST(TourSettings, StandInTheUsersPlaceAndLeaveNothingBehind)
{
    std::string error;
    MakeKey(OWN_KEY);
    MakeKey(SCRATCH_KEY "\\" LAUNCHER_KEY); // of a tour that was ended on the way
    const bool hadLauncher = HasKey(LAUNCHER_KEY);
    EXPECT_FALSE(WriteTourNumber("dwLTimer", 1, &error)) << "never into the user's own";
    EXPECT_FALSE(error.empty());

    ASSERT_TRUE(OpenTourSettings(&error)) << error;
    EXPECT_FALSE(HasKey(OWN_KEY));
    EXPECT_FALSE(HasKey(LAUNCHER_KEY)) << "what was left is gone";
    EXPECT_TRUE(WriteTourNumber("dwLTimer", 0x01020304, &error)) << error;
    EXPECT_TRUE(WriteTourText("exe_0_1_Param", "a b", &error)) << error;
    EXPECT_EQ(LauncherValue("dwLTimer", REG_DWORD), std::string("\4\3\2\1"));
    EXPECT_EQ(LauncherValue("exe_0_1_Param", REG_SZ), std::string("a b\0", 4));

    CloseTourSettings();
    EXPECT_TRUE(HasKey(OWN_KEY));
    EXPECT_FALSE(HasKey(SCRATCH_KEY));
    EXPECT_EQ(HasKey(LAUNCHER_KEY), hadLauncher);
    CloseTourSettings();
    RegDeleteKeyW(HKEY_CURRENT_USER, OWN_KEY);
}
