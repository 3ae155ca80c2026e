#include "host/session/tagvalue.h"

#include "tests/support/errorof.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

TagDefinition tagOf(const char* type, int count = 1) {
    TagDefinition tag;
    tag.name = QStringLiteral("tag");
    tag.type = *tagTypeByName(QLatin1String(type));
    tag.count = count;
    return tag;
}

QString shown(const char* type, const QByteArray& data, ValueFormat format, int count = 1) {
    return formatValue(tagOf(type, count), data, format);
}

QByteArray bytesOf(const char* type, const char* text, int count = 1) {
    const auto data = parseValue(tagOf(type, count), QLatin1String(text));
    EXPECT_EQ(errorOf(data), QString()) << text;
    return data.value_or(QByteArray());
}

QString problemOf(const char* type, const char* text, int count = 1) {
    return errorOf(parseValue(tagOf(type, count), QLatin1String(text)));
}

} // namespace

TEST(TagValue, ShowsTheLowestByteLast) {
    const QByteArray data("\x78\x56\x34\x12", 4);
    EXPECT_EQ(shown("dword", data, ValueFormat::Hex), QStringLiteral("0x12345678"));
    EXPECT_EQ(shown("word", data, ValueFormat::Hex, 2), QStringLiteral("0x5678 0x1234"));
    EXPECT_EQ(shown("byte", data, ValueFormat::Hex, 4), QStringLiteral("0x78 0x56 0x34 0x12"));
    EXPECT_EQ(shown("byte", data, ValueFormat::Bits), QStringLiteral("0b01111000"));
    EXPECT_EQ(shown("dword", data, ValueFormat::Dec), QStringLiteral("305419896"));
}

TEST(TagValue, ShowsASignOnlyWhereTheTypeHasOne) {
    const QByteArray data(4, '\xff');
    EXPECT_EQ(shown("dword", data, ValueFormat::Natural), QStringLiteral("4294967295"));
    EXPECT_EQ(shown("int32", data, ValueFormat::Natural), QStringLiteral("-1"));
    EXPECT_EQ(shown("word", data, ValueFormat::Dec), QStringLiteral("65535"));
    EXPECT_EQ(shown("int16", data, ValueFormat::Dec), QStringLiteral("-1"));
}

TEST(TagValue, ShowsFloatingNumbersByTypeOrOnDemand) {
    const QByteArray data("\x00\x00\xac\x41", 4); // 21.5
    EXPECT_EQ(shown("float", data, ValueFormat::Natural), QStringLiteral("21.5"));
    EXPECT_EQ(shown("dword", data, ValueFormat::Float), QStringLiteral("21.5"));
    EXPECT_EQ(shown("float", data, ValueFormat::Dec), QStringLiteral("1101791232"));
    EXPECT_EQ(shown("word", data, ValueFormat::Float), QStringLiteral("0"));
}

TEST(TagValue, ShowsBitsInTheOrderOfTheirNumbers) {
    EXPECT_EQ(shown("bit", QByteArray("\x05\x02", 2), ValueFormat::Natural, 10),
              QStringLiteral("1010000001"));
    EXPECT_EQ(shown("bit", QByteArray("\x01", 1), ValueFormat::Hex), QStringLiteral("1"));
}

TEST(TagValue, ShowsOnlyWhatIsThere) {
    EXPECT_EQ(shown("dword", QByteArray(), ValueFormat::Natural), QString());
    EXPECT_EQ(formatElements(tagOf("word", 3), QByteArray(4, '\1'), ValueFormat::Dec).size(), 2);
}

TEST(TagValue, ReadsDecimalHexadecimalAndBinary) {
    EXPECT_EQ(bytesOf("word", "0x1234"), QByteArray("\x34\x12"));
    EXPECT_EQ(bytesOf("byte", "0b101"), QByteArray("\x05"));
    EXPECT_EQ(bytesOf("dword", "4294967295"), QByteArray(4, '\xff'));
    EXPECT_EQ(bytesOf("dword", "-2"), QByteArray("\xfe\xff\xff\xff"));
    EXPECT_EQ(bytesOf("float", "21.5"), QByteArray("\x00\x00\xac\x41", 4));
    EXPECT_EQ(bytesOf("word", "1, 2", 2), QByteArray("\x01\x00\x02\x00", 4));
    EXPECT_EQ(bytesOf("bit", "1,0,1,0,0,0,0,0,0,1", 10), QByteArray("\x05\x02"));
}

