#include "runtime/drivers/byteorder.h"

#include <gtest/gtest.h>

namespace {

QByteArray bytes(const char* hex) {
    return QByteArray::fromHex(hex);
}

} // namespace

TEST(IsBigEndian, IsAlwaysTrueEvenOnThisLittleEndianMachine) {
    EXPECT_TRUE(isBigEndian());
}

TEST(QByteArrayToInt, ReadsUpToFourLittleEndianBytes) {
    EXPECT_EQ(QByteArrayToInt(QByteArray()), 0);
    EXPECT_EQ(QByteArrayToInt(bytes("FE")), 0xFE);
    EXPECT_EQ(QByteArrayToInt(bytes("3412")), 0x1234);
    EXPECT_EQ(QByteArrayToInt(bytes("563412")), 0x123456);
    EXPECT_EQ(QByteArrayToInt(bytes("78563412")), 0x12345678);
    EXPECT_EQ(QByteArrayToInt(bytes("7856341299")), 0x12345678);
    EXPECT_EQ(QByteArrayToInt(bytes("FFFFFFFF")), -1);
}

TEST(QByteArrayToWord, OfTwoFullBytesIs65535) {
    EXPECT_EQ(QByteArrayToWord(bytes("FFFF")), 65535);
    EXPECT_EQ(QByteArrayToWord(bytes("341256")), 0x1234);
    EXPECT_EQ(QByteArrayToWord(bytes("80")), 0x80);
    EXPECT_EQ(QByteArrayToWord(QByteArray()), 0);
}

TEST(QByteArrayToShort, OfTwoFullBytesIsMinusOne) {
    EXPECT_EQ(QByteArrayToShort(bytes("FFFF")), -1);
    EXPECT_EQ(QByteArrayToShort(bytes("0080")), -32768);
    EXPECT_EQ(QByteArrayToShort(bytes("80")), 0x80);
    EXPECT_EQ(QByteArrayToShort(QByteArray()), 0);
}

TEST(NumberImages, AreLittleEndian) {
    EXPECT_EQ(wordToByteArray(0x1234), bytes("3412"));
    EXPECT_EQ(shortToByteArray(-2), bytes("FEFF"));
    EXPECT_EQ(intToByteArray(0x12345678), bytes("78563412"));
    EXPECT_EQ(intToByteArray(-1), bytes("FFFFFFFF"));
}

TEST(NumberImages, ReadBackToTheSameNumber) {
    for (int value : {0, 1, -1, 0x7FFF, -32768, 0x12345678, -2147483647 - 1}) {
        EXPECT_EQ(QByteArrayToInt(intToByteArray(value)), value);
        EXPECT_EQ(QByteArrayToShort(shortToByteArray(short(value))), short(value));
        EXPECT_EQ(QByteArrayToWord(wordToByteArray(quint16(value))), quint16(value));
    }
}

TEST(GetBitData, IsBitZeroOfTheFirstByte) {
    EXPECT_TRUE(getBitData(bytes("0300")));
    EXPECT_FALSE(getBitData(bytes("FEFF")));
    EXPECT_FALSE(getBitData(QByteArray()));
}

TEST(AppendBigEndianUShort, AppendsTheHighByteFirst) {
    QByteArray array = bytes("AA");
    appendBigEndianUShort(array, 0x12F4);
    EXPECT_EQ(array, bytes("AA12F4"));
}

TEST(ByteOrderArrays, ComeFromBigEndianBuffers) {
    const uchar buffer[] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99};
    EXPECT_EQ(fromBigEndianUShortArray(buffer, 2), bytes("22114433"));
    EXPECT_EQ(fromBigEndianULongArray(buffer, 2), bytes("4433221188776655"));
    EXPECT_EQ(fromBigEndianULongArray(buffer, 0), QByteArray());
}

TEST(ByteOrderArrays, MayStartAtAnOddAddress) {
    const uchar buffer[] = {0x11, 0x22, 0x33, 0x44, 0x55};
    EXPECT_EQ(fromBigEndianULongArray(buffer + 1, 1), bytes("55443322"));
}

TEST(ByteOrderArrays, AreTurnedToLittleEndianInPlace) {
    QByteArray words = bytes("1122334455");
    toLittleEndianUShortArray(words);
    EXPECT_EQ(words, bytes("2211443355")); // the odd byte stays

    QByteArray double_words = bytes("112233445566");
    toLittleEndianULongArray(double_words);
    EXPECT_EQ(double_words, bytes("443322115566"));
}

TEST(ByteOrderArrays, ArePaddedWhenTheyAreTurnedToBigEndian) {
    EXPECT_EQ(toBigEndianUShortArray(bytes("112233")), bytes("22110033"));
    EXPECT_EQ(toBigEndianUShortArray(bytes("1122")), bytes("2211"));
    EXPECT_EQ(toBigEndianULongArray(bytes("1122334455")), bytes("4433221100000055"));
    EXPECT_EQ(toBigEndianULongArray(QByteArray()), QByteArray());
}

TEST(ByteOrderArrays, LeaveTheArgumentOfACopyingConversionAlone) {
    const QByteArray array = bytes("11223344");
    EXPECT_EQ(toBigEndianULongArray(array), bytes("44332211"));
    EXPECT_EQ(reverseArray(array), bytes("44332211"));
    EXPECT_EQ(array, bytes("11223344"));
}

TEST(ReverseArray, TurnsAllBytesRound) {
    EXPECT_EQ(reverseArray(bytes("112233")), bytes("332211"));
    EXPECT_EQ(reverseArray(bytes("11")), bytes("11"));
    EXPECT_EQ(reverseArray(QByteArray()), QByteArray());
}

TEST(RotateArray, MovesTheFirstBytesBehindTheOthers) {
    char buffer[] = "abcdefg!";
    RotateArray(buffer, 2, 5);
    EXPECT_STREQ(buffer, "cdefgab!");
    RotateArray(buffer, 0, 7);
    RotateArray(buffer, 7, 0);
    EXPECT_STREQ(buffer, "cdefgab!");
}
