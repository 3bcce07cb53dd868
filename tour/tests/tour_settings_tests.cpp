// The tour's settings: they hide the user's own, take the tour's, and leave nothing behind.
#include <gtest/gtest.h>

#include "host/base/program_path.h"
#include "tour/tour_settings.h"

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

// As the plug-in writes them.
static void MakeFile(const std::string &path)
{
    ASSERT_TRUE(WritePrivateProfileStringA("section", "key", "value", path.c_str()));
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.c_str());
}

static bool HasFile(const std::string &path)
{
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

TEST(TourSettings, StandInTheUsersPlaceAndLeaveNothingBehind)
{
    std::string error;
    MakeKey(OWN_KEY);
    MakeKey(SCRATCH_KEY "\\" LAUNCHER_KEY); // of a tour that was ended on the way
    const bool hadLauncher = HasKey(LAUNCHER_KEY);

    ASSERT_TRUE(OpenTourSettings(&error)) << error;
    EXPECT_FALSE(HasKey(OWN_KEY));
    EXPECT_FALSE(HasKey(LAUNCHER_KEY)) << "what was left is gone";
    MakeKey(LAUNCHER_KEY);

    CloseTourSettings();
    EXPECT_TRUE(HasKey(OWN_KEY));
    EXPECT_FALSE(HasKey(SCRATCH_KEY));
    EXPECT_EQ(HasKey(LAUNCHER_KEY), hadLauncher);
    CloseTourSettings();
    RegDeleteKeyW(HKEY_CURRENT_USER, OWN_KEY);
}

TEST(TourSettings, LeaveAUsersFilesAlone)
{
    for (const char *name : {"profile.ini", "ontimer.ini"}) {
        const std::string path = ProgramFolder() + "\\" + name;
        std::string error;
        MakeFile(path);
        EXPECT_FALSE(OpenTourSettings(&error));
        EXPECT_NE(error.find(name), std::string::npos) << error;
        CloseTourSettings();
        EXPECT_TRUE(HasFile(path)) << "the user's";
        DeleteFileA(path.c_str());

        ASSERT_TRUE(OpenTourSettings(&error)) << error;
        MakeFile(path);
        CloseTourSettings();
        EXPECT_FALSE(HasFile(path)) << "the tour's";
    }
}
