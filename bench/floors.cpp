// Sleep and SetWindowPos with a watch.
#include "bench/floors.h"

#include "bench/measure.h"
#include "kernel/base/plugin_state.h"

#include <mutex>

static std::mutex s_Lock;
static FLOORS s_Floors;

static void WINAPI MeasuredSleep(DWORD milliseconds)
{
    const double start = NowUs();
    SleepEx(milliseconds, FALSE);
    if (milliseconds == 0) // only lets others run
        return;
    const std::lock_guard lock(s_Lock);
    ++s_Floors.pauses;
    s_Floors.pauseUs += NowUs() - start;
}

static BOOL WINAPI MeasuredSetWindowPos(HWND hWnd, HWND hAfter, int x, int y, int cx, int cy, UINT flags)
{
    static const auto real = reinterpret_cast<decltype(&SetWindowPos)>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleA("user32"), "SetWindowPos")));
    const double start = NowUs();
    const BOOL result = real(hWnd, hAfter, x, y, cx, cy, flags);
    if (hWnd == g_hPanelDlg) {
        const std::lock_guard lock(s_Lock);
        s_Floors.slideUs += NowUs() - start;
    }
    return result;
}

FLOORS FloorsSoFar()
{
    const std::lock_guard lock(s_Lock);
    return s_Floors;
}

extern "C" {
// The linker takes these before those of the import libraries.
extern void *measuredSleep asm("__imp__Sleep@4");
extern void *measuredSetWindowPos asm("__imp__SetWindowPos@28");
void *measuredSleep = reinterpret_cast<void *>(MeasuredSleep);
void *measuredSetWindowPos = reinterpret_cast<void *>(MeasuredSetWindowPos);
}
