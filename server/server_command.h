// The commands of the management server. They act on the monitor that is chosen in the panel, also while that is
// closed.
#pragma once

#include <windows.h>

// Carries a received command out and answers the server. Listener thread; waits for the host, for the server, and for
// the user where a command shows a message box.
// lpData: the receive buffer with cbData bytes, whatever they are.
// Result: 1 when it was carried out; 0 when it is not supported or not meant for this client.
int HandleServerCommand(const void *lpData, DWORD cbData);

// Closes the connection that the version command leaves open, if there is one. Any thread.
void CloseVersionConnection();
