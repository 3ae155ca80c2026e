#include "runtime/drivers/padding.h"

#include "runtime/interfaces/communicatorcommand.h"

#include <gtest/gtest.h>

namespace {

CommunicatorCommand command(int data_type, int count) {
    return CommunicatorCommand(QString::fromLatin1("PA0011000"), data_type, count);
}

QByteArray bytes(const char* hex) {
    return QByteArray::fromHex(hex);
}

} // namespace

TEST(GetSafeDataLen, CountsWholeBytesOfEveryDataType) {
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::Bit, 0)), 0);
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::Bit, 9)), 2);
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::BitBlock, 0)), 0);
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::BitBlock, 8)), 1);
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::Byte, 3)), 3);
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::Block, 3)), 3);
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::Word, 3)), 6);
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::DoubleWord, 3)), 12);
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::QuadWord, 3)), 24);
    EXPECT_EQ(GetSafeDataLen(command(7, 3)), 0);
    EXPECT_EQ(GetSafeDataLen(command(-1, 3)), 0);
}

TEST(GetSafeDataLen, WrapsIn32BitsForAbsurdCounts) {
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::QuadWord, 0x20000001)), 8);
    EXPECT_EQ(GetSafeDataLen(command(CommunicatorCommand::Bit, -9)), 0);
}

TEST(ToSafeData, CutsAndPadsToTheCommandsSize) {
    EXPECT_EQ(ToSafeData(command(CommunicatorCommand::Word, 1), bytes("112233")), bytes("1122"));
    EXPECT_EQ(ToSafeData(command(CommunicatorCommand::Word, 2), bytes("112233")),
              bytes("11223300"));
    EXPECT_EQ(ToSafeData(command(CommunicatorCommand::Word, 1), bytes("1122")), bytes("1122"));
    EXPECT_EQ(ToSafeData(command(CommunicatorCommand::Byte, -1), bytes("11")), QByteArray());
}

TEST(To16bitsData, PadsOddLengths) {
    EXPECT_EQ(To16bitsData(bytes("11")), bytes("1100"));
    EXPECT_EQ(To16bitsData(bytes("1122")), bytes("1122"));
    EXPECT_EQ(To16bitsData(QByteArray()), QByteArray());
}

TEST(To32bitsData, PadsToAMultipleOfFour) {
    EXPECT_EQ(To32bitsData(bytes("11")), bytes("11000000"));
    EXPECT_EQ(To32bitsData(bytes("11223344")), bytes("11223344"));
    EXPECT_EQ(To32bitsData(bytes("1122334455")), bytes("1122334455000000"));
    EXPECT_EQ(To32bitsData(QByteArray()), QByteArray());
}

TEST(To64bitsData, PadsOneToThreeBytesToFourAndLeavesFiveToSevenAlone) {
    const int padded_size[] = {0, 4, 4, 4, 4, 5, 6, 7, 8, 12, 12, 12, 12, 13, 14, 15, 16};
    for (int size = 0; size <= 16; ++size) {
        const QByteArray data(size, 'x');
        EXPECT_EQ(To64bitsData(data), data.leftJustified(padded_size[size], '\0'))
            << "size " << size;
    }
}
