// The contract between the host application and the plug-in: the export, the slot table, the packets and their numbers.
// Layouts only, no code: the host and its stand-ins include this header and nothing else of the plug-in.
//
// Every field is little-endian; both sides are 32-bit and live in one process, so pointers travel as they are.
#pragma once

#include <windows.h>

#include <cstddef>

#include "kernel/link/host_sizes.h"

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
    PLUGIN_SLOT_INIT = 0,           // packet with the host's window; starts the kernel thread
    PLUGIN_SLOT_INFO = 1,           // packet, filled in with a PLUGININFO
    PLUGIN_SLOT_RECEIVE = 2,        // packet: a reply or a notice from the host
    PLUGIN_SLOT_OPEN_PANEL = 3,     // no argument
    PLUGIN_SLOT_SEND_IDENTITY = 10, // no argument
    PLUGIN_SLOT_STOP = 15,          // no argument; the plug-in may be unloaded afterwards
    PLUGIN_SLOT_COMMAND = 16,       // packet: a command from the host
    PLUGIN_SLOT_COUNT = 18,         // the last slot is null
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

// The data block: a fixed head of 10 bytes with the payload directly behind it. Blocks live on the process heap
// (HeapAlloc of GetProcessHeap): one of them, that of PLUGIN_COMMAND_SHUT_DOWN, is released by its receiver.
#pragma pack(push, 1)
struct HOSTDATA {
    DWORD dwSize;      // 10 + payload length
    DWORD dwRequestID; // request number, echoed in the reply
    WORD wCode;        // VCP code, notice code or host command number, by command
};
#pragma pack(pop)
static_assert(sizeof(HOSTDATA) == 10);

// The payload of a block, at its byte 10 (not aligned).
inline BYTE *HostPayload(HOSTDATA *lpData)
{
    return reinterpret_cast<BYTE *>(lpData + 1);
}
inline const BYTE *HostPayload(const HOSTDATA *lpData)
{
    return reinterpret_cast<const BYTE *>(lpData + 1);
}

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
// 32-bit word. The reply has the same command and request number, comes from the host's DDC/CI endpoint, and its
// payload is what stands on the right.
enum : WORD {
    HOST_NOTICE = 16,            // no reply; HOSTDATA::wCode says which
    HOST_SET_VCP = 17,           // code = VCP code; value in a 32-bit word      -> 32-bit result
    HOST_SET_INPUT_LIST = 18,    // 16 32-bit flags, one per input source value  -> 32-bit result
    HOST_SET_DIRECTLINK = 19,    // monitor or -1; on = 1, off = 0               -> 32-bit result
    HOST_GET_VCP = 24,           // code = VCP code                              -> current value, maximum: two words
    HOST_GET_MONITOR_COUNT = 26, // no payload                                   -> 32-bit count
    HOST_GET_MONITOR_NAME = 27,  //                                              -> 12 bytes, zero-padded
    HOST_GET_CAPABILITIES = 28,  //                                              -> 512 bytes, zero-padded
    HOST_GET_EDID = 29,          //                                              -> 128 bytes: the base block
};

// HOSTDATA::wCode of HOST_NOTICE.
enum : WORD {
    HOST_NOTICE_STOPPED = 3,  // the plug-in has stopped
    HOST_NOTICE_STARTING = 8, // before the monitors are enumerated
    HOST_NOTICE_STARTED = 9,  // monitors were found
};

// ---- Commands of the host -----------------------------------------------------------------------------------------

// Slot 16 carries out a command of the host. HOSTDATA::wCode is its number; HOSTPACKET::wCommand is whatever the host
// likes. A reply goes to the sender's address by WM_HOST_REPLY, with wCommand, wFlags and request number of the
// command. Monitor commands act on the monitor that is selected in the panel; writes act on all monitors while the
// all-monitors mode is on. A block that is shorter than its command's payload is ignored, like an unknown number.
//
// The slot returns 1, or 0 for a packet without a block or with sizes that disagree. It waits for the host's answers to
// the requests that a command leads to, so the host must be able to deliver them meanwhile.
enum : WORD {
    // HOSTCOLORS, filled in place in the host's own block. Reply: PLUGIN_REPLY_RECORD, 140 zero bytes, which only say
    // that the block is filled.
    PLUGIN_COMMAND_READ_COLORS = 1,
    // HOSTCOLORS. Reply: PLUGIN_REPLY_RESULT, always 0.
    PLUGIN_COMMAND_WRITE_COLORS = 2,
    // No payload, no action. Reply: its own code, 256 zero bytes.
    PLUGIN_COMMAND_EMPTY_RECORD = 4,
    // HOSTVCP. Reply: its own code, the HOSTVCP with its answer, which the host's own block carries, too.
    PLUGIN_COMMAND_READ_VCP = 19,
    PLUGIN_COMMAND_WRITE_VCP = 20,
    // No payload. Switches the power of all monitors by a broadcast. Reply: PLUGIN_REPLY_RESULT.
    PLUGIN_COMMAND_POWER_OFF = 32,
    PLUGIN_COMMAND_POWER_ON = 33,
    // No payload. Reply: its own code, the count in a 32-bit word; the request number is the command block's dwSize.
    PLUGIN_COMMAND_MONITOR_COUNT = 37,
    // No payload. Shuts the PC down. No reply. The plug-in releases the block, which must be on the process heap.
    PLUGIN_COMMAND_SHUT_DOWN = 39,
    // No payload, no action, no reply.
    PLUGIN_COMMAND_NONE = 40,
    // No payload. Reply: PLUGIN_REPLY_RECORD, HOSTIDENTITY.
    PLUGIN_COMMAND_IDENTITY = 128,
    // No payload. Lets the user change the names of the identity. Reply: PLUGIN_REPLY_RESULT.
    PLUGIN_COMMAND_ALLOW_NAME_CHANGE = 130,
    // A 32-bit word: 1 = allow the Display control panel, else forbid it. Reply: PLUGIN_REPLY_RESULT, 0 when the policy
    // was as asked already.
    PLUGIN_COMMAND_DISPLAY_CPL = 131,
};

