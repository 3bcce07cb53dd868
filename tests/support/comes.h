// Waiting for what another thread or program brings about.
#pragma once

#include <windows.h>

// Whether a condition comes to hold within ten seconds.
bool Comes(const auto &condition)
{
    constexpr int ROUNDS = 1000;
    for (int round = 0; round < ROUNDS; ++round) {
        if (condition())
            return true;
        Sleep(10);
    }
    return false;
}
