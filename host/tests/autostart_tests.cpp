// The start at log-on, in a registry of the test's own.
#include <gtest/gtest.h>

#include <shlwapi.h>

#include "host/autostart.h"
#include "host/base/program_path.h"

#define SCRATCH_KEY L"Software\\trayhub_tests autostart"
#define RUN_KEY L"Software\\Microsoft\\Windows\\CurrentVersion\\Run"
#define APPROVED_KEY L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved\\Run"

static const wchar_t s_program[] = L"C:\\Program Files\\Lumivane 2\\trayhub.exe";

class Autostart : public testing::Test {
protected:
    void SetUp() override { Override(REG_OPTION_NON_VOLATILE); }

    void TearDown() override
    {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        SHDeleteKeyW(HKEY_CURRENT_USER, SCRATCH_KEY);
    }

    static void Override(DWORD options)
    {
        HKEY key = nullptr;
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, SCRATCH_KEY, 0, nullptr, options, KEY_ALL_ACCESS, nullptr, &key,
                                  nullptr),
                  ERROR_SUCCESS);
        ASSERT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, key), ERROR_SUCCESS);
        RegCloseKey(key);
    }

    static void Write(const wchar_t *path, DWORD type, const void *data, DWORD size)
    {
        ASSERT_EQ(SHSetValueW(HKEY_CURRENT_USER, path, L"Trayhub", type, data, size), ERROR_SUCCESS);
    }

    static void WriteText(const std::wstring &text, DWORD type = REG_SZ)
    {
        Write(RUN_KEY, type, text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    }

    static std::wstring Text()
    {
        wchar_t text[MAX_PATH] = L"";
        DWORD size = sizeof text;
        SHGetValueW(HKEY_CURRENT_USER, RUN_KEY, L"Trayhub", nullptr, text, &size);
        return text;
    }
};

TEST_F(Autostart, IsOnForThisProgramOnly)
{
    const std::wstring longPath(0x9000, L'x');
    const struct {
        std::wstring text;
        DWORD type;
        bool on;
    } cases[] = {
        {L"\"C:\\Program Files\\Lumivane 2\\trayhub.exe\"", REG_SZ, true},
        {L"\"c:\\program files\\lumivane 2\\TRAYHUB.EXE\"", REG_SZ, true},
        {L"C:\\Program Files\\Lumivane 2\\trayhub.exe", REG_SZ, false}, // Windows would try C:\Program first
        {L"\"C:\\Program Files\\Lumivane 2\\trayhub.exe\" --panel", REG_SZ, false},
        {L"\"D:\\copy\\trayhub.exe\"", REG_SZ, false},
        {L"\"C:\\Program Files\\Lumivane 2\\trayhub.exe\"", REG_BINARY, false},
        {longPath, REG_SZ, false},
        {L"", REG_SZ, false},
    };
    EXPECT_FALSE(IsAutostartOn(s_program)) << "nothing there, not even the key";
    for (const auto &one : cases) {
        WriteText(one.text, one.type);
        EXPECT_EQ(IsAutostartOn(s_program), one.on) << one.text.substr(0, 80);
    }
    // Without its terminator, as a program may have written it.
    const std::wstring command = AutostartCommand(s_program);
    Write(RUN_KEY, REG_SZ, command.c_str(), static_cast<DWORD>(command.size() * sizeof(wchar_t)));
    EXPECT_TRUE(IsAutostartOn(s_program));
}

TEST_F(Autostart, IsSwitchedOnAndOff)
{
    EXPECT_EQ(SetAutostart(s_program, false), 0u) << "off already";
    WriteText(L"\"D:\\copy\\trayhub.exe\"");
    EXPECT_EQ(SetAutostart(s_program, true), 0u);
    EXPECT_EQ(Text(), L"\"C:\\Program Files\\Lumivane 2\\trayhub.exe\"");
    EXPECT_EQ(SetAutostart(s_program, false), 0u);
    EXPECT_EQ(Text(), L"");
    EXPECT_FALSE(IsAutostartOn(s_program));
}

// What the user has switched off in the task manager is off, until the user switches it on here.
TEST_F(Autostart, FollowsTheTaskManager)
{
    const BYTE on[12] = {2}, off[12] = {3, 0, 0, 0, 0x10, 0x27};
    EXPECT_EQ(SetAutostart(s_program, true), 0u);
    Write(APPROVED_KEY, REG_BINARY, on, sizeof on);
    EXPECT_TRUE(IsAutostartOn(s_program));
    Write(APPROVED_KEY, REG_BINARY, off, sizeof off);
    EXPECT_FALSE(IsAutostartOn(s_program));
    EXPECT_EQ(SetAutostart(s_program, true), 0u);
    EXPECT_TRUE(IsAutostartOn(s_program));
}

TEST_F(Autostart, ReportsARegistryThatCannotBeWritten)
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    SHDeleteKeyW(HKEY_CURRENT_USER, SCRATCH_KEY);
    Override(REG_OPTION_VOLATILE); // takes no lasting key into it
    EXPECT_EQ(SetAutostart(s_program, true), static_cast<DWORD>(ERROR_CHILD_MUST_BE_VOLATILE));
}

TEST(ProgramPath, NamesTheRunningProgram)
{
    EXPECT_NE(GetFileAttributesW(ProgramPath().c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_NE(ProgramPath().find(L"\\trayhub_tests.exe"), std::wstring::npos);
}
