// The table of server commands, and what they do.
#include "server/server_command.h"

#include "kernel/base/texts.h"
#include "monitor/color_settings.h"
#include "monitor/monitor_power.h"
#include "monitor/selection.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "panel/resources/strings.h"
#include "server/server_datagram.h"
#include "server/server_reply.h"
#include "server/server_state.h"
#include "settings/setting_table.h"

#include <cstring>

// A command as it came, with all of the receive buffer.
struct RECEIVED {
    SERVERCMD command;
    const void *lpData;
    DWORD cbData;
};

struct COMMANDROW {
    BYTE bCommand;
    void (*lpfnAction)(const RECEIVED *lpReceived, const COMMANDROW *lpRow); // null: does nothing
    BYTE bVcpCode;                                                           // for WriteRowFeature
    LONG nValue;                                                             // for WriteRowFeature and SwitchPower
    LPCSTR lpszLog;   // line of the communication log; null: none, or the action writes its own
    LPCSTR lpszReply; // text of the final reply; null: string nReplyString
    UINT nReplyString;
};

constexpr size_t REPLY_TEXT_SIZE = 128;
constexpr size_t SERVER_MESSAGE_SIZE = 256;

// The connection that carried the last version reply.
static std::atomic<SOCKET> s_sockVersion = INVALID_SOCKET;

// ---- Answers ------------------------------------------------------------------------------------------------------

static SOCKET SendData(const RECEIVED *lpReceived, BYTE bStatus, const void *lpData, size_t cbData)
{
    SERVERREPLY header = {};
    header.dwFrom = g_dwMyIpAddr;
    header.dwTo = lpReceived->command.dwServerAddr;
    header.dwLength = static_cast<uint32_t>(cbData);
    header.bStatus = bStatus;
    return SendServerReply(&header, lpData);
}

// A text goes with its terminating zero.
static SOCKET SendText(const RECEIVED *lpReceived, BYTE bStatus, LPCSTR lpszText)
{
    return SendData(lpReceived, bStatus, lpszText, strlen(lpszText) + 1);
}

static void WriteLog(LPCSTR lpszLine)
{
    if (g_hCommLogWnd)
        SetDlgItemTextA(g_hCommLogWnd, IDC_NETWORK_LOG, lpszLine);
}

// ---- Monitor ------------------------------------------------------------------------------------------------------

// Keeps the cached settings of the monitor in step, the ECO mode with all 32 bits, though the monitor gets 16.
static void WriteFeature(BYTE bCode, DWORD dwValue)
{
    const LONG monitor = g_nCurMonitor;
    SetVCP(monitor, bCode, LOWORD(dwValue));
    if (!IsMonitorIndex(monitor))
        return;
    COLORSETTING *setting = &g_CurSetting[monitor];
    if (const COLORFEATURE *feature = FindColorFeature(setting, bCode))
        SetColorValue(setting, *feature, static_cast<LONG>(dwValue));
}

static void SetFeature(const RECEIVED *lpReceived, const COMMANDROW *)
{
    WriteFeature(lpReceived->command.bVcpCode, lpReceived->command.dwValue);
}

static void WriteRowFeature(const RECEIVED *, const COMMANDROW *lpRow)
{
    WriteFeature(lpRow->bVcpCode, static_cast<DWORD>(lpRow->nValue));
}

// Asks the server for the settings and writes those that came; the cached settings stay as they are. Of an answer that
// ends early the user's monitor keeps the rest: what is cached of it may be old, or was never read.
static void SetAllFeatures(const RECEIVED *lpReceived, const COMMANDROW *)
{
    static_assert(sizeof(SERVERCOLORS) <= sizeof(COLORSETTING) &&
                      offsetof(SERVERCOLORS, wColorTemp) == offsetof(COLORSETTING, wColorTemp),
                  "the server sends the beginning of the record");
    char answer[SERVER_ANSWER_SIZE];
    const SOCKET sock = SendData(lpReceived, SERVER_STATUS_DATA, nullptr, 0);
    const size_t received = ReceiveServerAnswer(sock, answer, sizeof answer);
    CloseServerSocket(sock);

    const LONG monitor = g_nCurMonitor;
    if (!IsMonitorIndex(monitor))
        return;
    SERVERCOLORS colors = {};
    const size_t filled = ReadServerColors(&colors, answer, received);
    COLORSETTING setting = {};
    memcpy(&setting, &colors, sizeof colors);
    ApplyColorFields(monitor, &setting, filled);
}

