// The poll of the monitors' front-panel buttons, and what a press does. It runs while a launcher function is switched
// on; UpdateLauncherPoll starts and stops it in between.
//
// Kernel thread. Every access to a monitor waits for the host.
#pragma once

#include <windows.h>

// Code of the button that was pressed last, as a monitor reported it: a button's bit, BUTTON_PRESSED_NONE, or whatever
// else the monitor says. Kept from one poll to the next.
extern LONG nLastButton;

// What a press leads to.
enum class PRESSACTION {
    None,
    Launch,
    AskShutdown,
};

// The button, 1 to 6, that a code stands for; 0 for none, for several at once, and for anything that is no code.
int PressedButton(LONG nCode);

// Decides by the button's mode (BUTTON_...) and the monitor's POWER switch, which concerns that button alone.
PRESSACTION DecidePress(int nButton, DWORD dwMode, DWORD dwPowerSwitch);

// Clears the button register (VCP 0xF4) of every monitor that has one, before the poll is started.
void ClearButtonRegisters();

// One poll, every two seconds: looks for a pressed button, acknowledges it and acts on it. May be entered again by the
// next tick while the question before a shutdown is on screen. hKernelWnd: owner of that question and of what is
// launched.
void PollMonitorButtons(HWND hKernelWnd);
