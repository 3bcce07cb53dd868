// The names by which a management server knows this PC: their first values.
#pragma once

// At the first run of a user, stores the host name as "LocalUserName" and the DNS domain name as "LocalGroupName"; one
// that the system does not know is left out. Runs once: a set-up that fails half-way is not tried again. Kernel thread.
void SetupIdentity();