static void SwitchPower(const RECEIVED *, const COMMANDROW *lpRow)
{
    BroadcastMonitorPower(lpRow->nValue);
}

// ---- Client -------------------------------------------------------------------------------------------------------

static void ReportIdentity(const RECEIVED *lpReceived, const COMMANDROW *)
{
    CloseServerSocket(SendData(lpReceived, SERVER_STATUS_IDENTITY, g_szUserName, sizeof g_szUserName));

    BYTE address[4];
    memcpy(address, &lpReceived->command.dwServerAddr, sizeof address);
    char text[sizeof g_szServerAddr];
    char line[64];
    wsprintfA(text, "%d.%d.%d.%d", address[0], address[1], address[2], address[3]);
    wsprintfA(line, "Server address : %s", text);
    g_dwServerAddr = lpReceived->command.dwServerAddr;
    lstrcpyA(g_szServerAddr, text); // fits; whoever reads it meanwhile finds a terminated text
    WriteLog(line);
}

// The connection is left open behind the reply, for the server to close. It is kept for the next command to close, so
// that many requests don't add up to many sockets.
static void ReportVersion(const RECEIVED *lpReceived, const COMMANDROW *)
{
    char version[REPLY_TEXT_SIZE] = "";
    LoadText(IDS_VERSION, version, sizeof version);
    CloseServerSocket(s_sockVersion.exchange(SendText(lpReceived, SERVER_STATUS_DATA, version)));
}

void CloseVersionConnection()
{
    CloseServerSocket(s_sockVersion.exchange(INVALID_SOCKET));
}

static void AllowNameChange(const RECEIVED *, const COMMANDROW *)
{
    WriteSettingNumber(SETTING_ENABLE_CHANGE_NAME, 1);
}

// ---- Message boxes: the listener waits until they are closed ------------------------------------------------------

// The text stands behind what a datagram's buffer holds, so the box is empty.
static void ShowServerMessage(const RECEIVED *lpReceived, const COMMANDROW *)
{
    char text[SERVER_MESSAGE_SIZE];
    ParseServerMessage(text, sizeof text, lpReceived->lpData, lpReceived->cbData);
    ShowBox(nullptr, text, PRODUCT_TITLE, MB_OK);
}

static void ShowUnknownCommand(const RECEIVED *lpReceived, const COMMANDROW *)
{
    char text[64];
    wsprintfA(text, "Unknown command(%d) was found\n", lpReceived->command.bCommand);
    ShowBox(nullptr, text, PRODUCT_TITLE, MB_OK | MB_ICONHAND);
}

// ---- Table --------------------------------------------------------------------------------------------------------

// Texts of a row: one for log and reply; those of a command that is known and does nothing.
#define SAME_TEXT(TEXT) TEXT, TEXT, 0
#define NOT_SUPPORTED "", "Not Support", 0

