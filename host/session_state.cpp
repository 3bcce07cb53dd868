// Whether the monitors may be accessed, as far as Windows tells.
#include "host/session_state.h"

#include <wtsapi32.h>

#include <cstring>

// Windows 8 and newer; the compiler's library of such names has it not.
static const GUID s_displayState = {0x6FE69556, 0x704A, 0x47A0, {0x8F, 0x24, 0xC2, 0x8D, 0x93, 0x6F, 0xDA, 0x47}};
constexpr DWORD DISPLAY_IS_OFF = 0; // 1: on, 2: dimmed

// With PBT_POWERSETTINGCHANGE, as Windows Vista and newer lay it out.
constexpr WPARAM POWER_SETTING_CHANGE = 0x8013;
struct POWERSETTING {
    GUID setting;
    DWORD length, value;
};

// ---- What Windows is asked to tell ----------------------------------------------------------------------------------

// Older systems lack functions and libraries, so they are looked up.
template <typename FUNCTION>
static FUNCTION Find(HMODULE hLibrary, const char *name)
{
    const FARPROC found = hLibrary ? GetProcAddress(hLibrary, name) : nullptr;
    return reinterpret_cast<FUNCTION>(reinterpret_cast<void *>(found));
}

typedef HANDLE(WINAPI *REGISTERPOWER)(HANDLE, const GUID *, DWORD);
typedef BOOL(WINAPI *UNREGISTERPOWER)(HANDLE);
typedef BOOL(WINAPI *REGISTERSESSION)(HWND, DWORD);
typedef BOOL(WINAPI *UNREGISTERSESSION)(HWND);

void RegisterSessionEvents(SESSIONEVENTS *events, HWND hWnd)
{
    events->hWnd = hWnd;
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    if (const auto registerPower = Find<REGISTERPOWER>(user, "RegisterPowerSettingNotification"))
        events->hDisplay = registerPower(hWnd, &s_displayState, DEVICE_NOTIFY_WINDOW_HANDLE);
    events->hLibrary = LoadLibraryW(L"wtsapi32.dll");
    if (const auto registerSession = Find<REGISTERSESSION>(events->hLibrary, "WTSRegisterSessionNotification"))
        registerSession(hWnd, NOTIFY_FOR_THIS_SESSION);
}

void UnregisterSessionEvents(SESSIONEVENTS *events)
{
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    const auto unregisterPower = Find<UNREGISTERPOWER>(user, "UnregisterPowerSettingNotification");
    if (unregisterPower && events->hDisplay)
        unregisterPower(events->hDisplay);
    if (const auto unregister = Find<UNREGISTERSESSION>(events->hLibrary, "WTSUnRegisterSessionNotification"))
        unregister(events->hWnd);
    if (events->hLibrary)
        FreeLibrary(events->hLibrary);
    *events = {};
}

// ---- What it tells --------------------------------------------------------------------------------------------------

bool MayAccessMonitors(const SESSIONSTATE &state)
{
    return !state.sleeps && !state.isDisplayOff && !state.isAway && !state.isLocked;
}

static void TakePowerSetting(SESSIONSTATE *state, LPARAM lParam)
{
    const auto *setting = reinterpret_cast<const POWERSETTING *>(lParam);
    if (setting && memcmp(&setting->setting, &s_displayState, sizeof(GUID)) == 0 && setting->length >= sizeof(DWORD))
        state->isDisplayOff = setting->value == DISPLAY_IS_OFF;
}

// Returns whether the PC has woken up.
static bool TakePowerEvent(SESSIONSTATE *state, WPARAM event, LPARAM lParam)
{
    switch (event) {
    case PBT_APMSUSPEND:
        state->sleeps = true;
        return false;
    case PBT_APMRESUMEAUTOMATIC:
    case PBT_APMRESUMESUSPEND:
    case PBT_APMRESUMECRITICAL:
        state->sleeps = false;
        return true;
    case POWER_SETTING_CHANGE:
        TakePowerSetting(state, lParam);
        return false;
    default:
        return false;
    }
}

static void TakeSessionChange(SESSIONSTATE *state, WPARAM event)
{
    switch (event) {
    case WTS_CONSOLE_CONNECT:
        state->isAway = false;
        break;
    case WTS_CONSOLE_DISCONNECT:
    case WTS_REMOTE_CONNECT: // the monitors of this session are another PC's
    case WTS_REMOTE_DISCONNECT:
        state->isAway = true;
        break;
    case WTS_SESSION_LOCK:
    case WTS_SESSION_UNLOCK:
        state->isLocked = event == WTS_SESSION_LOCK;
        break;
    default:
        break;
    }
}

SESSIONCHANGE TakeSessionEvent(SESSIONSTATE *state, UINT message, WPARAM wParam, LPARAM lParam)
{
    const bool could = MayAccessMonitors(*state);
    bool hasWoken = false;
    if (message == WM_POWERBROADCAST)
        hasWoken = TakePowerEvent(state, wParam, lParam);
    else if (message == WM_WTSSESSION_CHANGE)
        TakeSessionChange(state, wParam);
    const bool can = MayAccessMonitors(*state);
    if (can && (!could || hasWoken))
        return SESSION_WAKES;
    return could && !can ? SESSION_RESTS : SESSION_SAME;
}
