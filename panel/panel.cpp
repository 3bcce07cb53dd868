// The panel dialog. It does not open yet.
#include "panel/panel.h"

int ShowPanel(HWND)
{
    return 0;
}
