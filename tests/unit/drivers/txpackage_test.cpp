#include "runtime/drivers/txpackage.h"

#include <gtest/gtest.h>

namespace {

QByteArray bytes(const char* hex) {
    return QByteArray::fromHex(hex);
}

QList<int> sizes(int first, int second, int third) {
    return QList<int>() << first << second << third;
}

} // namespace

TEST(TxPackage, StartsEmpty) {
    const TxPackage package;
    EXPECT_EQ(package.numberOfSections(), 0);
    EXPECT_EQ(package.totalSize(), 0);
    EXPECT_EQ(package.runningTotal(), 0);
    EXPECT_TRUE(package.byteArrayData().isEmpty());
    EXPECT_TRUE(TxPackage::EmptyPackageSizeList().isEmpty());
}

TEST(TxPackage, RemembersTheSectionsItIsBuiltFrom) {
    TxPackage package;
    EXPECT_TRUE(package.appendByte(0x02));
    EXPECT_TRUE(package.appendWord(0x1234));
    EXPECT_TRUE(package.appendDWord(0x89ABCDEF));
    EXPECT_TRUE(package.appendSection(bytes("AABBCC")));
    EXPECT_TRUE(package.appendSection(QByteArray()));
    EXPECT_TRUE(package.appendByte2Ascii(0xA5));

    EXPECT_EQ(package.byteArrayData(), bytes("02 3412 EFCDAB89 AABBCC 4135"));
    EXPECT_EQ(package.numberOfSections(), 6);
    EXPECT_EQ(package.totalSize(), 12);
    EXPECT_EQ(package.runningTotal(), 12);
    EXPECT_EQ(package.sectionStartIndex(0), 0);
    EXPECT_EQ(package.sectionStartIndex(3), 7);
    EXPECT_EQ(package.sectionSize(2), 4);
    EXPECT_EQ(package.dataAt(2), bytes("EFCDAB89"));
    EXPECT_EQ(package.sectionSize(4), 0);
    EXPECT_EQ(package.dataAt(5), QByteArray("A5"));
    EXPECT_EQ(package.data()[1], 0x34);
}

TEST(TxPackage, AppendsTextAsLatin1) {
    TxPackage package;
    EXPECT_TRUE(package.appendString(QString::fromLatin1("\xC4"
                                                         "b")));
    EXPECT_EQ(package.byteArrayData(), bytes("C462"));
    EXPECT_EQ(package.sectionSize(0), 2);
}

TEST(TxPackage, AppendsTheSumOfTheBytesSoFar) {
    TxPackage package;
    package.appendSection(bytes("8091"));
    EXPECT_TRUE(package.appendLRCByte());
    EXPECT_EQ(package.byteArrayData(), bytes("809111"));
    EXPECT_EQ(package.sectionSize(1), 1);
}

TEST(TxPackage, AppendsTheSumAsTwoDigits) {
    TxPackage package;
    package.appendByte(0x80);
    package.appendByte(0x90);
    EXPECT_TRUE(package.appendLRCAscii());
    EXPECT_EQ(package.dataAt(2), QByteArray("10"));
}

TEST(TxPackage, AppendsUpperCaseDigitsWithALeadingZero) {
    TxPackage package;
    package.appendByte2Ascii(0x0B);
    EXPECT_EQ(package.byteArrayData(), QByteArray("0B"));
}

TEST(TxPackage, CalculatesTheExclusiveOrWithoutTheLastBytes) {
    EXPECT_EQ(TxPackage::calculateFCS(bytes("0F3381"), 0), 0x0F ^ 0x33 ^ 0x81);
    EXPECT_EQ(TxPackage::calculateFCS(bytes("0F3381"), 1), 0x0F ^ 0x33);
    EXPECT_EQ(TxPackage::calculateFCS(bytes("0F3381"), 3), 0);
    EXPECT_EQ(TxPackage::calculateFCS(bytes("0F3381"), 4), 0);
}

TEST(TxPackage, AppendsTheExclusiveOrOfTheWholePackageWhateverTheArgument) {
    for (int argument : {-1, 0, 1, 2, 100}) {
        TxPackage package;
        package.appendSection(bytes("0F3381"));
        EXPECT_TRUE(package.appendFCSAscii(argument));
        EXPECT_EQ(package.dataAt(1), QByteArray("BD"));
    }
}

TEST(TxPackage, HasNoSectionAtItsNumberOfSections) {
    TxPackage package;
    package.appendByte(1);
    EXPECT_TRUE(package.validSectionNumber(0));
    for (int i : {-1, 1, 2}) {
        EXPECT_FALSE(package.validSectionNumber(i));
        EXPECT_EQ(package.sectionStartIndex(i), -1);
        EXPECT_EQ(package.sectionSize(i), 0);
        EXPECT_TRUE(package.dataAt(i).isEmpty());
    }
}

TEST(TxPackage, ReplacingTheDataLeavesTheSections) {
    TxPackage package;
    package.appendWord(0);
    package.appendByte(0);
    package.setData(bytes("11223344"));
    EXPECT_EQ(package.dataAt(1), bytes("33"));
    EXPECT_EQ(package.totalSize(), 4);
    EXPECT_EQ(package.runningTotal(), 3);

    const uchar raw[] = {0x55, 0x66, 0x77};
    package.setData(raw, 2);
    EXPECT_EQ(package.byteArrayData(), bytes("5566"));
    EXPECT_EQ(package.numberOfSections(), 2);
}

TEST(TxPackage, TakesANegativeSizeFromTheFirstByteOfTheNamedSection) {
    TxPackage package;
    package.setData(bytes("AA BB 03 112233 FF"));
    package.setSectionSize(QList<int>() << 2 << 1 << -1 << 1);
    EXPECT_EQ(package.sectionSize(2), 3);
    EXPECT_EQ(package.dataAt(2), bytes("112233"));
    EXPECT_EQ(package.sectionStartIndex(3), 6);
    EXPECT_EQ(package.dataAt(3), bytes("FF"));
}

TEST(TxPackage, LetsASectionBeginWithItsOwnSize) {
    TxPackage package;
    package.setData(bytes("AA 02BB CC"));
    package.setSectionSize(sizes(1, -1, 1));
    EXPECT_EQ(package.dataAt(1), bytes("02BB"));
    EXPECT_EQ(package.dataAt(2), bytes("CC"));
}

TEST(TxPackage, CountsASizeThatCannotBeKnownAsZero) {
    TxPackage package;
    package.setData(bytes("0101"));
    package.setSectionSize(sizes(-1, -2, -100)); // each would need its own size first
    EXPECT_EQ(package.sectionSize(0), 0);
    EXPECT_EQ(package.sectionSize(1), 0);
    EXPECT_EQ(package.sectionSize(2), 0);

    package.setSectionSize(sizes(2, 0, -2)); // the byte lies behind the data
    EXPECT_EQ(package.sectionSize(2), 0);
}

TEST(TxPackage, IsClearedCompletely) {
    TxPackage package;
    package.appendDWord(1);
    package.clearAll();
    EXPECT_EQ(package.totalSize(), 0);
    EXPECT_EQ(package.numberOfSections(), 0);
    EXPECT_EQ(package.runningTotal(), 0);
}

TEST(TxPackage, PrintsItsBytesInHexadecimalAndAsText) {
    TxPackage package;
    package.appendString(QString::fromLatin1("A0"));
    package.appendByte(0x0D);
    EXPECT_EQ(package.toString(), QString::fromLatin1("(0X41 0X30 0Xd ) : A0\r"));
}
