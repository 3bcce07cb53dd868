// What happens to reservations when their minutes come, and to those whose minutes came while nobody watched.
//
// Kernel thread. A switch takes up to one and a half seconds, and longer while the host does not answer.
#pragma once

#include <windows.h>

// Ends the reservations whose end minute is now: puts back the input from before and deletes them. While a prompt is on
// screen it is told instead, and nothing ends in this tick.
void CheckReservationEnd();

// Starts those whose start minute is now: at once, or by the prompt. While its question is open no other reservation
// is asked for; one that waits through its whole minute never starts.
void CheckReservationStart();

// Goes through the file for reservations whose times have passed: deletes those that have ended and asks about those
// that should have started. For the opening of the panel, before its pages exist; hOwner owns the message boxes.
// Result: 1.
int CheckPassedReservations(HWND hOwner);
