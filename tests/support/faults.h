// Windows functions that can be made to fail: which calls of them there were, and which one fails next.
#pragma once

#include <windows.h>

#include <array>

// What a call that can fail is known by. faults.cpp has the functions of each kind.
enum class Fault : int {
    Event,
    Thread,
    Library,
    Timer,
    Memory,   // of the product's own blocks: the run-time library allocates elsewhere
    Window,   // windows and their classes
    Dialog,   // dialogs and message boxes
    Bitmap,   // images of every kind
    Registry, // opening, reading and writing alike
    File,     // opening, and writing to INI files
    Socket,
    Process, // a look at another process
    None,
};
constexpr int FAULT_KINDS = static_cast<int>(Fault::None);

const char *FaultName(Fault fault);       // "event" and so on
Fault FaultOfName(const char *faultName); // Fault::None for any other text

// Makes calls of a kind fail, from the `nth` on (1 = the next), `count` of them. Fault::None ends all. Any thread.
void InjectFault(Fault fault, int nth = 1, int count = 1);

// How many calls have failed since then. Any thread.
int FailedCalls();

// How many calls of each kind there were since the last time. Any thread.
std::array<int, FAULT_KINDS> TakeCallCounts();

// While on, only the plug-in's own calls are counted and fail: those of the threads that it has started, and, on other
// threads, those inside a PluginCode. Off, every call of the program is meant.
void AimAtPlugin(bool on);

// The code that runs in its scope on this thread is the plug-in's, or, inside such a scope, is not.
class PluginCode {
public:
    explicit PluginCode(bool plugin = true);
    ~PluginCode();
    PluginCode(const PluginCode &) = delete;
    PluginCode &operator=(const PluginCode &) = delete;

private:
    void *const m_before;
};

// While it exists, faults are meant for this thread and those of the plug-in. The run-time library makes an event, too,
// when two threads meet at a lock, so without it the host's threads could take a fault away.
class FaultsOfThisThread {
public:
    FaultsOfThisThread() : m_aimed((AimAtPlugin(true), true)) {}
    ~FaultsOfThisThread() { AimAtPlugin(false); }
    FaultsOfThisThread(const FaultsOfThisThread &) = delete;
    FaultsOfThisThread &operator=(const FaultsOfThisThread &) = delete;

private:
    const bool m_aimed; // before the scope below begins
    const PluginCode m_inside;
};

// How many threads the plug-in has started that still run.
int PluginThreads();

// For stand-ins elsewhere: counts a call. True when it is to fail.
bool ShallFail(Fault fault);

// The function that a stand-in passes on to.
template <typename FUNCTION>
FUNCTION RealFunction(const char *library, const char *name)
{
    return reinterpret_cast<FUNCTION>(reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA(library), name)));
}

// Takes the place of an imported function, named as the linker names it: "Sleep@4".
// NOLINTBEGIN(bugprone-macro-parentheses): names cannot stand in parentheses.
#define STAND_IN(FUNCTION, SYMBOL)                                                                                     \
    extern "C" {                                                                                                       \
    extern void *import##FUNCTION asm("__imp__" SYMBOL);                                                               \
    void *import##FUNCTION = reinterpret_cast<void *>(FUNCTION);                                                       \
    }
// NOLINTEND(bugprone-macro-parentheses)