static const COMMANDROW s_Commands[] = {
    {1, nullptr, 0, 0, NOT_SUPPORTED},
    {SERVER_SET_FEATURE, SetFeature, 0, 0, "Receive [LVS_SETFEATURE]", nullptr, IDS_COLOR_CHANGED},
    {3, nullptr, 0, 0, NOT_SUPPORTED},
    {4, nullptr, 0, 0, NOT_SUPPORTED},
    {5, nullptr, 0, 0, NOT_SUPPORTED},
    {17, nullptr, 0, 0, NOT_SUPPORTED},
    {SERVER_SET_ALL, SetAllFeatures, 0, 0, "Receive [LVS_SETFEATUREALL]", nullptr, IDS_COLOR_CHANGED},
    {SERVER_POWER_OFF, SwitchPower, 0, MONITOR_POWER_OFF, SAME_TEXT("DPMS OFF")},
    {SERVER_POWER_ON, SwitchPower, 0, MONITOR_POWER_ON, SAME_TEXT("DPMS ON")},
    {SERVER_ECO_OFF, WriteRowFeature, VCP_ECO_MODE, 0, SAME_TEXT("ECO Mode Off")},
    {SERVER_ECO_ON, WriteRowFeature, VCP_ECO_MODE, 1, SAME_TEXT("ECO Mode On")},
    {SERVER_AUTO_ADJUST, WriteRowFeature, VCP_AUTO_SETUP, 1, SAME_TEXT("Auto Adjust Done")},
    {SERVER_INPUT_ANALOG, WriteRowFeature, VCP_INPUT_SOURCE, INPUT_ANALOG, SAME_TEXT("Select Analog RGB")},
    {SERVER_INPUT_DIGITAL, WriteRowFeature, VCP_INPUT_SOURCE, INPUT_DIGITAL, SAME_TEXT("Select Digital RGB")},
    {SERVER_INPUT_TV, WriteRowFeature, VCP_INPUT_SOURCE, INPUT_TV, SAME_TEXT("Select TV Tuner")},
    {SERVER_INPUT_SVIDEO, WriteRowFeature, VCP_INPUT_SOURCE, INPUT_S_VIDEO, SAME_TEXT("Select S-Video")},
    {SERVER_INPUT_COMPOSITE, WriteRowFeature, VCP_INPUT_SOURCE, INPUT_VIDEO, SAME_TEXT("Select Composite")},
    {SERVER_IDENTITY, ReportIdentity, 0, 0, nullptr, "Ready", 0},
    {SERVER_VERSION, ReportVersion, 0, 0, "Requested Version Information", nullptr, IDS_VERSION},
    {SERVER_ALLOW_NAMES, AllowNameChange, 0, 0, SAME_TEXT("Enable to change User and Group Name")},
    {144, nullptr, 0, 0, NOT_SUPPORTED},
    {SERVER_MESSAGE, ShowServerMessage, 0, 0, nullptr, "", 0},
};
static const COMMANDROW s_Unknown = {0, ShowUnknownCommand, 0, 0, nullptr, "Not Support command", 0};

static const COMMANDROW *FindCommand(BYTE bCommand)
{
    for (const COMMANDROW &row : s_Commands)
        if (row.bCommand == bCommand)
            return &row;
    return &s_Unknown;
}

static void SendFinalReply(const RECEIVED *lpReceived, const COMMANDROW *lpRow)
{
    char text[REPLY_TEXT_SIZE] = "";
    if (lpRow->lpszReply)
        lstrcpynA(text, lpRow->lpszReply, sizeof text);
    else
        LoadText(lpRow->nReplyString, text, sizeof text);
    const BYTE status = lpRow == &s_Unknown ? SERVER_STATUS_REFUSED : SERVER_STATUS_DONE;
    CloseServerSocket(SendText(lpReceived, status, text));
}

int HandleServerCommand(const void *lpData, DWORD cbData)
{
    RECEIVED received = {{}, lpData, cbData};
    if (!ParseServerCommand(&received.command, lpData, cbData) || !IsForClient(&received.command, g_dwMyIpAddr))
        return 0;
    CloseVersionConnection();
    const COMMANDROW *row = FindCommand(received.command.bCommand);
    if (row->lpfnAction)
        row->lpfnAction(&received, row);
    if (row->lpszLog)
        WriteLog(row->lpszLog);
    SendFinalReply(&received, row);
    return row != &s_Unknown;
}
