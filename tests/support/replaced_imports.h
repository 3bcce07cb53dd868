// Windows functions that must not really happen in a test, or that a test makes fail. Each has its stand-in here for
// the whole program; without orders a stand-in either records the call or passes it on.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

// Calls recorded instead of made, oldest first; empties the record. Any thread.
//   "WinExec COMMAND SHOW"
//   "ShellExecute VERB|FILE|PARAMETERS|DIRECTORY|SHOW" (a null argument is "(null)")
//   "ExitWindowsEx FLAGS" (hexadecimal)
//   "Sleep MS", for pauses of 20 ms and more, while SkipPauses is on
std::vector<std::string> TakeRecordedCalls();

// Adds a line to that record, for stand-ins elsewhere. Any thread.
void RecordCall(const std::string &call);

// The owner window that the last ShellExecuteA was given.
HWND ShellExecuteOwner();

// The function that a stand-in passes on to.
template <typename FUNCTION>
FUNCTION RealFunction(const char *library, const char *name)
{
    return reinterpret_cast<FUNCTION>(reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA(library), name)));
}

// What ExitWindowsEx returns: the given results in turn, then TRUE. `look` is called inside each call, on its thread.
// Any thread.
void SetExitWindowsResults(std::vector<BOOL> results, std::function<void()> look = {});

// While on, pauses of 20 ms and more are recorded and not made, on every thread: not for tests that wait with Sleep.
void SkipPauses(bool on);

// While a timer identifier is held, a timer of that number is armed but does not fire within a test; 0 holds none. Any
// thread.
void HoldTimer(UINT_PTR id);

// What a call that can be made to fail is known by.
enum class Fault { Event, Thread, Library, Timer, Memory, None };

// Makes calls of a function fail, from the `nth` on (1 = the next), `count` of them. Fault::None ends all. Any thread.
void InjectFault(Fault fault, int nth = 1, int count = 1);
