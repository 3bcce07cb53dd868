// Identifiers of the plug-in's resources.
#pragma once

// ---- Strings ----
#define IDS_BLANK 1 // the English table's only entry
#define IDS_TITLE 100
#define IDS_PROFILE_NONE 600
#define IDS_PROFILE_PHOTO 601
#define IDS_PROFILE_FILM 602
#define IDS_PROFILE_TELEVISION 603
#define IDS_PROFILE_TEXT 604
#define IDS_NO_MONITOR 5000
#define IDS_PROFILE_NOT_SAVED 5005
#define IDS_ASK_OVERWRITE 5010           // shown by nothing
#define IDS_SYSTEM_PROFILE_IS_FIXED 5011 // shown by nothing
#define IDS_ASK_COLOR_CHANGE 5022
#define IDS_OLDER_VERSION 10002

// ---- Icons ----
#define IDI_PANEL 106
#define IDI_PRODUCT 1000

// ---- Colour page ----
#define IDC_COLOR_APP_LIST 2005
#define IDC_COLOR_PROFILE_COMBO 2033
