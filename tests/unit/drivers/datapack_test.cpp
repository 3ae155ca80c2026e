#include "runtime/drivers/datapack.h"

#include "runtime/drivers/packformat.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace {

QByteArray bytes(const char* hex) {
    return QByteArray::fromHex(hex);
}

const uchar eight_bytes[] = {0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88};

struct LetterRow {
    const char* format;
    const char* image; // of 0x89ABCDEF, or of eight_bytes when counted
};

void PrintTo(const LetterRow& row, std::ostream* stream) {
    *stream << row.format << " is " << row.image;
}

class SingleLetter : public testing::TestWithParam<LetterRow> {};
class CountedLetter : public testing::TestWithParam<LetterRow> {};
class UnknownLetter : public testing::TestWithParam<const char*> {};
class BadCountedField : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(SingleLetter, PacksTheArgument) {
    const QByteArray image = bytes(GetParam().image);
    char buffer[8];
    std::memset(buffer, 0x7E, sizeof buffer);
    EXPECT_EQ(DataPack(buffer, GetParam().format, 0x89ABCDEFU), image.size());
    EXPECT_EQ(QByteArray(buffer, image.size()), image);
    EXPECT_EQ(buffer[image.size()], 0x7E);
    EXPECT_EQ(ByteArrayPack(GetParam().format, 0x89ABCDEFU), image);
}

TEST_P(SingleLetter, UnpacksIntoATargetOfItsWidth) {
    const QByteArray image = bytes(GetParam().image);
    quint32 target = 0;
    EXPECT_EQ(DataUnpack(image.constData(), GetParam().format, &target), image.size());
    const quint32 mask = image.size() == 4 ? 0xFFFFFFFFU : (1U << 8 * image.size()) - 1;
    EXPECT_EQ(target, 0x89ABCDEFU & mask);
}

INSTANTIATE_TEST_SUITE_P(OfTheTable, SingleLetter,
                         testing::Values(LetterRow{"C", "EF"}, LetterRow{"c", "EF"},
                                         LetterRow{"I", "EFCDAB89"}, LetterRow{"L", "EFCDAB89"},
                                         LetterRow{"V", "EFCDAB89"}, LetterRow{"i", "EFCDAB89"},
                                         LetterRow{"l", "EFCDAB89"}, LetterRow{"N", "89ABCDEF"},
                                         LetterRow{"S", "EFCD"}, LetterRow{"s", "EFCD"},
                                         LetterRow{"v", "EFCD"}, LetterRow{"n", "CDEF"}));

TEST_P(CountedLetter, PacksTheBytesAtThePointer) {
    const QByteArray image = bytes(GetParam().image);
    char buffer[16];
    std::memset(buffer, 0x7E, sizeof buffer);
    EXPECT_EQ(DataPack(buffer, GetParam().format, eight_bytes), image.size());
    EXPECT_EQ(QByteArray(buffer, image.size()), image);
    EXPECT_EQ(buffer[image.size()], 0x7E);
    EXPECT_EQ(ByteArrayPack(GetParam().format, eight_bytes), image);
}

TEST_P(CountedLetter, UnpacksTheBytesToThePointer) {
    const QByteArray image = bytes(GetParam().image);
    uchar target[8] = {};
    EXPECT_EQ(DataUnpack(image.constData(), GetParam().format, target), image.size());
    EXPECT_EQ(std::memcmp(target, eight_bytes, size_t(image.size())), 0);
}

INSTANTIATE_TEST_SUITE_P(OfTheTable, CountedLetter,
                         testing::Values(LetterRow{"3C", "112233"}, LetterRow{"1c", "11"},
                                         LetterRow{"2N", "4433221188776655"},
                                         LetterRow{"2V", "1122334455667788"},
                                         LetterRow{"3n", "221144336655"},
                                         LetterRow{"3v", "112233445566"},
                                         LetterRow{"004c", "11223344"}));

TEST(DataPack, PutsFieldsOneBehindTheOther) {
    char buffer[6];
    EXPECT_EQ(DataPack(buffer, "nN", 0x1234, 0x01020304), 6);
    EXPECT_EQ(QByteArray(buffer, 6), bytes("123401020304"));
    EXPECT_EQ(ByteArrayPack("nN", 0x1234, 0x01020304), bytes("123401020304"));
}

TEST(DataPack, TakesTheLowBytesOfNegativeArguments) {
    EXPECT_EQ(ByteArrayPack("csl", -2, -2, -2), bytes("FEFEFFFEFFFFFF"));
}

TEST(DataPack, WritesZerosForX) {
    char buffer[5];
    std::memset(buffer, 0x7E, sizeof buffer);
    EXPECT_EQ(DataPack(buffer, "3x"), 3);
    EXPECT_EQ(QByteArray(buffer, 5), bytes("0000007E7E"));
    EXPECT_EQ(DataPack(buffer + 3, "x"), 1);
    EXPECT_EQ(QByteArray(buffer, 5), bytes("000000007E"));
}

