// The wall clock of this program: real, until a test sets it. The product reads it through GetLocalTime.
#pragma once

// Sets the clock to a minute and holds it there; seconds stay 0.
void SetClock(int year, int month, int day, int hour, int minute);

// Moves a clock that was set.
void AdvanceClock(int minutes);

// Back to the real time.
void ReleaseClock();
