#include "runtime/drivers/addresstext.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

} // namespace

TEST(ExtractPrefixSymbol, IsTheLeadingRunOfLettersAndUnderscores) {
    EXPECT_EQ(ExtractPrefixSymbol(text("D100")), text("D"));
    EXPECT_EQ(ExtractPrefixSymbol(text("VVT_ENABLE0")), text("VVT_ENABLE"));
    EXPECT_EQ(ExtractPrefixSymbol(text("_x-y")), text("_x"));
    EXPECT_EQ(ExtractPrefixSymbol(text("ABC")), text("ABC"));
    EXPECT_TRUE(ExtractPrefixSymbol(text("1A")).isEmpty());
    EXPECT_TRUE(ExtractPrefixSymbol(QString()).isEmpty());
}

TEST(ExtractPLCDeviceAddress, SkipsThePrefixInEveryBase) {
    EXPECT_EQ(ExtractPLCDeviceAddress(text("D100"), 10), 100);
    EXPECT_EQ(ExtractPLCDeviceAddress(text("X1F"), 16), 31);
    EXPECT_EQ(ExtractPLCDeviceAddress(text("Xaf"), 16), 0xAF);
    EXPECT_EQ(ExtractPLCDeviceAddress(text("Y9017"), 8), 017);
    EXPECT_EQ(ExtractPLCDeviceAddress(text("Y8017"), 8), 017);
    EXPECT_EQ(ExtractPLCDeviceAddress(text("Xa100"), 10), 100);
}

TEST(ExtractPLCDeviceAddress, ReadsAPrefixThatIsAHexadecimalDigitAsPartOfTheNumber) {
    EXPECT_EQ(ExtractPLCDeviceAddress(text("D100"), 16), 0xD100);
}

TEST(ExtractPLCDeviceAddress, OfTextThatDoesNotConvertIsZero) {
    EXPECT_EQ(ExtractPLCDeviceAddress(text("D10.5"), 10), 0);
    EXPECT_EQ(ExtractPLCDeviceAddress(text("X18"), 8), 0);
    EXPECT_EQ(ExtractPLCDeviceAddress(text("XYZ"), 16), 0);
    EXPECT_EQ(ExtractPLCDeviceAddress(QString(), 10), 0);
    EXPECT_EQ(ExtractPLCDeviceAddress(text("D99999999999"), 10), 0);
}

TEST(ExtractPLCDeviceAddress, InAnyOtherBaseIsMinusOne) {
    for (int base : {-1, 0, 2, 9, 11, 36})
        EXPECT_EQ(ExtractPLCDeviceAddress(text("D100"), base), -1) << "base " << base;
}

TEST(ExtractPLCDeviceAddress, WorksOnBytesAndOnTheLatin1BytesOfText) {
    EXPECT_EQ(ExtractPLCDeviceAddress(QByteArray("D100"), 10), 100);
    EXPECT_EQ(ExtractPLCDeviceAddress(QByteArray("D100"), 7), -1);
    EXPECT_EQ(ExtractPLCDeviceAddress(text("\xC4"
                                           "12"),
                                      10),
              12);
}

TEST(HexToUInt, ReadsAtMostTheGivenCharacters) {
    EXPECT_EQ(HexToUInt("1F", 1), 1U);
    EXPECT_EQ(HexToUInt("1F", 2), 0x1FU);
    EXPECT_EQ(HexToUInt("abCD", 4), 0xABCDU);
    EXPECT_EQ(HexToUInt("FFFFFFFF", 8), 0xFFFFFFFFU);
}

TEST(HexToUInt, StopsAtANul) {
    EXPECT_EQ(HexToUInt("12\0"
                        "34",
                        5),
              0x12U);
    EXPECT_EQ(HexToUInt("1F", 100), 0x1FU);
}

TEST(HexToUInt, SkipsALeadingPrefix) {
    EXPECT_EQ(HexToUInt("0x1f", 4), 0x1FU);
    EXPECT_EQ(HexToUInt("0X1f", 4), 0x1FU);
    EXPECT_EQ(HexToUInt("01f", 3), 0x1FU);
    EXPECT_EQ(HexToUInt("0", 1), 0U);
    EXPECT_EQ(HexToUInt("0x", 2), 0U);
    EXPECT_EQ(HexToUInt("0x1f", 3), 1U);
}

TEST(HexToUInt, IsZeroWhenAnyCharacterIsNoHexadecimalDigit) {
    EXPECT_EQ(HexToUInt("0x1g", 4), 0U);
    EXPECT_EQ(HexToUInt("x12", 3), 0U);
    EXPECT_EQ(HexToUInt("00x1", 4), 0U);
    EXPECT_EQ(HexToUInt("1x5", 3), 0U);
    EXPECT_EQ(HexToUInt(" 1", 2), 0U);
    EXPECT_EQ(HexToUInt("-1", 2), 0U);
    for (int c = 1; c < 256; ++c) {
        const char digits[] = {'1', char(c), '\0'};
        const bool is_digit = QByteArray("0123456789abcdefABCDEF").contains(char(c));
        EXPECT_EQ(HexToUInt(digits, 2) != 0, is_digit) << "character " << c;
    }
}

TEST(HexToUInt, IsZeroForAnEmptyTextAndALengthBelowOne) {
    EXPECT_EQ(HexToUInt("", 4), 0U);
    EXPECT_EQ(HexToUInt("1F", 0), 0U);
    EXPECT_EQ(HexToUInt("1F", -1), 0U);
}

TEST(DevStrToHmiPort, CountsSerialPortsFrom1000) {
    EXPECT_EQ(DevStrToHmiPort(text("COM1")), 1000);
    EXPECT_EQ(DevStrToHmiPort(text("COM2")), 1001);
    EXPECT_EQ(DevStrToHmiPort(text("/dev/ttyUSB10")), 1009);
    EXPECT_EQ(DevStrToHmiPort(text("COM0")), 999);
    EXPECT_EQ(DevStrToHmiPort(text("COM9")), 1008);
    EXPECT_EQ(DevStrToHmiPort(text("P1")), 1000);
    EXPECT_EQ(DevStrToHmiPort(text("COM:1")), 1000); // the colon is no digit
}

TEST(DevStrToHmiPort, IsTheSameForEveryEthernetDevice) {
    EXPECT_EQ(DevStrToHmiPort(text("ETHERNET1")), 2000);
    EXPECT_EQ(DevStrToHmiPort(text("ethernet")), 2000);
}

TEST(DevStrToHmiPortDeathTest, WithoutTrailingDigitsEndsTheProgram) {
    const char condition[] = "\"i >= 0 && \\(i\\+1\\) < dev_str.size\\(\\)\"";
    EXPECT_DEATH(DevStrToHmiPort(text("COM")), condition);
    EXPECT_DEATH(DevStrToHmiPort(text("COM1 ")), condition);
    EXPECT_DEATH(DevStrToHmiPort(QString()), condition);
}

TEST(DevStrToHmiPortDeathTest, OfDigitsOnlyEndsTheProgram) {
    EXPECT_DEATH(DevStrToHmiPort(text("12")), "\"i >= 0 && \\(i\\+1\\) < dev_str.size\\(\\)\"");
}

TEST(DumpByteArray, ListsTheBytesInShortHexadecimalAndAsText) {
    EXPECT_EQ(dumpByteArray(QByteArray("\x02"
                                       "A\xFF")),
              text("(0X2 0X41 0Xff ) : \x02"
                   "A\xFF"));
    EXPECT_EQ(dumpByteArray(QByteArray()), text("() : "));
}
