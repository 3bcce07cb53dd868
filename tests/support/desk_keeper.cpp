// Holds the desktop while tests run on it. Wine ends the desktop's own program a second after the last other one has
// left; the next test would start it anew, and hand it its standard output, which then stays open for that second after
// each test.
#include <windows.h>

int main()
{
    GetDesktopWindow();
    Sleep(INFINITE);
    return 0;
}
