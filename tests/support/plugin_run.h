// The plug-in in a program that is not its host: in its first state with a scripted host, an empty registry and no INI
// files; and started.
#pragma once

#include "support/ini_folder.h"
#include "support/registry_sandbox.h"
#include "support/test_host.h"

// Puts the plug-in's process-wide state back to what it is after loading. No thread of it may run.
void ResetPluginState();

// What the host gives to slot 0: its window, and 7 as the plug-in's number.
HOSTPACKET InitPacket(HWND *window);

// Closes the descriptors of "ontimer.ini" that the product leaves open at each load, so that the file can be deleted.
// Result: how many there were.
int CloseReservationFiles();

// The plug-in loaded and known to the host, but not started: its inner functions can be called one by one.
class HostRun {
public:
    // `owner`: the process whose registry and files are used; another's are kept as they are.
    explicit HostRun(DWORD owner = GetCurrentProcessId());

    RegistrySandbox registry;
    IniFolder ini;
    TestHost host;
};

// The plug-in that is started and stopped as a host does it; at the end of the scope it is stopped all the same.
// The start-up timer does not fire by itself: however slow the machine is, it ticks when the program says so.
class PluginRun : public HostRun {
public:
    explicit PluginRun(DWORD owner = GetCurrentProcessId());
    ~PluginRun();

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

    void StopIfRunning();

private:
    bool m_running = false;
};
