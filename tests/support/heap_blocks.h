// Blocks of the process heap that our own code has allocated and not freed yet. Its calls are counted, not the heap
// walked: what else lives there is the system's, and Wine from 9 on keeps small blocks in bins that a walk shows
// whether or not they are in use.
#pragma once

#include <windows.h>

// Blocks of the plug-in and of the program around it. Any thread.
int CountHeapBlocks();

// Has the calls of a module counted that was loaded and not linked: the finished plug-in. Its import table is
// redirected, until it is unloaded. Result: whether it imports HeapAlloc and HeapFree.
bool CountBlocksOf(HMODULE module);
