#include "runtime/drivers/bits.h"

#include <gtest/gtest.h>

namespace {

QByteArray bytes(const char* hex) {
    return QByteArray::fromHex(hex);
}

} // namespace

TEST(WordBits, AreSetClearedAndTestedInEveryWidth) {
    EXPECT_EQ(setBit(static_cast<unsigned short>(0x0001), 15), 0x8001);
    EXPECT_EQ(setBit(static_cast<unsigned char>(0x01), 7), 0x81);
    EXPECT_EQ(setBit(1U, 31), 0x80000001U);
    EXPECT_EQ(clearBit(static_cast<unsigned short>(0xFFFF), 15), 0x7FFF);
    EXPECT_EQ(clearBit(static_cast<unsigned char>(0xFF), 0), 0xFE);
    EXPECT_EQ(clearBit(0xFFFFFFFFU, 31), 0x7FFFFFFFU);
    EXPECT_TRUE(getBit(static_cast<unsigned short>(0x8000), 15));
    EXPECT_TRUE(getBit(static_cast<unsigned char>(0x80), 7));
    EXPECT_TRUE(getBit(0x80000000U, 31));
    EXPECT_FALSE(getBit(0x7FFFFFFFU, 31));
    EXPECT_TRUE(getBit(static_cast<unsigned short>(0x0001), 0));
    EXPECT_FALSE(getBit(static_cast<unsigned short>(0x7FFF), 15));
}

TEST(WordBits, BitsFrom32UpChangeNothingAndTestFalse) {
    for (quint32 n : {32U, 33U, 64U, 0xFFFFFFFFU}) {
        EXPECT_EQ(setBit(0x5AU, n), 0x5AU);
        EXPECT_EQ(clearBit(0x5AU, n), 0x5AU);
        EXPECT_FALSE(getBit(0xFFFFFFFFU, n));
        EXPECT_EQ(setBit(static_cast<unsigned short>(0x5A), n), 0x5A);
        EXPECT_EQ(clearBit(static_cast<unsigned char>(0x5A), n), 0x5A);
    }
}

TEST(WordBits, ResultsAreCutToTheWidthOfTheType) {
    EXPECT_EQ(setBit(static_cast<unsigned short>(0x5A), 16), 0x5A);
    EXPECT_EQ(setBit(static_cast<unsigned char>(0x5A), 8), 0x5A);
    EXPECT_FALSE(getBit(static_cast<unsigned char>(0xFF), 8));
}

TEST(ArrayBits, AreNumberedFromTheLeastSignificantBitOfTheFirstByte) {
    const QByteArray array = bytes("0180");
    EXPECT_TRUE(getBit(array, 0));
    EXPECT_FALSE(getBit(array, 7));
    EXPECT_FALSE(getBit(array, 8));
    EXPECT_TRUE(getBit(array, 15));
    EXPECT_TRUE(getBit(array.constData(), 15));
}

TEST(ArrayBits, BeyondTheEndAreFalse) {
    EXPECT_FALSE(getBit(bytes("FF"), 8));
    EXPECT_FALSE(getBit(QByteArray(), 0));
    const QByteArray first = QByteArray::fromRawData("\xFF\xFF", 1);
    EXPECT_FALSE(getBit(first, 8)); // also where the memory behind it has more
}

TEST(ArrayBits, SettingGrowsTheArrayWithZeroBytes) {
    QByteArray array = bytes("FF");
    setBit(array, 25, true);
    EXPECT_EQ(array, bytes("FF000002"));
    setBit(array, 32, false);
    EXPECT_EQ(array, bytes("FF00000200"));
}

TEST(ArrayBits, SettingTheLastBitOfAByteDoesNotGrowTheArray) {
    QByteArray array = bytes("00");
    setBit(array, 7, true);
    EXPECT_EQ(array, bytes("80"));
}

TEST(ArrayBits, SettingLeavesCopiesOfTheArrayAlone) {
    QByteArray array = bytes("00");
    const QByteArray copy = array;
    setBit(array, 0, true);
    EXPECT_EQ(array, bytes("01"));
    EXPECT_EQ(copy, bytes("00"));
}

TEST(BufferBits, AreSetAndClearedInPlace) {
    uchar buffer[] = {0x00, 0xFF};
    setBit(buffer, 3, true);
    setBit(buffer, 15, false);
    EXPECT_EQ(buffer[0], 0x08);
    EXPECT_EQ(buffer[1], 0x7F);
}

