// Shutting the PC down, as this program's platform family does it.
#include "launcher/shutdown.h"

#include "kernel/base/platform.h"
#include "support/plugin_session.h"

namespace {

class ShutdownTest : public HostTest {};

// The shutdown privilege of this process, which starts without it.
class Privilege {
public:
    Privilege()
    {
        OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &m_token);
        TOKEN_PRIVILEGES off = {1, {{{}, 0}}};
        LookupPrivilegeValueA(nullptr, SE_SHUTDOWN_NAME, &off.Privileges[0].Luid);
        m_luid = off.Privileges[0].Luid;
        AdjustTokenPrivileges(m_token, FALSE, &off, 0, nullptr, nullptr);
    }
    ~Privilege() { CloseHandle(m_token); }
    Privilege(const Privilege &) = delete;
    Privilege &operator=(const Privilege &) = delete;

    bool Enabled() const
    {
        alignas(TOKEN_PRIVILEGES) BYTE buffer[2048];
        DWORD size = 0;
        EXPECT_TRUE(GetTokenInformation(m_token, TokenPrivileges, buffer, sizeof buffer, &size));
        const auto *all = reinterpret_cast<const TOKEN_PRIVILEGES *>(buffer);
        for (DWORD index = 0; index < all->PrivilegeCount; ++index)
            if (!memcmp(&all->Privileges[index].Luid, &m_luid, sizeof m_luid))
                return (all->Privileges[index].Attributes & SE_PRIVILEGE_ENABLED) != 0;
        return false;
    }

private:
    HANDLE m_token = nullptr;
    LUID m_luid;
};

} // namespace

TEST_F(ShutdownTest, ForcedAndOnTheNtFamilyWithPrivilegeAndPowerOff)
{
    const bool nt = GetPlatformId() == PLATFORM_NT;
    const Privilege privilege;
    ASSERT_FALSE(privilege.Enabled());
    EXPECT_NE(ShutdownPc(), 0);
    EXPECT_EQ(TakeRecordedCalls(), Lines{nt ? "ExitWindowsEx C" : "ExitWindowsEx 5"});
    EXPECT_EQ(privilege.Enabled(), nt);
}

TEST_F(ShutdownTest, ARefusalIsReportedAndNothingIsLeftOpen)
{
    SetExitWindowsResults(std::vector<BOOL>(6, FALSE));
    ExpectNothingLeft(5, [] { EXPECT_EQ(ShutdownPc(), 0); });
    EXPECT_NE(ShutdownPc(), 0);
}
