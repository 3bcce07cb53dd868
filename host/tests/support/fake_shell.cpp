// The notification area that the test program has in the place of Windows' own.
#include "host/tests/support/fake_shell.h"

#include <mutex>

static std::mutex s_mutex;
static SHOWNICON s_icon;
static int s_refusals;
static bool s_keepsRefused;

static BOOL WINAPI FakeNotifyIcon(DWORD message, NOTIFYICONDATAW *data)
{
    std::lock_guard lock(s_mutex);
    switch (message) {
    case NIM_ADD:
        s_icon.adds++;
        if (s_icon.isThere || s_refusals-- > 0) {
            s_icon.isThere = s_icon.isThere || s_keepsRefused;
            return FALSE;
        }
        s_icon.isThere = true;
        return TRUE;
    case NIM_MODIFY:
        if (s_icon.isThere && (data->uFlags & NIF_INFO)) {
            s_icon.balloons++;
            s_icon.balloon = {};
            memcpy(&s_icon.balloon, data, data->cbSize);
        }
        return s_icon.isThere;
    case NIM_DELETE: {
        const bool wasThere = s_icon.isThere;
        s_icon.isThere = false;
        return wasThere;
    }
    default:
        return FALSE;
    }
}

extern "C" {
void *fakeNotifyIcon asm("__imp__Shell_NotifyIconW@8") = reinterpret_cast<void *>(FakeNotifyIcon);
}

void ResetFakeShell(int refusals, bool keepsRefused)
{
    std::lock_guard lock(s_mutex);
    s_icon = {};
    s_refusals = refusals;
    s_keepsRefused = keepsRefused;
}

void RestartFakeShell()
{
    std::lock_guard lock(s_mutex);
    s_icon.isThere = false;
}

SHOWNICON LookAtIcon()
{
    std::lock_guard lock(s_mutex);
    return s_icon;
}
