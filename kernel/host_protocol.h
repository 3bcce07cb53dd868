// The contract between the host application and the plug-in: the export, the slot table, the packets and their numbers.
// Layouts only, no code: the host and its stand-ins include this header and nothing else of the plug-in.
//
// Every field is little-endian; both sides are 32-bit and live in one process, so pointers travel as they are.
#pragma once

#include <windows.h>

#include <cstddef>

static_assert(sizeof(void *) == 4, "host and plug-in exchange 32-bit pointers");

// ---- Export and slot table ----------------------------------------------------------------------------------------

// A slot takes one pointer (a HOSTPACKET or nothing that it reads) and returns a 32-bit integer; cdecl.
typedef int (*PLUGINSLOT)(void *);

// Argument of GetPluginFunc, filled by the plug-in.
struct PLUGINFUNC {
    DWORD nCount;                  // number of slots: always PLUGIN_SLOT_COUNT
    const PLUGINSLOT *lpFuncTable; // the slots; valid while the library is loaded
};

// The one export, under this undecorated name. Returns 1. May be called at any time.
extern "C" int GetPluginFunc(PLUGINFUNC *lpFunc);
typedef int (*GETPLUGINFUNC)(PLUGINFUNC *);

enum : int {
    PLUGIN_SLOT_INIT = 0,          // packet with the host's window; starts the kernel thread
    PLUGIN_SLOT_INFO = 1,          // packet, filled in with a PLUGININFO
    PLUGIN_SLOT_RECEIVE = 2,       // packet: a reply or a notice from the host
    PLUGIN_SLOT_OPEN_PANEL = 3,    // no argument
    PLUGIN_SLOT_SEND_IDENTITY = 10, // no argument
    PLUGIN_SLOT_STOP = 15,         // no argument; the plug-in may be unloaded afterwards
    PLUGIN_SLOT_COMMAND = 16,      // packet: a command from the host
    PLUGIN_SLOT_COUNT = 18,        // the last slot is null
};

// What slot 1 points the packet's data pointer at.
struct PLUGININFO {
    const char *lpszTitle;
    const char *lpszDescription; // Shift-JIS, lines joined by CR LF
    const char *lpszVersion;
    WORD wReserved[2];
};
static_assert(sizeof(PLUGININFO) == 16);

// ---- Packets ------------------------------------------------------------------------------------------------------

// Who sends or receives a packet.
struct ENDPOINT {
    WORD wID; // ENDPOINT_ID_UNKNOWN = not yet known
    BYTE bClass;
    BYTE bSubClass;
};
static_assert(sizeof(ENDPOINT) == 4);

constexpr WORD ENDPOINT_ID_UNKNOWN = 0xFFFF;
constexpr BYTE ENDPOINT_CLASS = 2;
constexpr BYTE ENDPOINT_SUBCLASS_PLUGIN = 1;
constexpr BYTE ENDPOINT_SUBCLASS_DDCCI = 0x40; // the host's DDC/CI side

// The data block: a fixed head of 10 bytes with the payload directly behind it.
#pragma pack(push, 1)
struct HOSTDATA {
    DWORD dwSize;      // 10 + payload length
    DWORD dwRequestID; // request number, echoed in the reply
    WORD wCode;        // VCP code, notice code or host command number, by command
};
#pragma pack(pop)
static_assert(sizeof(HOSTDATA) == 10);

// The payload of a block, at its byte 10 (not aligned).
inline BYTE *HostPayload(HOSTDATA *lpData) { return reinterpret_cast<BYTE *>(lpData + 1); }
inline const BYTE *HostPayload(const HOSTDATA *lpData) { return reinterpret_cast<const BYTE *>(lpData + 1); }

// The header. Its receiver copies what it needs from header and block before it returns: the sender frees both then.
struct HOSTPACKET {
    ENDPOINT src;
    ENDPOINT dst;
    WORD wFlags; // 0 in requests and notices; a reply carries those of its command
    WORD wReserved1;
    DWORD dwDataSize; // equals lpData->dwSize
    HOSTDATA *lpData; // slot 0 and slot 1 use their own block layouts here
    WORD wCommand;
    WORD wReserved2;
};
static_assert(sizeof(HOSTPACKET) == 24);
static_assert(offsetof(HOSTPACKET, dwDataSize) == 12 && offsetof(HOSTPACKET, lpData) == 16 &&
              offsetof(HOSTPACKET, wCommand) == 20);

// Messages sent to the host's window with a HOSTPACKET as second parameter; the first is 0.
constexpr UINT WM_HOST_PACKET = 42468; // request or notice of the plug-in
constexpr UINT WM_HOST_REPLY = 42469;  // reply of the plug-in to a command of the host

// Requests of the plug-in (HOSTPACKET::wCommand). Each payload, but for the count's, begins with the monitor index as a
// 32-bit word. The reply has the same command and request number, comes from the host's DDC/CI endpoint, and its payload
// is what stands on the right.
enum : WORD {
    HOST_NOTICE = 16,             // no reply; HOSTDATA::wCode says which
    HOST_SET_VCP = 17,            // code = VCP code; value in a 32-bit word      -> 32-bit result
    HOST_SET_INPUT_LIST = 18,     // 16 32-bit flags, one per input source value  -> 32-bit result
    HOST_SET_DIRECTLINK = 19,     // monitor or -1; on = 1, off = 0               -> 32-bit result
    HOST_GET_VCP = 24,            // code = VCP code                              -> current value, maximum: two words
    HOST_GET_MONITOR_COUNT = 26,  // no payload                                   -> 32-bit count
    HOST_GET_MONITOR_NAME = 27,   //                                              -> 12 bytes, zero-padded
    HOST_GET_CAPABILITIES = 28,   //                                              -> 512 bytes, zero-padded
    HOST_GET_EDID = 29,           //                                              -> 128 bytes: the base block
};

constexpr DWORD HOST_NAME_SIZE = 12;
constexpr DWORD HOST_CAPABILITIES_SIZE = 512;
constexpr DWORD HOST_EDID_SIZE = 128;
constexpr DWORD HOST_INPUT_COUNT = 16;

// HOSTDATA::wCode of HOST_NOTICE.
enum : WORD {
    HOST_NOTICE_STOPPED = 3,   // the plug-in has stopped
    HOST_NOTICE_STARTING = 8,  // before the monitors are enumerated
    HOST_NOTICE_STARTED = 9,   // monitors were found
};
