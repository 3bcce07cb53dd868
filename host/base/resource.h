// Identifiers of trayhub.rc.
#pragma once

// Icons
#define IDI_TRAYHUB 1000

// Menu of the tray icon and of the monitors' windows
#define IDR_TRAY_MENU 200
#define IDM_OPEN_PANEL 2001
#define IDM_SHOW_MONITORS 2002
#define IDM_ABOUT 2003
#define IDM_QUIT 2004
#define IDM_DETECT_MONITORS 2005
#define IDM_AUTOSTART 2006
