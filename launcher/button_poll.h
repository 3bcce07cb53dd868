// The poll of the monitors' front-panel buttons.
#pragma once

#include <windows.h>

// Clears the button register (VCP 0xF4) of every monitor that has one. Kernel thread.
void ClearButtonRegisters();

// Reads the buttons pressed since the last poll and acts on them; every two seconds. Kernel thread.
void PollMonitorButtons(HWND hKernelWnd);
