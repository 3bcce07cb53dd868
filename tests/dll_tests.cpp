// The finished DLL, loaded and driven as a host does it.
#include "support/plugin_session.h"

#include <gtest/gtest.h>

namespace {

class DllTest : public testing::Test {
protected:
    void Load()
    {
        module = LoadLibraryA("lvkernel.dll");
        ASSERT_NE(module, nullptr) << GetLastError();
        const auto function =
            reinterpret_cast<GETPLUGINFUNC>(reinterpret_cast<void *>(GetProcAddress(module, "GetPluginFunc")));
        ASSERT_NE(function, nullptr);
        PLUGINFUNC table = {};
        ASSERT_EQ(function(&table), 1);
        ASSERT_EQ(table.nCount, 18u);
        slots = table.lpFuncTable;
    }

    void RunOnce()
    {
        TestHost host(slots[PLUGIN_SLOT_RECEIVE]);
        host.monitors = {ColorMonitor("NRV-PA1")};
        HWND window = host.Window();
        HOSTPACKET packet = InitPacket(&window);
        host.Run([&] { EXPECT_EQ(slots[PLUGIN_SLOT_INIT](&packet), 1); });
        EXPECT_TRUE(host.WaitFor("get 0 F2"));
        host.Run([&] { EXPECT_EQ(slots[PLUGIN_SLOT_STOP](nullptr), 1); });
        EXPECT_EQ(host.TakeLog().back(), "notice 3");
    }

    RegistrySandbox registry;
    IniFolder ini;
    HMODULE module = nullptr;
    const PLUGINSLOT *slots = nullptr;
};

} // namespace

TEST_F(DllTest, CanBeLoadedStartedStoppedAndUnloadedAgainAndAgain)
{
    for (int round = 0; round < 3; ++round) {
        Load();
        if (HasFatalFailure())
            return;
        RunOnce();
        FreeLibrary(module);
        EXPECT_EQ(GetModuleHandleA("lvkernel.dll"), nullptr);
    }
}

TEST_F(DllTest, CarriesItsVersionAndIcons)
{
    Load();
    if (HasFatalFailure())
        return;
    for (const int icon : {106, 1000})
        EXPECT_NE(LoadIconA(module, MAKEINTRESOURCEA(icon)), nullptr) << icon;
    EXPECT_NE(FindResourceA(module, MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(16)), nullptr) << "version information";
    FreeLibrary(module);
}