TEST(TagValue, RefusesWhatDoesNotFitAndSaysWhatWould) {
    EXPECT_EQ(problemOf("byte", "256"),
              QStringLiteral("'256' is not a value of type byte; write a whole number from -128 to "
                             "255, also as 0x... or 0b..."));
    EXPECT_EQ(problemOf("bit", "2"),
              QStringLiteral("'2' is not a value of type bit; write a whole number from 0 to 1, "
                             "also as 0x... or 0b..."));
    EXPECT_EQ(problemOf("word", "1,2", 3),
              QStringLiteral("tag takes 3 values, not 2; separate them by commas"));
    EXPECT_EQ(problemOf("float", "warm"),
              QStringLiteral("'warm' is not a number; write one such as 21.5"));
    EXPECT_FALSE(problemOf("dword", "").isEmpty());
    EXPECT_FALSE(problemOf("dword", "0x").isEmpty());
    EXPECT_FALSE(problemOf("dword", "1.5").isEmpty());
    EXPECT_FALSE(problemOf("dword", "4294967296").isEmpty());
}

TEST(TagValue, KnowsItsFormatsByName) {
    EXPECT_EQ(valueFormatNames(), QStringList({QStringLiteral("hex"), QStringLiteral("dec"),
                                               QStringLiteral("bits"), QStringLiteral("float")}));
    EXPECT_EQ(valueFormatByName(QStringLiteral("bits")), ValueFormat::Bits);
    EXPECT_FALSE(valueFormatByName(QStringLiteral("octal")));
}

TEST(TagValue, IsTakenOutOfTheDoubleWordsThatHoldIt) {
    const QByteArray dwords("\xf0\x01\x02\x03\x04\x05\x06\x07", 8);
    EXPECT_EQ(tagData(tagOf("dword", 2), dwords), dwords);
    EXPECT_EQ(tagData(tagOf("word", 3), dwords), dwords.left(6));
    EXPECT_EQ(tagData(tagOf("byte"), dwords), dwords.left(1));
    TagDefinition bits = tagOf("bit", 9);
    EXPECT_EQ(tagData(bits, dwords), QByteArray("\xf0\x01", 2));
    bits.address.bit = 4;
    EXPECT_EQ(tagData(bits, dwords), QByteArray("\x1f\x00", 2));
    for (const char* type : {"bit", "byte", "word", "float"}) {
        const TagDefinition tag = tagOf(type);
        EXPECT_EQ(tagData(tag, dwords).size(), tag.command().getDataSize()) << type;
    }
}

TEST(TagValue, DiffersByMoreThanADeadbandOnceOneElementDoes) {
    const auto differs = [](const char* type, const char* one, const char* other, double deadband,
                            int count = 1) {
        return differsByMoreThan(tagOf(type, count), bytesOf(type, one, count),
                                 bytesOf(type, other, count), deadband);
    };
    EXPECT_FALSE(differs("dword", "10", "12", 2));
    EXPECT_TRUE(differs("dword", "10", "13", 2));
    EXPECT_TRUE(differs("dword", "0", "4294967295", 1000)) << "unsigned";
    EXPECT_FALSE(differs("int16", "-1", "1", 2)) << "signed";
    EXPECT_FALSE(differs("float", "21.5", "21.25", 0.25));
    EXPECT_TRUE(differs("float", "21.5", "21", 0.25));
    EXPECT_TRUE(differs("float", "nan", "nan", 1e9));
    EXPECT_TRUE(differs("word", "1,2,3", "1,2,6", 2, 3));
    EXPECT_FALSE(differs("word", "1,2,3", "3,2,1", 2, 3));
    EXPECT_TRUE(differsByMoreThan(tagOf("dword"), QByteArray(), QByteArray(4, '\0'), 5));
}
