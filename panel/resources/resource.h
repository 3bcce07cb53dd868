// Identifiers of the plug-in's resources.
#pragma once

// ---- Strings ----
#define IDS_BLANK 1 // the English table's only entry
#define IDS_TITLE 100
#define IDS_VERSION 104
#define IDS_INPUT_S_VIDEO 115
#define IDS_INPUT_VIDEO 116
#define IDS_INPUT_TV 300
#define IDS_PROFILE_NONE 600
#define IDS_PROFILE_PHOTO 601
#define IDS_PROFILE_FILM 602
#define IDS_PROFILE_TELEVISION 603
#define IDS_PROFILE_TEXT 604
#define IDS_INPUT_ANALOG 611
#define IDS_INPUT_ANALOG2 612
#define IDS_INPUT_DIGITAL 613
#define IDS_INPUT_DIGITAL2 614
#define IDS_COLOR_CHANGED 2000
#define IDS_NO_MONITOR 5000
#define IDS_PROFILE_NOT_SAVED 5005
#define IDS_ASK_OVERWRITE 5010           // shown by nothing
#define IDS_SYSTEM_PROFILE_IS_FIXED 5011 // shown by nothing
#define IDS_RESERVATION_SAVE_FAILED 5014 // shown by nothing
#define IDS_RESERVATION_INCOMPLETE 5015
#define IDS_RESERVATION_PASSED 5016
#define IDS_RESERVATION_START_TAKEN 5017
#define IDS_NO_SERVER_LINK 5018          // shown by nothing
#define IDS_ASK_COLOR_CHANGE 5022
#define IDS_RESERVATION_END_FIRST 5023
#define IDS_PROMPT_QUESTION 5024
#define IDS_RESERVATION_END_TAKEN 5025
#define IDS_RESERVATION_BEFORE_AN_END 5026
#define IDS_PASSED_START 5027
#define IDS_PASSED_ENDED 5028
#define IDS_PROMPT_DELETED 5029
#define IDS_RESERVATION_TOO_SOON 5030
#define IDS_RESERVATION_NO_LENGTH 5031
#define IDS_PASSED_ENDED_STARTED 5032 // shown by nothing
#define IDS_OLDER_VERSION 10002

// ---- Icons ----
#define IDI_PANEL 106
#define IDI_PRODUCT 1000

// ---- Bitmaps ----
#define IDB_RESERVE_PROMPT 133

// ---- Network page ----
#define IDC_NETWORK_LOG 1010 // status line and communication log

// ---- Colour page ----
#define IDC_COLOR_APP_LIST 2005
#define IDC_COLOR_PROFILE_COMBO 2033

// ---- Reservation page: the controls that the reservations themselves need ----
#define IDC_RESERVATION_END_DATE 1017
#define IDC_RESERVATION_END_HOUR 1018
#define IDC_RESERVATION_END_MINUTE 1019
#define IDC_RESERVATION_START_DATE 2069
#define IDC_RESERVATION_CHANNEL 2074
#define IDC_RESERVATION_START_MINUTE 2084
#define IDC_RESERVATION_START_HOUR 2086
#define IDC_RESERVATION_LIST 2092

// ---- Reservation prompt ----
#define IDD_RESERVE_PROMPT 132
#define IDC_PROMPT_SWITCH 1048
#define IDC_PROMPT_DELETE 1049
#define IDC_PROMPT_TEXT 1051
#define IDC_PROMPT_OK 1052
