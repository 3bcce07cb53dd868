// Which writes go to a real monitor: one that can be meant, and that changes something. Plain functions of what is
// known of the monitor; whoever calls them sees to it that one thread at a time does.
#pragma once

#include <windows.h>

#include <array>
#include <vector>

#include "host/base/capability_text.h"

// ms for which a value that was read or written counts as what the monitor has. Its owner may change it in the
// monitor's own menu meanwhile; a write of the same value after that looks first.
constexpr DWORD KNOWN_TIME = 10000;

// Of one monitor.
struct MONITORKNOWLEDGE {
    bool takesMakersCodes;              // codes from 0xE0 on mean to it what they mean to us
    std::vector<CAPABILITYCODE> listed; // by its capability string; empty: not known
    std::array<int, 256> ownersMaxima;  // what monitors.ini says; -1: the monitor's own
    struct CODE {
        bool wasRead;    // in this run
        int maximum;     // of the last read; -1: none
        int value;       // what it has; -1: not known
        DWORD valueTick; // since when, as GetTickCount counts
    };
    std::array<CODE, 256> codes;
};

enum WRITEVERDICT {
    WRITE_SEND,
    WRITE_LOOK, // it has this value as far as is known: read it, and send only when it has another by now
    WRITE_SKIP, // it has this value: done without an access
    // Refused: it would do harm or nothing.
    REFUSED_FAILED_READ,    // 0xFFFF is what a read that failed leaves behind
    REFUSED_MAKERS_CODE,    // of another maker, to whom it may mean anything
    REFUSED_UNLISTED_VALUE, // one that the monitor does not list, as an input without a plug
    REFUSED_ABOVE_MAXIMUM,
    REFUSED_UNREAD_ZERO, // a screen dark for somebody who never saw what he was changing
};

// Knows nothing yet.
MONITORKNOWLEDGE NoKnowledge();

// What to do with a write. `now` as GetTickCount counts.
WRITEVERDICT JudgeWrite(const MONITORKNOWLEDGE &known, BYTE code, WORD value, DWORD now);

inline bool IsRefused(WRITEVERDICT verdict)
{
    return verdict >= REFUSED_FAILED_READ;
}

// Why, for the log (English); of a refusal.
const char *RefusalText(WRITEVERDICT verdict);

// What an access has told. A write that failed may have been taken all the same.
void LearnRead(MONITORKNOWLEDGE *known, BYTE code, WORD value, WORD maximum, DWORD now);
void LearnWrite(MONITORKNOWLEDGE *known, BYTE code, WORD value, bool done, DWORD now);

// The monitor was asleep, gone, or out of our hands: its values may be any.
void ForgetValues(MONITORKNOWLEDGE *known);
