// The program's window, and its start and end.
#include "tour/tour_program.h"

#include <shellapi.h>

#include "host/base/program_path.h"
#include "host/base/text.h"
#include "tour/tour_hands.h"
#include "tour/tourprogram/tour_program.h"

constexpr DWORD PROGRAM_PATIENCE = 10000; // ms for it to start or to end

std::string TourProgramPath()
{
    return ProgramFolder() + "\\" TOUR_PROGRAM_FILE;
}

HWND FindTourProgram()
{
    const HWND hWnd = FindWindowW(TOUR_PROGRAM_CLASS, nullptr);
    return hWnd && IsWindowVisible(hWnd) ? hWnd : nullptr;
}

HWND WaitForTourProgram()
{
    WaitUntil([] { return FindTourProgram() != nullptr; }, PROGRAM_PATIENCE);
    return FindTourProgram();
}

bool StartTourProgram(TOUR *tour)
{
    ShellExecuteW(nullptr, L"open", Widen(TourProgramPath()).c_str(), L"", nullptr, SW_SHOW);
    if (WaitForTourProgram())
        return true;
    FailStep(tour, TourProgramPath() + " does not start");
    return false;
}

std::string TourProgramCommandLine(HWND hWnd)
{
    return TextOf(GetDlgItem(hWnd, IDC_TOUR_COMMAND_LINE));
}

bool CloseTourProgram(TOUR *tour)
{
    if (const HWND hWnd = FindTourProgram())
        PostMessageW(hWnd, WM_CLOSE, 0, 0);
    if (WaitUntil([] { return !FindTourProgram(); }, PROGRAM_PATIENCE))
        return true;
    FailStep(tour, TOUR_PROGRAM_FILE " does not close");
    return false;
}
