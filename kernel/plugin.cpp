// The export and the slots that start, describe and stop the plug-in.
#include "kernel/plugin.h"

#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"
#include "kernel/host_command.h"
#include "kernel/kernel_thread.h"
#include "kernel/link/host_packet.h"
#include "panel/resources/strings.h"
#include "server/identity.h"

#include <version.h>

char g_szTitle[128] = "";

static const char s_szDescription[] = "マウス操作でモニタの設定を変更できるアプリケーションです。\r\n"
                                      "アプリケーションごとの色設定呼び出し、画面切り替えタイマー、\r\n"
                                      "LCDボタンによる、アプリケーションの起動などを実行できます。";
static PLUGININFO s_Info; // handed to the host, so it outlives the call

static const PLUGINSLOT s_Slots[PLUGIN_SLOT_COUNT] = {
    PluginInit,         // 0
    PluginGetInfo,      // 1
    PluginReceive,      // 2
    PluginOpenPanel,    // 3
    PluginNop,          // 4
    PluginNop,          // 5
    PluginNop,          // 6
    PluginNop,          // 7
    PluginNop,          // 8
    PluginNop,          // 9
    PluginSendIdentity, // 10
    PluginNop,          // 11
    PluginNop,          // 12
    PluginNop,          // 13
    PluginNop,          // 14
    PluginStop,         // 15
    PluginCommand,      // 16
    nullptr,            // 17: the end of the table, not to be called
};

// There is no clean-up at detach: the host stops the plug-in through slot 15 before it unloads it.
extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD dwReason, void *)
{
    if (dwReason == DLL_PROCESS_ATTACH)
        g_hInstance = hInstance;
    return TRUE;
}

extern "C" int GetPluginFunc(PLUGINFUNC *lpFunc)
{
    lpFunc->nCount = PLUGIN_SLOT_COUNT;
    lpFunc->lpFuncTable = s_Slots;
    return 1;
}

int PluginInit(void *lpPacket)
{
    HOSTPACKET *packet = static_cast<HOSTPACKET *>(lpPacket);
    if (!packet || packet->dwDataSize < sizeof(HWND) || !packet->lpData)
        return 0;
    // Refused before anything changes: the thread that runs goes on with the window that it knows.
    if (IsKernelThreadRunning())
        return 0;
    // This block is no HOSTDATA: its first word is the window.
    g_hHostWnd = *reinterpret_cast<const HWND *>(packet->lpData);
    packet->dst.bClass = ENDPOINT_CLASS;
    packet->dst.bSubClass = ENDPOINT_SUBCLASS_PLUGIN;
    g_MyAddr = packet->dst;
    g_hPanelDlg = nullptr;
    LoadText(IDS_TITLE, g_szTitle, sizeof g_szTitle);
    g_wHostID = ENDPOINT_ID_UNKNOWN;
    return StartKernelThread(g_hHostWnd);
}

int PluginGetInfo(void *lpPacket)
{
    HOSTPACKET *packet = static_cast<HOSTPACKET *>(lpPacket);
    s_Info = {g_szTitle, s_szDescription, VERSION_RELEASE, {0, 0}};
    packet->dwDataSize = sizeof s_Info;
    packet->lpData = reinterpret_cast<HOSTDATA *>(&s_Info);
    return 1;
}

int PluginOpenPanel(void *)
{
    return static_cast<int>(SendMessageA(g_hKernelWnd, WM_KERNEL_OPEN_PANEL, 0, 0));
}

int PluginNop(void *)
{
    return 1;
}

int PluginStop(void *)
{
    g_bAbort = 1;
    StopKernelThread();

    HOSTPACKET notice;
    if (BuildRequest(&notice, HOST_NOTICE, HOST_NOTICE_STOPPED, nullptr, 0) == REQUEST_NONE)
        return 0;
    // Like any notice it gets no reply, so its number stays taken.
    SendMessageA(g_hHostWnd, WM_HOST_PACKET, 0, reinterpret_cast<LPARAM>(&notice));
    FreeDataBlock(notice.lpData);
    return 1;
}
