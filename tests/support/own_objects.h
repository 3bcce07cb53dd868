// What our own code has allocated and not given back yet: blocks of the process heap, and GDI objects. Its calls are
// counted, not the system's tables: what else lives there is the system's, and later Wines keep small blocks in bins
// that a walk of the heap shows whether or not they are in use, and draw each window on a bitmap that comes and goes by
// itself.
#pragma once

#include <windows.h>

// Of the plug-in and of the program around it. Any thread.
int CountHeapBlocks();
int CountGdiObjects(); // fonts, bitmaps and device contexts

// Has the calls of a module counted that was loaded and not linked: the finished plug-in. Its import table is
// redirected, until it is unloaded. Result: whether it imports all the functions that are counted.
bool CountObjectsOf(HMODULE module);
