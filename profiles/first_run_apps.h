// Application profiles that a first run makes for programs that it finds on the machine.
#pragma once

// Registers the programs of Office 8, 9 and 10 that are there, and Media Player where its registry key is, in memory
// and in the file, from slot g_nAppProfile on; counts that up. Kernel thread.
void CreateAppProfiles();