TEST(CopyBits, PutsTheSourceBitsAtTheOffsetAndLeavesTheOthers) {
    QByteArray dst = bytes("FFFF");
    CopyBits(dst, bytes("05"), 6, 4);
    EXPECT_EQ(dst, bytes("7FFD")); // bits 6 to 9 become 1, 0, 1, 0

    uchar buffer[] = {0xFF, 0xFF};
    const uchar source[] = {0x05};
    CopyBits(buffer, source, 6, 4);
    EXPECT_EQ(buffer[0], 0x7F);
    EXPECT_EQ(buffer[1], 0xFD);

    const uchar even[] = {0x0A};
    CopyBits(buffer, even, 0, 4);
    EXPECT_EQ(buffer[0], 0x7A);
}

TEST(CopyBits, MissingSourceBitsCountAsZeroAndTheTargetGrows) {
    QByteArray dst;
    CopyBits(dst, bytes("FF"), 4, 16);
    EXPECT_EQ(dst, bytes("F00F00"));
}

TEST(ExpandBitsToBytes, GivesOneByteABit) {
    EXPECT_EQ(ExpandBitsToBytes(bytes("A001"), 5, 5), bytes("0100010100"));
    EXPECT_EQ(ExpandBitsToBytes(bytes("A001"), 5, 0), QByteArray());
}

TEST(RightShiftNBits, By33OfEightBytesLeavesBit33AtBit0) {
    QByteArray array = bytes("0000000002000000");
    RightShiftNBits(array, 33);
    EXPECT_EQ(array, bytes("0100000000000000"));
}

TEST(RightShiftNBits, RotatesWholeBytesSoThatDroppedOnesComeRound) {
    QByteArray array = bytes("1122334455");
    RightShiftNBits(array, 16);
    EXPECT_EQ(array, bytes("3344551122"));
}

TEST(RightShiftNBits, ShiftsTheRestWithZerosEnteringAtTheTop) {
    QByteArray array = bytes("01FF81");
    RightShiftNBits(array, 4);
    EXPECT_EQ(array, bytes("F01F08"));
}

TEST(RightShiftNBits, DroppedBytesTakePartInTheBitShift) {
    QByteArray array = bytes("FF0080");
    RightShiftNBits(array, 12);
    EXPECT_EQ(array, bytes("00F80F")); // from 00 80 FF
}

TEST(RightShiftNBits, KeepsTheSizeAndTurnsRoundMoreThanOnce) {
    QByteArray array = bytes("1122");
    RightShiftNBits(array, 8 * 3);
    EXPECT_EQ(array, bytes("2211"));

    QByteArray empty;
    RightShiftNBits(empty, 9);
    EXPECT_TRUE(empty.isEmpty());
}

TEST(RightShiftNBits, MovesEveryBitThatIsNotDroppedToItsPlace) {
    const QByteArray image = bytes("D3911E5C7A0240FF");
    for (quint32 n = 0; n < 64; ++n) {
        QByteArray shifted = image;
        RightShiftNBits(shifted, n);
        for (quint32 i = 0; i + n < 64; ++i)
            ASSERT_EQ(getBit(shifted, i), getBit(image, i + n)) << "n " << n << " bit " << i;
    }
}

TEST(FitBitArray, ResizesToWholeBytesAndFillsWithZeros) {
    QByteArray array = bytes("FFFFFF");
    FitBitArray(array, 9);
    EXPECT_EQ(array, bytes("FFFF"));
    FitBitArray(array, 25);
    EXPECT_EQ(array, bytes("FFFF0000"));
    FitBitArray(array, 0);
    EXPECT_TRUE(array.isEmpty());
}

TEST(ClearUnnecessaryBits, ClearsTheBitsAboveTheCountInItsByteOnly) {
    QByteArray array = bytes("FFFFFF");
    clearUnnecessaryBits(array, 11);
    EXPECT_EQ(array, bytes("FF07FF"));
    clearUnnecessaryBits(array, 14);
    EXPECT_EQ(array, bytes("FF07FF"));
    clearUnnecessaryBits(array, 22);
    EXPECT_EQ(array, bytes("FF073F"));
}

TEST(ClearUnnecessaryBits, LeavesWholeBytesAndShorterArraysAlone) {
    QByteArray array = bytes("FFFF");
    clearUnnecessaryBits(array, 8);
    clearUnnecessaryBits(array, 0);
    clearUnnecessaryBits(array, 17);
    EXPECT_EQ(array, bytes("FFFF"));
}
