// Windows functions that must not really happen in a test. Each has its stand-in here for the whole program; without
// orders a stand-in either records the call or passes it on.
#pragma once

#include "support/faults.h"

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

// Calls recorded instead of made, oldest first; empties the record. Any thread.
//   "WinExec COMMAND SHOW"
//   "ShellExecute VERB|FILE|PARAMETERS|DIRECTORY|SHOW" (a null argument is "(null)")
//   "ExitWindowsEx FLAGS" (hexadecimal)
//   "Sleep MS", for pauses of 20 ms and more, while SkipPauses is on and names no other record
std::vector<std::string> TakeRecordedCalls();

// Adds a line to that record, for stand-ins elsewhere. Any thread.
void RecordCall(const std::string &call);

// The owner window that the last ShellExecuteA or file dialog was given.
HWND LastOwner();

// What the file dialog answers from now on: a path (bytes of the system's code page; all of them, if need be without a
// zero at the end), or without one a cancellation with this extended error. `look` is called inside each call, on its
// thread. Each call is recorded:
//   "GetOpenFileName STRUCTSIZE|FILTER|MAXFILE|TITLE|FLAGS", zeros in the filter as "/", flags hexadecimal.
void AnswerFileDialog(const std::string &path, DWORD error = 0, std::function<void()> look = {});

// While on, the real file dialog is shown instead.
void ShowRealFileDialog(bool on);

// What ExitWindowsEx returns: the given results in turn, then TRUE. `look` is called inside each call, on its thread.
// Any thread.
void SetExitWindowsResults(std::vector<BOOL> results, std::function<void()> look = {});

// While on, pauses of 20 ms and more are recorded and not made, on every thread: not for tests that wait with Sleep.
void SkipPauses(bool on, std::function<void(const std::string &)> record = RecordCall);

// While on, a wait of a second looks once instead, on every thread. Result: how many there were since the last call.
int SkipWaits(bool on);

// While on, shorter pauses take a tenth of their time, on every thread: what polls, such as the plug-in's message loop,
// reacts the sooner.
void HurryPauses(bool on);

// While a timer identifier is held, a timer of that number is armed but does not fire within a test; 0 holds none,
// ALL_TIMERS every timer that has an identifier. Any thread.
constexpr UINT_PTR ALL_TIMERS = static_cast<UINT_PTR>(-1);
void HoldTimer(UINT_PTR id);

// The period that each timer was last armed with since ForgetTimers, in milliseconds.
std::map<UINT_PTR, UINT> ArmedTimers();
void ForgetTimers();

// The classes of common controls that were last asked for.
DWORD CommonControlClasses();

// The rights that the last opened registry key was opened with.
REGSAM RegistryAccess();
