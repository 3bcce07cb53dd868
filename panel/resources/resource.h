// Identifiers of the plug-in's resources.
#pragma once

// ---- Strings ----
#define IDS_BLANK 1 // the English table's only entry
#define IDS_TITLE 100
#define IDS_NO_MONITOR 5000
#define IDS_ASK_COLOR_CHANGE 5022
#define IDS_OLDER_VERSION 10002

// ---- Icons ----
#define IDI_PANEL 106
#define IDI_PRODUCT 1000
