#include "runtime/interfaces/communicatorcommand.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>

namespace {

CommunicatorCommand command(int data_type, int count) {
    return CommunicatorCommand(QString::fromLatin1("PA001000"), data_type, count);
}

/** The record as the host's binary has it. */
struct HostCommand {
    const void* table;
    qint32 unused;
    int data_type;
    int count;
    QString address;
};

} // namespace

TEST(CommunicatorCommand, HasTheHostsLayout) {
    const CommunicatorCommand ours = command(3, 7);
    ASSERT_EQ(sizeof ours, sizeof(HostCommand));
    const char* bytes = reinterpret_cast<const char*>(&ours);
    EXPECT_EQ(*reinterpret_cast<const int*>(bytes + offsetof(HostCommand, data_type)), 3);
    EXPECT_EQ(*reinterpret_cast<const int*>(bytes + offsetof(HostCommand, count)), 7);
    EXPECT_EQ(static_cast<const void*>(&ours.address()), bytes + offsetof(HostCommand, address));
}

TEST(CommunicatorCommand, CountsTheBytesOfEveryDataType) {
    EXPECT_EQ(command(CommunicatorCommand::Byte, 5).getDataSize(), 5);
    EXPECT_EQ(command(CommunicatorCommand::Word, 5).getDataSize(), 10);
    EXPECT_EQ(command(CommunicatorCommand::DoubleWord, 5).getDataSize(), 20);
    EXPECT_EQ(command(CommunicatorCommand::QuadWord, 5).getDataSize(), 40);
    EXPECT_EQ(command(CommunicatorCommand::Block, 5).getDataSize(), 5);
    EXPECT_EQ(command(CommunicatorCommand::Block, 0).getDataSize(), 0);
}

TEST(CommunicatorCommand, RoundsBitsUpToBytesAndTakesAtLeastOne) {
    EXPECT_EQ(command(CommunicatorCommand::Bit, 0).getDataSize(), 1);
    EXPECT_EQ(command(CommunicatorCommand::Bit, 1).getDataSize(), 1);
    EXPECT_EQ(command(CommunicatorCommand::Bit, 8).getDataSize(), 1);
    EXPECT_EQ(command(CommunicatorCommand::Bit, 9).getDataSize(), 2);
}

TEST(CommunicatorCommand, TakesOneByteForABitBlockAndForUnknownTypes) {
    for (int data_type : {int(CommunicatorCommand::BitBlock), 7, -1, INT_MAX})
        EXPECT_EQ(command(data_type, 100).getDataSize(), 1) << "type " << data_type;
}

TEST(CommunicatorCommand, WrapsIn32BitsForAbsurdCounts) {
    EXPECT_EQ(command(CommunicatorCommand::Bit, INT_MAX).getDataSize(), 0x10000000);
    EXPECT_EQ(command(CommunicatorCommand::QuadWord, 0x20000001).getDataSize(), 8);
    EXPECT_EQ(command(CommunicatorCommand::Word, INT_MAX).getDataSize(), -2);
}

TEST(CommunicatorCommand, IsKeyedByAddressTypeAndCount) {
    EXPECT_EQ(command(3, 2).stringKey(), QString::fromLatin1("PA001000_3_2"));
    EXPECT_EQ(command(-1, 0).stringKey(), QString::fromLatin1("PA001000_-1_0"));
}

TEST(CommunicatorCommand, KeepsPlaceMarksOfAnAddressInItsKey) {
    const CommunicatorCommand odd(QString::fromLatin1("%2%1%3"), 4, 5);
    EXPECT_EQ(odd.stringKey(), QString::fromLatin1("%2%1%3_4_5"));
}

TEST(CommunicatorCommand, IsTestedForItsKind) {
    for (int data_type = -1; data_type <= 7; ++data_type) {
        const CommunicatorCommand tested = command(data_type, 1);
        EXPECT_EQ(isBitCommand(tested), data_type == 0);
        EXPECT_EQ(isByteCommand(tested), data_type == 1);
        EXPECT_EQ(isWordCommand(tested), data_type == 2);
        EXPECT_EQ(isDoubleWordCommand(tested), data_type == 3);
        EXPECT_EQ(isBlockCommand(tested), data_type == 5);
    }
}
