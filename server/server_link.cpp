// Start, receive loop and end of the listeners.
#include "server/server_link.h"

#include "kernel/base/plugin_state.h"
#include "kernel/base/texts.h"
#include "panel/resources/strings.h"
#include "server/server_command.h"
#include "server/server_state.h"
#include "settings/setting_table.h"

#include <cstring>
#include <winsock.h>

using SHAREDSOCKET = std::atomic<SOCKET>; // whoever takes it out closes it

constexpr int MAX_LISTENER = 16; // further starts are silent: those that run answer just as well
constexpr WORD WINSOCK_VERSION = MAKEWORD(1, 1);
constexpr DWORD RETRY_PAUSE_MS = 10; // after a socket that could not be had: the port may be taken for hours
constexpr UINT JOIN_ROUND_MS = 50;

// One entry a listener; a null thread marks a free one. The socket is that of the current receive cycle.
static HANDLE g_hServerThread[MAX_LISTENER];
static DWORD s_dwThreadId[MAX_LISTENER];
static SHAREDSOCKET g_sockUdp[MAX_LISTENER];
static HANDLE g_hServerEvent = nullptr; // signalled from the first start on; nothing waits on it

// ---- Who we are ---------------------------------------------------------------------------------------------------

static DWORD LookUpAddress(LPCSTR lpszHost)
{
    DWORD address = 0;
    const hostent *host = gethostbyname(lpszHost);
    if (host && host->h_addrtype == AF_INET && host->h_length == sizeof address && host->h_addr_list[0])
        memcpy(&address, host->h_addr_list[0], sizeof address);
    return address;
}

// Reads a name with whatever the value has behind it, since the server gets the buffer whole; what the value does not
// fill is zero. False when there is none.
static bool ReadName(SETTING setting, char (&szName)[SERVER_NAME_SIZE])
{
    char stored[SERVER_NAME_SIZE] = "";
    REGENTRY entry = SettingEntry(setting, stored, sizeof stored);
    if (!ReadSetting(&entry) || entry.dwType != REG_SZ)
        return false;
    stored[sizeof stored - 1] = '\0'; // a value that fills the buffer need not end with its zero
    memcpy(szName, stored, sizeof szName);
    return true;
}

static void InitServerIdentity()
{
    gethostname(g_szHostName, sizeof g_szHostName);
    g_szHostName[sizeof g_szHostName - 1] = '\0'; // a name that was cut may come without
    g_dwMyIpAddr = LookUpAddress(g_szHostName);

    if (!ReadName(SETTING_USER_NAME, g_szUserName)) {
        memset(g_szUserName, 0, sizeof g_szUserName);
        memcpy(g_szUserName, g_szHostName, sizeof g_szHostName - 1);
    }
    if (!ReadName(SETTING_GROUP_NAME, g_szGroupName)) {
        memset(g_szGroupName, 0, sizeof g_szGroupName);
        LoadText(IDS_PROFILE_NONE, g_szGroupName, sizeof g_szGroupName);
    }
}

// ---- Listener thread ----------------------------------------------------------------------------------------------

static void CloseOnce(SHAREDSOCKET *place)
{
    const SOCKET sock = place->exchange(INVALID_SOCKET);
    if (sock != INVALID_SOCKET)
        closesocket(sock);
}

