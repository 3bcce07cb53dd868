// Fixtures: the plug-in in its first state with a host, an empty registry and no INI files; and the plug-in started.
#pragma once

#include "support/ini_folder.h"
#include "support/registry_sandbox.h"
#include "support/test_host.h"

#include <gtest/gtest.h>

// Puts the plug-in's process-wide state back to what it is after loading. No thread of it may run.
void ResetPluginState();

// The plug-in loaded and known to the host, but not started: its inner functions can be called one by one.
class HostTest : public testing::Test {
protected:
    HostTest();

    RegistrySandbox registry;
    IniFolder ini;
    TestHost host;
};

// The plug-in that is started and stopped as a host does it. A test that fails half-way is stopped all the same.
// The start-up timer does not fire by itself: however slow the machine is, it ticks when the test says so.
class PluginTest : public HostTest {
protected:
    PluginTest();
    void TearDown() override;

    // Slot 0 on the host's thread. Result: the slot's.
    int Init();

    // The same, then waits for the kernel window. False when that does not come.
    bool Start();

    // The start-up timer's tick, now instead of after its second, and anything that it does. Start comes before.
    void StartUp();

    // Any other timer's tick, in the same way.
    void Tick(UINT_PTR timer);

    // Slot 15 on the host's thread. Result: the slot's.
    int Stop();

private:
    bool m_running = false;
};

// The number that belongs to this process, as the system counts it: kernel handles, once their number has settled, and
// windows of all its threads. For "the count after is the count before".
int CountHandles();
int CountWindows();
