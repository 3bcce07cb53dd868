// The EDID check at stop.
#pragma once

// Compares the EDID of the listed models with what the header must be, and repairs it. At stop, on the kernel thread.
void CheckEdidAtStop();