// Several listeners, and other programs, may share the port.
static bool BindToPort(SOCKET sock)
{
    const BOOL reuse = TRUE;
    if (setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char *>(&reuse), sizeof reuse) != 0)
        return false;
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(SERVER_PORT);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    return bind(sock, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

static SOCKET OpenUdpSocket()
{
    const SOCKET sock = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    if (sock == INVALID_SOCKET || BindToPort(sock))
        return sock;
    closesocket(sock);
    return INVALID_SOCKET;
}

static bool ReceiveDatagram(SOCKET sock, char *buffer, int size)
{
    // A datagram that is longer than the buffer fills it and is reported as an error.
    return recvfrom(sock, buffer, size, 0, nullptr, nullptr) != SOCKET_ERROR || WSAGetLastError() == WSAEMSGSIZE;
}

// One datagram, one socket: what arrives until the next cycle is lost, and the server knows it.
static void ReceiveCycle(SHAREDSOCKET *place, char *buffer)
{
    const SOCKET sock = OpenUdpSocket();
    if (sock == INVALID_SOCKET) {
        Sleep(RETRY_PAUSE_MS);
        return;
    }
    // From here on the socket may be closed under the receive, to end it.
    *place = sock;
    if (g_ServerThreadCtx.bRunning && ReceiveDatagram(sock, buffer, SERVER_DATAGRAM_SIZE))
        HandleServerCommand(buffer, SERVER_DATAGRAM_SIZE);
    CloseOnce(place);
}

static DWORD WINAPI ServerListenThread(void *lpSocketPlace)
{
    // Not cleared between datagrams: behind a short one stands what the one before left there.
    char buffer[SERVER_DATAGRAM_SIZE] = {};
    WSADATA data;
    const bool started = WSAStartup(WINSOCK_VERSION, &data) == 0;
    InitServerIdentity();
    while (g_ServerThreadCtx.bRunning)
        ReceiveCycle(static_cast<SHAREDSOCKET *>(lpSocketPlace), buffer);
    CloseVersionConnection();
    if (started)
        WSACleanup();
    return 0;
}

static void StartListener(HWND hWnd)
{
    int place = 0;
    while (place < MAX_LISTENER && g_hServerThread[place])
        ++place;
    if (place == MAX_LISTENER)
        return;
    g_sockUdp[place] = INVALID_SOCKET;
    g_ServerThreadCtx.hWnd = hWnd;
    g_ServerThreadCtx.bRunning = 1;
    g_hServerThread[place] = CreateThread(nullptr, 0, ServerListenThread, &g_sockUdp[place], 0, &s_dwThreadId[place]);
}

// ---- End ----------------------------------------------------------------------------------------------------------

static BOOL CALLBACK CloseBoxProc(HWND hWnd, LPARAM)
{
    char className[16] = "";
    GetClassNameA(hWnd, className, sizeof className);
    if (lstrcmpA(className, "#32770") == 0)
        PostMessageA(hWnd, WM_CLOSE, 0, 0);
    return TRUE;
}

// Takes away whatever the listener may be waiting in, until it has ended; it may get into the next wait just after a
// round. Sent messages are served meanwhile: the listener may be broadcasting to our own windows.
static void JoinListener(int place)
{
    MSG message;
    for (;;) {
        CloseOnce(&g_sockUdp[place]);
        EnumThreadWindows(s_dwThreadId[place], CloseBoxProc, 0);
        if (MsgWaitForMultipleObjects(1, &g_hServerThread[place], FALSE, JOIN_ROUND_MS, QS_SENDMESSAGE) == WAIT_FAILED)
            Sleep(JOIN_ROUND_MS);
        if (WaitForSingleObject(g_hServerThread[place], 0) != WAIT_TIMEOUT)
            return;
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
    }
}

void EndServerListeners()
{
    g_ServerThreadCtx.bRunning = 0;
    for (SHAREDSOCKET &sock : g_sockUdp)
        CloseOnce(&sock);
    if (g_hServerEvent)
        SetEvent(g_hServerEvent);
    for (int place = 0; place < MAX_LISTENER; ++place) {
        if (!g_hServerThread[place])
            continue;
        JoinListener(place);
        CloseHandle(g_hServerThread[place]);
        g_hServerThread[place] = nullptr;
    }
    if (g_hServerEvent)
        CloseHandle(g_hServerEvent);
    g_hServerEvent = nullptr;
}

// ---- Window -------------------------------------------------------------------------------------------------------

void InitServerLink()
{
    g_wUdpPort = SERVER_PORT;
    g_wTcpPort = SERVER_PORT;
    g_dwServerAddr = 0x7F000001;
    g_bCommActive = 0;
}

HWND CreateServerLinkWindow(HWND hParent)
{
    g_hServerLinkWnd = CreateWindowExA(0, SERVER_LINK_WINDOW_CLASS, "Lumivane Thread", WS_OVERLAPPEDWINDOW, 0, 0, 200,
                                       100, hParent, nullptr, g_hInstance, nullptr);
    if (g_hServerLinkWnd) {
        ShowWindow(g_hServerLinkWnd, SW_HIDE);
        UpdateWindow(g_hServerLinkWnd);
    }
    return g_hServerLinkWnd;
}

void StopServerLink()
{
    SendMessageA(g_hServerLinkWnd, WM_CLOSE, 0, 0);
}

static LRESULT OnCreate(HWND hWnd)
{
    if (!g_hServerEvent)
        g_hServerEvent = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    StartListener(hWnd);
    return -1; // refuses the window: the listener runs on, out of reach of StopServerLink, and the server is still
               // heard
}

static LRESULT OnClose(HWND hWnd)
{
    EndServerListeners();
    DestroyWindow(hWnd);
    return 0;
}

LRESULT CALLBACK ServerLinkWndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CREATE:
        return OnCreate(hWnd);
    case WM_DESTROY:
        g_hServerLinkWnd = nullptr;
        return 0;
    case WM_CLOSE:
        return OnClose(hWnd);
    }
    return DefWindowProcA(hWnd, message, wParam, lParam);
}