TEST(DataPack, LeavesSkippedBytesAsTheyAre) {
    char buffer[4];
    std::memset(buffer, 0x7E, sizeof buffer);
    EXPECT_EQ(DataPack(buffer, "X2XC", 0x11), 4);
    EXPECT_EQ(QByteArray(buffer, 4), bytes("7E7E7E11"));
}

TEST(DataPack, OfAnEmptyFormatIsNothing) {
    char buffer[1] = {0x7E};
    EXPECT_EQ(DataPack(buffer, ""), 0);
    EXPECT_EQ(DataUnpack(buffer, ""), 0);
    EXPECT_TRUE(ByteArrayPack("").isEmpty());
    EXPECT_EQ(buffer[0], 0x7E);
}

TEST(DataPack, MayStartAtAnyAddress) {
    char buffer[13] = {};
    const uchar source[] = {0x00, 0x11, 0x22, 0x33, 0x44};
    EXPECT_EQ(DataPack(buffer + 1, "VN1N", 0x44332211, 0x55667788, source + 1), 12);
    EXPECT_EQ(QByteArray(buffer + 1, 12), bytes("112233445566778844332211"));
}

TEST_P(UnknownLetter, StopsPackingWithZeroAndUnpackingWithMinusOne) {
    const std::string format = std::string("C") + GetParam();
    char buffer[2] = {0, 0x7E};
    EXPECT_EQ(DataPack(buffer, format.c_str(), 0x41, 0x42), 0);
    EXPECT_EQ(QByteArray(buffer, 2), bytes("417E")); // the field before it is packed
    EXPECT_TRUE(ByteArrayPack(format.c_str(), 0x41, 0x42).isEmpty());

    quint8 first = 0, second = 0x7E;
    EXPECT_EQ(DataUnpack("\x41\x42", format.c_str(), &first, &second), -1);
    EXPECT_EQ(first, 0x41);
    EXPECT_EQ(second, 0x7E);
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, UnknownLetter,
                         testing::Values("?", " ", "A", "b", "-", "\xFF", "?C"));

TEST_P(BadCountedField, IsMinusOneAndAnEmptyArray) {
    const std::string format = std::string("C") + GetParam();
    char buffer[16] = {};
    EXPECT_EQ(DataPack(buffer, format.c_str(), 0x41, eight_bytes), -1);
    EXPECT_EQ(QByteArray(buffer, 2), bytes("4100"));
    EXPECT_TRUE(ByteArrayPack(format.c_str(), 0x41, eight_bytes).isEmpty());

    quint8 first = 0;
    uchar target[8] = {};
    EXPECT_EQ(DataUnpack("\x41\x42", format.c_str(), &first, target), -1);
    EXPECT_EQ(target[0], 0);
}

INSTANTIATE_TEST_SUITE_P(OfBothKinds, BadCountedField,
                         testing::Values("2S", "2s", "2I", "2L", "2i", "2l", "2?", "2", "0C", "0c",
                                         "0N", "0V", "0n", "0v", "00C", "2147483647C",
                                         "1073741824v", "99999999999999999999C"));

TEST(CountedGap, WithCountZeroDoesNothing) {
    char buffer[2] = {0x7E, 0x7E};
    EXPECT_EQ(DataPack(buffer, "0x0XC", 0x11), 1);
    EXPECT_EQ(QByteArray(buffer, 2), bytes("117E"));

    quint8 target = 0;
    EXPECT_EQ(DataUnpack("\x11", "0X0xC", &target), 1);
    EXPECT_EQ(target, 0x11);
}

TEST(ByteArrayPack, RefusesCountedGaps) {
    EXPECT_TRUE(ByteArrayPack("3x").isEmpty());
    EXPECT_TRUE(ByteArrayPack("C3X", 0x11).isEmpty());
    EXPECT_TRUE(ByteArrayPack("C0x", 0x11).isEmpty());
}

TEST(ByteArrayPack, GrowsByOneByteForASingleGap) {
    EXPECT_EQ(ByteArrayPack("CxC", 0x11, 0x22), bytes("110022"));
    const QByteArray grown = ByteArrayPack("CXC", 0x11, 0x22);
    ASSERT_EQ(grown.size(), 3); // the byte between has no defined value
    EXPECT_EQ(grown.at(0), 0x11);
    EXPECT_EQ(grown.at(2), 0x22);
}

TEST(DataUnpack, SkipsGapsWithoutAnArgument) {
    quint16 word = 0;
    EXPECT_EQ(DataUnpack("\x00\x00\x12\x34", "2Xn", &word), 4);
    EXPECT_EQ(word, 0x1234);

    quint8 byte = 0;
    EXPECT_EQ(DataUnpack("\x01\x02\x03\x04\x05", "xX2xc", &byte), 5);
    EXPECT_EQ(byte, 0x05);
}

TEST(DataUnpack, WritesNoMoreThanTheTargetHolds) {
    struct {
        quint8 byte;
        quint8 behind_byte;
        quint16 word;
        quint16 behind_word;
    } targets = {0, 0x7E, 0, 0x7E7E};
    EXPECT_EQ(DataUnpack("\x11\x22\x33", "Cn", &targets.byte, &targets.word), 3);
    EXPECT_EQ(targets.byte, 0x11);
    EXPECT_EQ(targets.word, 0x2233);
    EXPECT_EQ(targets.behind_byte, 0x7E);
    EXPECT_EQ(targets.behind_word, 0x7E7E);
}

