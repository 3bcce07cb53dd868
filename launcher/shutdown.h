// Shutting the PC down.
#pragma once

// Shuts Windows down, with all programs forced to end; on the Windows NT family with the power switched off. Any
// thread. Result: that of the final system call, 0 = refused.
int ShutdownPc();
