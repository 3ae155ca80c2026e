#include "runtime/drivers/dmc50v3/transfer/transfertags.h"

#include <gtest/gtest.h>

TEST(TransferTags, OneAndTwoBytesAreSignExtended) {
    EXPECT_EQ(TransferTags::writtenValue(QByteArray("\xFF", 1)), -1);
    EXPECT_EQ(TransferTags::writtenValue(QByteArray("\x7F", 1)), 127);
    EXPECT_EQ(TransferTags::writtenValue(QByteArray("\xFF\xFF", 2)), -1);
    EXPECT_EQ(TransferTags::writtenValue(QByteArray("\x00\x80", 2)), -32768);
    EXPECT_EQ(TransferTags::writtenValue(QByteArray("\xFF\x00", 2)), 255);
}

TEST(TransferTags, ThreeBytesAreZeroExtended) {
    EXPECT_EQ(TransferTags::writtenValue(QByteArray("\xFF\xFF\xFF", 3)), 16777215);
}

TEST(TransferTags, OfFourOrMoreBytesTheFirstFourCount) {
    EXPECT_EQ(TransferTags::writtenValue(QByteArray("\xFE\xFF\xFF\xFF", 4)), -2);
    EXPECT_EQ(TransferTags::writtenValue(QByteArray("\x01\x02\x03\x04\x05\x06", 6)), 0x04030201);
}

TEST(TransferTags, NoDataIsZero) {
    EXPECT_EQ(TransferTags::writtenValue(QByteArray()), 0);
}

TEST(TransferTags, AFlagTakesOnlyTheFirstByte) {
    QByteArray data("\x55\x55", 2);
    TransferTags::storeFlag(true, data);
    EXPECT_EQ(data, QByteArray("\x01\x55", 2));
    TransferTags::storeFlag(false, data);
    EXPECT_EQ(data, QByteArray("\x00\x55", 2));
    QByteArray none;
    TransferTags::storeFlag(true, none);
    EXPECT_TRUE(none.isEmpty());
}

TEST(TransferTags, AValueTakesAsManyBytesAsTheTagHas) {
    QByteArray byte(1, '\0');
    QByteArray word(2, '\0');
    QByteArray double_word(4, '\0');
    QByteArray block(6, '\x55');
    TransferTags::storeValue(-2, byte);
    TransferTags::storeValue(-2, word);
    TransferTags::storeValue(0x12345678, double_word);
    TransferTags::storeValue(100, block);
    EXPECT_EQ(byte, QByteArray("\xFE", 1));
    EXPECT_EQ(word, QByteArray("\xFE\xFF", 2));
    EXPECT_EQ(double_word, QByteArray("\x78\x56\x34\x12", 4));
    EXPECT_EQ(block, QByteArray("\x64\x00\x00\x00\x55\x55", 6));
}
