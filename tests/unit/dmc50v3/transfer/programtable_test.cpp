#include "runtime/base/qtcompat.h"
#include "runtime/drivers/dmc50v3/transfer/programtable.h"
#include "tests/support/goldenprograms.h"

#include <gtest/gtest.h>

namespace {

QStringList rowOf(const QString& field) {
    QStringList row(QString::fromLatin1("label"));
    row.append(field);
    while (row.size() < ProgramTable::RowFields)
        row.append(QString::fromLatin1("0"));
    return row;
}

QByteArray firstValueBytes(const char* field) {
    const ProgramTable::Encoded encoded =
        ProgramTable::encodeRows(QList<QStringList>() << rowOf(QString::fromLatin1(field)), 1);
    return encoded.images.value(0).left(4);
}

QString errorOf(const char* field) {
    const ProgramTable::Encoded encoded =
        ProgramTable::encodeRows(QList<QStringList>() << rowOf(QString::fromLatin1(field)), 1);
    EXPECT_TRUE(encoded.images.isEmpty());
    return encoded.errors.value(0);
}

} // namespace

TEST(ProgramTable, HeaderIsTheTraditionalChineseOfTheGoldenFile) {
    const NarrowCodecScope codec(ProgramTable::HeaderCodecName);
    EXPECT_EQ(ProgramTable::headerRow(codec), goldenRows(QLatin1String("PROG_0.txt")).at(0));
}

TEST(ProgramTable, HeaderHasTwentyFiveFieldsAndTwoSpacesInTheSeventh) {
    const NarrowCodecScope codec(ProgramTable::HeaderCodecName);
    const QStringList header = ProgramTable::headerRow(codec);
    ASSERT_EQ(header.size(), 25);
    EXPECT_EQ(header.at(0), QLatin1String(" "));
    EXPECT_EQ(header.at(6), QLatin1String("G. SOAK  -"));
}

TEST(ProgramTable, RowsAreThoseOfTheGoldenFile) {
    const NarrowCodecScope codec(ProgramTable::HeaderCodecName);
    const QList<QStringList> golden = goldenRows(QLatin1String("PROG_7.txt"));
    const QList<QByteArray> images = goldenProgramImages();
    for (int i = 0; i < images.size(); ++i)
        EXPECT_EQ(ProgramTable::programRow(codec, i + 1, images.at(i)), golden.at(i + 1));
}

TEST(ProgramTable, AllBitsSetAreTheLargestUnsignedNumber) {
    const NarrowCodecScope codec(ProgramTable::HeaderCodecName);
    const QStringList row = ProgramTable::programRow(codec, 1, QByteArray(96, '\xFF'));
    EXPECT_EQ(row.count(QLatin1String("4294967295")), 24);
}

TEST(ProgramTableDeathTest, AProgramOfAnotherSizeEndsTheProgram) {
    const NarrowCodecScope codec(ProgramTable::HeaderCodecName);
    EXPECT_DEATH(ProgramTable::programRow(codec, 1, QByteArray(95, '\0')),
                 "image.size\\(\\) == ProgramBytes");
}

TEST(ProgramTable, TemplateRowsAreThoseOfTheGoldenFile) {
    const NarrowCodecScope codec(ProgramTable::HeaderCodecName);
    const QList<QStringList> golden = goldenRows(QLatin1String("PROG_template.txt"));
    for (int number = 1; number <= 3; ++number)
        EXPECT_EQ(ProgramTable::templateRow(codec, number), golden.at(number));
}

TEST(ProgramTable, TheThirdByteOfAValueIsAlwaysZero) {
    EXPECT_EQ(firstValueBytes("70000"), QByteArray("\x70\x11\x00\x00", 4));
    EXPECT_EQ(firstValueBytes("65537"), QByteArray("\x01\x00\x00\x00", 4));
    EXPECT_EQ(firstValueBytes("4294967295"), QByteArray("\xFF\xFF\x00\xFF", 4));
}

TEST(ProgramTable, ARowBecomesNinetySixBytesInFieldOrder) {
    const QList<QStringList> rows = goldenRows(QLatin1String("PROG_7.txt"));
    const ProgramTable::Encoded encoded = ProgramTable::encodeRows(rows.mid(1, 1), 1);
    ASSERT_EQ(encoded.images.size(), 1);
    EXPECT_EQ(encoded.images.at(0), goldenProgramImages().at(0)); // no value above 65535
}

TEST(ProgramTable, TheLabelIsIgnored) {
    QStringList row = rowOf(QLatin1String("1"));
    row[0] = QLatin1String("not a number");
    EXPECT_TRUE(ProgramTable::encodeRows(QList<QStringList>() << row, 1).errors.isEmpty());
}

TEST(ProgramTable, AFieldThatIsNoUnsignedDecimalIsNamedWithItsPlace) {
    EXPECT_EQ(errorOf("1.5"), QLatin1String("The value [1.5] at row 0 and column 1 is invalid, "
                                            "please check it.\n"));
    EXPECT_EQ(errorOf("abc"), QLatin1String("The value [abc] at row 0 and column 1 is invalid, "
                                            "please check it.\n"));
    EXPECT_EQ(errorOf(""), QLatin1String("The value [] at row 0 and column 1 is invalid, please "
                                         "check it.\n"));
    EXPECT_FALSE(errorOf("-1").isEmpty());
    EXPECT_FALSE(errorOf("0x10").isEmpty());
    EXPECT_FALSE(errorOf("4294967296").isEmpty());
}

TEST(ProgramTable, PercentSignsInABadFieldAreNotPlaceMarkers) {
    EXPECT_EQ(errorOf("%2%3"), QLatin1String("The value [%2%3] at row 0 and column 1 is invalid, "
                                             "please check it.\n"));
}

TEST(ProgramTable, EveryBadFieldIsListedAndOnlyRowsBeforeTheFirstAreEncoded) {
    QList<QStringList> rows = goldenRows(QLatin1String("PROG_template.txt")).mid(1);
    rows[1][10] = QLatin1String("x");
    rows[2][24] = QLatin1String("y");
    const ProgramTable::Encoded encoded = ProgramTable::encodeRows(rows, 32);
    EXPECT_EQ(encoded.images.size(), 1);
    ASSERT_EQ(encoded.errors.size(), 2);
    EXPECT_TRUE(encoded.errors.at(0).contains(QLatin1String("[x] at row 1 and column 10")));
    EXPECT_TRUE(encoded.errors.at(1).contains(QLatin1String("[y] at row 2 and column 24")));
}

TEST(ProgramTable, RowsBeyondTheCountAreNeitherCheckedNorEncoded) {
    QList<QStringList> rows = goldenRows(QLatin1String("PROG_template.txt")).mid(1);
    rows[2][1] = QLatin1String("bad");
    const ProgramTable::Encoded encoded = ProgramTable::encodeRows(rows, 2);
    EXPECT_EQ(encoded.images.size(), 2);
    EXPECT_TRUE(encoded.errors.isEmpty());
    EXPECT_TRUE(ProgramTable::encodeRows(rows, 0).images.isEmpty());
}

TEST(ProgramTable, SlotAddressesAreLowerCaseHexadecimal) {
    EXPECT_EQ(ProgramTable::slotTagAddress(0x1000), QLatin1String("NA1000"));
    EXPECT_EQ(ProgramTable::slotTagAddress(0x13E0), QLatin1String("NA13e0"));
}
