// Request numbers, and what slot 2 does with packets that answer nobody.
#include "kernel/link/host_packet.h"

#include "support/plugin_session.h"

namespace {

class HostPacketTest : public HostTest {};

const ENDPOINT known = {0x1234, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_DDCCI};

// A packet as the host delivers it, with an empty payload of the given size.
int Receive(int command, const ENDPOINT &source, DWORD id = 1, DWORD payload = 512)
{
    const std::vector<BYTE> zeros(payload);
    HOSTDATA *data = MakeDataBlock(0, zeros.data(), payload, id);
    HOSTPACKET packet = {source, g_MyAddr, 0, 0, data->dwSize, data, static_cast<WORD>(command), 0};
    const int result = PluginReceive(&packet);
    FreeDataBlock(data);
    return result;
}

} // namespace

TEST_F(HostPacketTest, NumbersAreTheLowestFreeAndComeBack)
{
    EXPECT_EQ(NewUniqueID(&known), 1u);
    EXPECT_EQ(NewUniqueID(&known), 2u);
    EXPECT_EQ(NewUniqueID(&known), 3u);
    EXPECT_EQ(DeleteUniqueID(2), 1);
    EXPECT_EQ(DeleteUniqueID(2), 0);
    EXPECT_EQ(NewUniqueID(&known), 2u);
    EXPECT_EQ(DeleteUniqueID(0), 0);
    EXPECT_EQ(DeleteUniqueID(REQUEST_NONE), 0);
    EXPECT_EQ(DeleteUniqueID(0xFFFFFFFF), 0);

    const ENDPOINT unknown = {ENDPOINT_ID_UNKNOWN, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_DDCCI};
    EXPECT_EQ(NewUniqueID(&unknown), 0u);
    EXPECT_EQ(NewUniqueID(&unknown), 0u);

    for (DWORD id = 4; id < REQUEST_COUNT; ++id)
        ASSERT_EQ(NewUniqueID(&known), id);
    EXPECT_EQ(NewUniqueID(&known), REQUEST_NONE);
    HOSTPACKET packet;
    EXPECT_EQ(BuildRequest(&packet, HOST_GET_VCP, 0, nullptr, 0), REQUEST_NONE);
    EXPECT_EQ(BuildRequest(nullptr, HOST_GET_VCP, 0, nullptr, 0), REQUEST_NONE);
    DeleteUniqueID(1999);
    EXPECT_EQ(NewUniqueID(&known), 1999u);
}

TEST_F(HostPacketTest, ARequestIsAddressedAndFilledAsTheHostExpects)
{
    const BYTE payload[] = {1, 2, 3};
    HOSTPACKET packet;
    memset(&packet, 0xCC, sizeof packet);
    ASSERT_EQ(BuildRequest(&packet, HOST_SET_VCP, 0x10, payload, sizeof payload), 1u);
    EXPECT_EQ(packet.src.wID, 7);
    EXPECT_EQ(packet.src.bSubClass, ENDPOINT_SUBCLASS_PLUGIN);
    EXPECT_EQ(packet.dst.wID, 0x1234);
    EXPECT_EQ(packet.dst.bClass, ENDPOINT_CLASS);
    EXPECT_EQ(packet.dst.bSubClass, ENDPOINT_SUBCLASS_DDCCI);
    EXPECT_EQ(packet.wFlags, 0);
    EXPECT_EQ(packet.dwDataSize, 13u);
    const BYTE block[] = {13, 0, 0, 0, 1, 0, 0, 0, 0x10, 0, 1, 2, 3};
    EXPECT_EQ(memcmp(packet.lpData, block, sizeof block), 0);
    FreeDataBlock(packet.lpData);

    // A length without a payload does not count.
    ASSERT_EQ(BuildRequest(&packet, HOST_NOTICE, 3, nullptr, 100), 2u);
    EXPECT_EQ(packet.dwDataSize, 10u);
    FreeDataBlock(packet.lpData);
}

TEST_F(HostPacketTest, WhatSlotTwoTakesAndRefuses)
{
    const ENDPOINT stranger = {0x4321, 9, 9};
    for (const int command : {0, 1, 2, 3, 10, 11, 14, 15, 127, 128})
        EXPECT_EQ(Receive(command, stranger), 1) << command;
    EXPECT_EQ(g_wHostID, 0x1234) << "an ignored packet tells nothing of the host";

    for (const int command : {4, 12, 16, 17, 19, 24, 29, 129, 0x8000, 0xFFFF})
        EXPECT_EQ(Receive(command, stranger), 0) << command;
    EXPECT_EQ(Receive(17, {0x4321, ENDPOINT_CLASS, 0x41}), 0);
    EXPECT_EQ(g_wHostID, 0x1234);

    const ENDPOINT other = {0x4321, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_DDCCI};
    for (const int command : {20, 21, 22, 23, 30, 126, 129, 0xFFFF})
        EXPECT_EQ(Receive(command, other), 0) << command;
    EXPECT_EQ(g_wHostID, 0x4321) << "any packet of the right endpoint tells the host's identifier";
    Receive(17, {ENDPOINT_ID_UNKNOWN, ENDPOINT_CLASS, ENDPOINT_SUBCLASS_DDCCI});
    EXPECT_EQ(g_wHostID, 0x4321);

    EXPECT_EQ(PluginReceive(nullptr), 0);
    HOSTPACKET empty = {other, g_MyAddr, 0, 0, 0, nullptr, HOST_GET_VCP, 0};
    EXPECT_EQ(PluginReceive(&empty), 0);
}

TEST_F(HostPacketTest, AReplyGoesToWhoeverWaitsAndNeverPastItsBuffer)
{
    const HANDLE event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    BYTE buffer[8] = {1, 1, 1, 1, 1, 1, 1, 1};

    EXPECT_EQ(Receive(HOST_GET_VCP, known, 5), 0) << "nobody waits";
    OpenReplySlot(5, event, buffer, 4);
    EXPECT_EQ(Receive(HOST_NOTICE, known, 5), 1);
    EXPECT_EQ(WaitForSingleObject(event, 0), static_cast<DWORD>(WAIT_TIMEOUT)) << "an acknowledgement is no answer";
    EXPECT_EQ(Receive(HOST_GET_VCP, known, 5, 7), 0) << "half an answer";
    EXPECT_EQ(Receive(HOST_GET_VCP, known, REQUEST_COUNT), 0);
    EXPECT_EQ(Receive(HOST_GET_VCP, known, 0x80000005), 0);
    EXPECT_EQ(WaitForSingleObject(event, 0), static_cast<DWORD>(WAIT_TIMEOUT));

    // The late answer of a request for capabilities, on the number of one that waits for four bytes.
    EXPECT_EQ(Receive(HOST_GET_CAPABILITIES, known, 5), 1);
    EXPECT_EQ(WaitForSingleObject(event, 0), static_cast<DWORD>(WAIT_OBJECT_0));
    const BYTE expected[] = {0, 0, 0, 0, 1, 1, 1, 1};
    EXPECT_EQ(memcmp(buffer, expected, sizeof expected), 0);

    CloseReplySlot(5, event);
    memset(buffer, 1, sizeof buffer);
    EXPECT_EQ(Receive(HOST_GET_VCP, known, 5), 0) << "the requester has gone on";
    EXPECT_EQ(buffer[0], 1);
    CloseHandle(event);
}