TEST(DataUnpack, NeedsNoAlignmentOnEitherSide) {
    const char image[] = "?\x11\x22\x33\x44\x55\x66\x77\x88";
    char targets[9] = {};
    EXPECT_EQ(DataUnpack(&image[1], "V1N", targets + 1, targets + 5), 8);
    EXPECT_EQ(QByteArray(targets + 1, 8), bytes("1122334488776655"));
}

TEST(DataUnpack, TakesMoreArgumentsThanRegistersHold) {
    quint8 target[12] = {};
    EXPECT_EQ(DataUnpack("abcdefghijkl", "CCCCCCCCCCCC", target, target + 1, target + 2, target + 3,
                         target + 4, target + 5, target + 6, target + 7, target + 8, target + 9,
                         target + 10, target + 11),
              12);
    EXPECT_EQ(std::memcmp(target, "abcdefghijkl", 12), 0);
}

namespace {

/** Arguments of random content for any format; the same memory serves packing
 *  and, behind rewind(), unpacking. */
class StoredArguments : public PackArguments {
public:
    explicit StoredArguments(std::mt19937& random) : m_random(random) {}

    void addFor(const PackField& field) {
        if (field.kind != PackField::Value && field.kind != PackField::Block)
            return;
        std::string content(size_t(qMax(4, field.size())), '\0');
        for (char& c : content)
            c = char(m_random());
        m_contents.push_back(content);
    }

    quint32 nextValue() override {
        quint32 value = 0;
        std::memcpy(&value, nextPointer(), sizeof value);
        return value;
    }

    void* nextPointer() override { return &m_contents.at(m_next++)[0]; }

    void rewind() { m_next = 0; }
    bool allTaken() const { return m_next == m_contents.size(); }

private:
    std::mt19937& m_random;
    std::vector<std::string> m_contents; // at least 4 bytes each
    size_t m_next = 0;
};

std::string randomFormat(std::mt19937& random) {
    static const char singles[] = "CcILVilNSsvnxX";
    static const char countables[] = "CcNVnvxX";
    std::string format;
    for (quint32 fields = random() % 12; fields > 0; --fields) {
        if (random() % 2 == 0)
            format += singles[random() % (sizeof singles - 1)];
        else
            format +=
                std::to_string(1 + random() % 9) + countables[random() % (sizeof countables - 1)];
    }
    return format;
}

} // namespace

TEST(PackedFields, UnpackToWhatWasPacked) {
    std::mt19937 random(52);
    for (int round = 0; round < 2000; ++round) {
        const std::string format = randomFormat(random);
        StoredArguments sources(random), targets(random);
        PackFormat fields(format.c_str());
        while (fields.next()) {
            sources.addFor(fields.field());
            targets.addFor(fields.field());
        }
        std::string image(size_t(fields.size()), '\0');
        ASSERT_EQ(packFields(&image[0], format.c_str(), sources), fields.size()) << format;
        ASSERT_EQ(unpackFields(&image[0], format.c_str(), targets), fields.size()) << format;
        ASSERT_TRUE(sources.allTaken() && targets.allTaken()) << format;

        targets.rewind();
        std::string again(image.size(), '\0');
        ASSERT_EQ(packFields(&again[0], format.c_str(), targets), fields.size()) << format;
        ASSERT_EQ(again, image) << format;
    }
}

TEST(PackFormat, NamesOffsetAndSizeOfEveryField) {
    PackFormat fields("n3Nx");
    ASSERT_TRUE(fields.next());
    EXPECT_EQ(fields.field().kind, PackField::Value);
    EXPECT_EQ(fields.field().size(), 2);
    ASSERT_TRUE(fields.next());
    EXPECT_EQ(fields.field().kind, PackField::Block);
    EXPECT_EQ(fields.field().offset, 2);
    EXPECT_EQ(fields.field().size(), 12);
    ASSERT_TRUE(fields.next());
    EXPECT_EQ(fields.field().kind, PackField::Zeros);
    EXPECT_EQ(fields.field().offset, 14);
    EXPECT_FALSE(fields.next());
    EXPECT_EQ(fields.error(), PackFormat::NoError);
    EXPECT_EQ(fields.size(), 15);
}

TEST(PackFormat, EndsAtTheLargestSizeOfAnInt) {
    PackFormat largest("2147483647X");
    EXPECT_TRUE(largest.next());
    EXPECT_EQ(largest.size(), INT_MAX);
    EXPECT_FALSE(largest.next());

    PackFormat one_more("2147483647XX");
    EXPECT_TRUE(one_more.next());
    EXPECT_FALSE(one_more.next());
    EXPECT_EQ(one_more.error(), PackFormat::BadLetter);
}

TEST(ByteArrayPack, LeavesZeroWhereAByteIsSkipped) {
    EXPECT_EQ(ByteArrayPack("CXC", 1U, 2U), bytes("010002"));
}
