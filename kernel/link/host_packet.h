// Packets to and from the host: addresses, request numbers, data blocks, and the way of a reply to the request that
// waits for it.
//
// Requests come from the kernel thread, the server-link thread and, inside slot 16, the host's thread; replies come on
// any thread the host likes. A request number belongs to one requester from NewUniqueID to DeleteUniqueID. A reply slot
// is taken for the moment of a copy only, so that no reply writes into a buffer whose requester has gone on.
#pragma once

#include "kernel/base/shared_flag.h"
#include "kernel/link/host_protocol.h"

constexpr DWORD REQUEST_COUNT = 2000;         // numbers 1 to 1999; 0 while the host's address is unknown
constexpr DWORD REQUEST_NONE = REQUEST_COUNT; // no number could be had

struct UNIQUEID {
    SHAREDFLAG bInUse;
    ENDPOINT dst; // whom the request with this number went to
};

struct REPLYSLOT {
    SHAREDFLAG bBusy; // held while the fields below are changed or a reply is copied
    HANDLE hEvent;
    void *lpBuffer; // null: nobody waits on this number
    DWORD dwSize;   // capacity of the buffer
};

extern ENDPOINT g_MyAddr;    // the plug-in's own address, set by slot 0
extern SHAREDWORD g_wHostID; // the host's identifier, learnt from every packet that it sends
extern UNIQUEID g_UniqueID[REQUEST_COUNT];
extern REPLYSLOT g_ReplySlot[REQUEST_COUNT];

// Takes the lowest free number from 1 to 1999. 0, with nothing taken, when the address's identifier is not yet known;
// REQUEST_NONE when all are in use. Two threads never get the same number but 0.
DWORD NewUniqueID(const ENDPOINT *lpDst);

// Gives a number back. Result: 1; 0 for a number that is not taken, such as 0 or REQUEST_NONE.
int DeleteUniqueID(DWORD dwID);

// Allocates a data block: head, then `dwLength` bytes of payload, copied from lpPayload unless that is null (then
// zero). Null when memory is out. Free it with FreeDataBlock.
HOSTDATA *MakeDataBlock(WORD wCode, const void *lpPayload, DWORD dwLength, DWORD dwID);

// Frees a data block; null is allowed. Blocks live on the process heap.
void FreeDataBlock(HOSTDATA *lpData);

// Fills a request header for the host and gives it a data block and a request number. lpPayload may be null, then the
// length does not count. The caller frees the block and gives the number back. Result: the number (0 while the host's
// address is unknown); REQUEST_NONE, with nothing to free, when lpPacket is null or no number or memory could be had.
DWORD BuildRequest(HOSTPACKET *lpPacket, WORD wCommand, WORD wCode, const void *lpPayload, DWORD dwLength);

// Registers where the answer to a request goes: lpBuffer takes at most dwSize bytes, then hEvent is signalled.
void OpenReplySlot(DWORD dwID, HANDLE hEvent, void *lpBuffer, DWORD dwSize);

// Ends that. Afterwards no reply touches the buffer or the event. A slot that another request has taken over in the
// meantime (number 0 is shared while the host's address is unknown) is left to it.
void CloseReplySlot(DWORD dwID, HANDLE hEvent);

// Waits for an answer: at most 10 times 1000 ms, and no longer than the next round once g_bAbort is set.
// Result: 1 = look at the buffer (signalled, or aborted: then the buffer is as it was); 0 = give up.
int WaitReply(HANDLE hEvent);

// Allocates a reply header from us to an address. The caller frees it with FreeReplyPacket, and the block. Null when
// memory is out.
HOSTPACKET *BuildReplyPacket(const ENDPOINT *lpDst, WORD wCommand, WORD wFlags, HOSTDATA *lpData, DWORD dwDataSize);
void FreeReplyPacket(HOSTPACKET *lpPacket);

// Sends a reply to the host's window.
void SendReply(const HOSTPACKET *lpPacket);

// Builds and sends the reply to a command: to the command's sender, with its wCommand and wFlags. lpPayload: dwLength
// bytes. Waits until the host has taken it.
enum class REPLYRESULT { Sent, NoBlock, NoHeader }; // the last two: memory is out, nothing was sent
REPLYRESULT AnswerCommand(const HOSTPACKET *lpCommand, DWORD dwRequestID, WORD wCode, const void *lpPayload,
                          DWORD dwLength);

// Slot 2: a packet from the host. Any thread. Result: 1 when it was taken, 0 when it was refused.
int PluginReceive(void *lpPacket);
