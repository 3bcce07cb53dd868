// One host a user session: a second start hands its wish to the first, and ends.
#include "host/single_instance.h"

constexpr DWORD ANSWER_PATIENCE = 2000; // ms for the window's answer
constexpr DWORD LOOK_PERIOD = 100;      // ms between two looks for its window

// Open to all in the session: an instance with more rights would otherwise keep it from one with fewer.
static HANDLE OpenSharedMutex(const wchar_t *name)
{
    SECURITY_DESCRIPTOR descriptor = {};
    InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&descriptor, TRUE, nullptr, FALSE);
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, &descriptor, FALSE};
    return CreateMutexW(&attributes, FALSE, name);
}

// The window may come to the front only if we, whom the user has just started, allow it.
static bool HandOver(const INSTANCENAMES &names)
{
    const HWND hWnd = FindWindowW(names.windowClass, names.windowTitle);
    if (!hWnd)
        return false;
    DWORD process = 0;
    DWORD_PTR answer = 0;
    GetWindowThreadProcessId(hWnd, &process);
    AllowSetForegroundWindow(process);
    return SendMessageTimeoutW(hWnd, names.message, 0, 0, SMTO_ABORTIFHUNG, ANSWER_PATIENCE, &answer) && answer == 1;
}

INSTANCEROLE JoinInstances(const INSTANCENAMES &names, DWORD patience, HANDLE *hold)
{
    *hold = OpenSharedMutex(names.mutex);
    if (!*hold)
        return INSTANCE_FIRST;
    const DWORD start = GetTickCount();
    for (DWORD wait = 0;; wait = LOOK_PERIOD) {
        // Whoever gets it is the first, also after one that ended without giving it back.
        if (WaitForSingleObject(*hold, wait) != WAIT_TIMEOUT)
            return INSTANCE_FIRST;
        const bool isTaken = HandOver(names);
        if (!isTaken && GetTickCount() - start < patience)
            continue;
        CloseHandle(*hold);
        *hold = nullptr;
        return isTaken ? INSTANCE_SECOND : INSTANCE_STUCK;
    }
}

void LeaveInstances(HANDLE hold)
{
    if (!hold)
        return;
    ReleaseMutex(hold);
    CloseHandle(hold);
}
