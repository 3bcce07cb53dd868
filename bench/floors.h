// Times that are part of the plug-in's behaviour, so that no better code could save them: its pauses, and the moves by
// which the panel slides to its width. Its calls of Sleep and SetWindowPos are measured in this program; the benchmark
// itself pauses by SleepEx.
#pragma once

struct FLOORS {
    long pauses;    // those that have a length
    double pauseUs; // spent in them
    double slideUs; // spent in moves of the panel
};

// Since the program began, of all threads together.
FLOORS FloorsSoFar();
