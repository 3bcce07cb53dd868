// Windows functions that must not really happen in a test, or that a test makes fail. Each has its stand-in here for
// the whole program; without orders a stand-in either records the call or passes it on.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

// Calls recorded instead of made, oldest first; empties the record. Any thread.
//   "WinExec COMMAND SHOW"
//   "ShellExecute VERB|FILE|PARAMETERS|DIRECTORY|SHOW" (a null argument is "(null)")
//   "ExitWindowsEx FLAGS" (hexadecimal)
//   "Sleep MS", for pauses of 20 ms and more, while SkipPauses is on
std::vector<std::string> TakeRecordedCalls();

// What ExitWindowsEx returns: the given results in turn, then TRUE. Any thread.
void SetExitWindowsResults(std::vector<BOOL> results);

// While on, pauses of 20 ms and more are recorded and not made, on every thread: not for tests that wait with Sleep.
void SkipPauses(bool on);

// What a call that can be made to fail is known by.
enum class Fault { Event, Thread, Library, Timer, Memory, None };

// Makes calls of a function fail, from the `nth` on (1 = the next), `count` of them. Fault::None ends all. Any thread.
void InjectFault(Fault fault, int nth = 1, int count = 1);
