// What the plug-in has set in a monitor, so that it can be set again when the monitor has forgotten it: plain functions
// of plain values.
#pragma once

#include <windows.h>

#include <array>
#include <vector>

// How a write went. One that was held back would have gone to a monitor that is to be left alone.
enum WRITEFATE { WRITE_DONE, WRITE_FAILED, WRITE_HELD_BACK };

struct KEPTVALUES {
    struct WISH {
        bool isThere;
        WORD value;
    };
    std::array<WISH, 256> wishes; // per VCP code
};

// Notes a write. Colours and locks are kept whatever became of it, but for a 0 that did not
// reach the monitor; an input or channel only while it was held back, for
// the user may have chosen another one since. What a write changes beside its own code is not known any more.
void NoteWrite(KEPTVALUES *kept, BYTE code, WORD value, WRITEFATE fate);

// Notes what a code of a monitor that was not asleep reads as: another value was set at the monitor itself.
void NoteRead(KEPTVALUES *kept, BYTE code, WORD value);

// The codes whose values are kept, in the order in which they are to be set: what changes others comes before them.
std::vector<BYTE> KeptCodes(const KEPTVALUES &kept);

// The input or channel of a code has been set, or need not be: it is not kept any longer. Others are.
void NoteSettled(KEPTVALUES *kept, BYTE code);