// HOSTDATA::wCode of the replies that do not carry their command's number.
enum : WORD {
    PLUGIN_REPLY_RESULT = 2,   // a 16-bit word: 1 = done, 0 = not
    PLUGIN_REPLY_RECORD = 128, // 140 bytes
};

constexpr DWORD PLUGIN_EMPTY_RECORD_SIZE = 256;

// Colour settings of a monitor. A field of all ones is left alone, but for the colour preset of a write.
#pragma pack(push, 2)
struct HOSTCOLORS {
    DWORD dwEco;     // 0 off, 1 on; on a write, any other value leaves ECO mode and brightness alone
    WORD wBrightEco; // brightness while ECO is on
    WORD wBright;    // brightness while ECO is off
    WORD wContrast;
    WORD wRed; // the three gains are read only
    WORD wGreen;
    WORD wBlue;
    WORD wColorPreset; // value of VCP 0x14; on a write, all ones is written, too
};
#pragma pack(pop)
static_assert(sizeof(HOSTCOLORS) == 18);
static_assert(offsetof(HOSTCOLORS, wBrightEco) == 4 && offsetof(HOSTCOLORS, wContrast) == 8 &&
              offsetof(HOSTCOLORS, wRed) == 10 && offsetof(HOSTCOLORS, wColorPreset) == 16);

constexpr DWORD HOSTCOLORS_KEEP_ECO = 0xFFFFFFFF;
constexpr WORD HOSTCOLORS_KEEP = 0xFFFF;

// A VCP feature. The code 0xF2, the lock of the front-panel buttons, is written by operation and mask.
struct HOSTVCP {
    union {
        LONG nMaximum;   // answer: the maximum; -1 when it could not be read
        LONG nOperation; // write of 0xF2: HOSTVCP_UNLOCK and so on
    };
    union {
        LONG nValue; // value to write; answer: the current value, -1 when it could not be read
        LONG nMask;  // write of 0xF2: bits of the buttons
    };
    BYTE bCode;
    BYTE bReserved[3];
};
static_assert(sizeof(HOSTVCP) == 12);
static_assert(offsetof(HOSTVCP, nValue) == 4 && offsetof(HOSTVCP, bCode) == 8);

// Operations on the lock mask. Others do nothing.
enum : LONG {
    HOSTVCP_UNLOCK = 0, // toggles the bits of the mask
    HOSTVCP_LOCK = 1,   // adds them
    HOSTVCP_SET = 2,    // the mask as it is
};

// Who this PC is to a management server. Names are zero-terminated and zero-filled.
constexpr DWORD HOST_IDENTITY_NAME_SIZE = 64;
constexpr DWORD HOST_IDENTITY_NET_SIZE = 10;
struct HOSTIDENTITY {
    char szUserName[HOST_IDENTITY_NAME_SIZE];
    char szGroupName[HOST_IDENTITY_NAME_SIZE];
    BYTE bNetSpec[HOST_IDENTITY_NET_SIZE]; // the head of the host's own setting "MyNetSpec"
    WORD wReserved;
};
static_assert(sizeof(HOSTIDENTITY) == 140);
static_assert(offsetof(HOSTIDENTITY, szGroupName) == 64 && offsetof(HOSTIDENTITY, bNetSpec) == 128);

// Slot 10 sends a HOSTIDENTITY like the reply to a command with this sender, these header fields and request number 0.
constexpr ENDPOINT PLUGIN_IDENTITY_RECEIVER = {ENDPOINT_ID_UNKNOWN, 4, 1};
constexpr WORD PLUGIN_IDENTITY_COMMAND = 16;
constexpr WORD PLUGIN_IDENTITY_FLAGS = 1;
