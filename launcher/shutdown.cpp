// Shutting the PC down. Not done yet.
#include "launcher/shutdown.h"

int ShutdownPc()
{
    return 0;
}
