#include "runtime/drivers/dmc50v3/addresssyntax.h"

#include "tests/support/addresspatterns.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>

namespace {

struct Row {
    const char* text;
    bool valid;
    TagAddress::Form form;
    bool has_station;
    int station;
    quint32 address;
    bool has_bit;
    quint32 bit;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.text;
}

class AddressText : public ::testing::TestWithParam<Row> {};

} // namespace

TEST_P(AddressText, ParsesToItsParts) {
    const Row& row = GetParam();
    TagAddress tag;
    ASSERT_EQ(TagAddress::parse(QString::fromLatin1(row.text), tag), row.valid);
    if (!row.valid)
        return;
    EXPECT_EQ(tag.form, row.form);
    EXPECT_EQ(tag.has_station, row.has_station);
    EXPECT_EQ(int(tag.station), row.station);
    EXPECT_EQ(tag.address, row.address);
    EXPECT_EQ(tag.has_bit, row.has_bit);
    EXPECT_EQ(tag.bit, row.bit);
}

static const TagAddress::Form PA = TagAddress::PA;
static const TagAddress::Form NA = TagAddress::NA;

INSTANTIATE_TEST_SUITE_P(
    Forms, AddressText,
    ::testing::Values(
        Row{"PA0011000", true, PA, false, 0, 0x101000, false, 0},
        Row{"pa00a0010", true, PA, false, 0, 0xA00010, false, 0},
        Row{"3-PA0010004", true, PA, true, 3, 0x100004, false, 0},
        Row{"NA1F", true, NA, false, 0, 0x1F, false, 0},
        Row{"na13e0", true, NA, false, 0, 0x13E0, false, 0},
        Row{"12-na2016", true, NA, true, 12, 0x2016, false, 0},
        Row{"PA0011000.33", true, PA, false, 0, 0x101000, true, 33},
        Row{"NA10.0", true, NA, false, 0, 0x10, true, 0},
        Row{"2-NA10.7", true, NA, true, 2, 0x10, true, 7},
        Row{"PA001100G", true, PA, false, 0, 0x100100, false, 0}, // the rest is ignored
        Row{"NA10.", true, NA, false, 0, 0x10, false, 0},
        Row{"NA10.x", true, NA, false, 0, 0x10, false, 0},
        Row{"257-NA1", true, NA, true, 1, 1, false, 0}, // stations are 8 bits
        Row{"NAFFFFFFFF", true, NA, false, 0, 0xFFFFFFFF, false, 0},
        Row{"NA100000000", true, NA, false, 0, 0, false, 0},            // too large reads as 0
        Row{"PAFFFFFFFFFFF", true, PA, false, 0, 0xFFEFFFFF, false, 0}, // sums wrap
        Row{"NA1.4294967296", true, NA, false, 0, 1, true, 0},
        Row{"", false, PA, false, 0, 0, false, 0},
        Row{"PA001", false, PA, false, 0, 0, false, 0}, // a page without an offset
        Row{"PA", false, PA, false, 0, 0, false, 0}, Row{"NA", false, NA, false, 0, 0, false, 0},
        Row{"NAx", false, NA, false, 0, 0, false, 0}, Row{"XA10", false, PA, false, 0, 0, false, 0},
        Row{" NA10", false, NA, false, 0, 0, false, 0},
        Row{"-NA10", false, NA, false, 0, 0, false, 0},
        Row{"3NA10", false, NA, false, 0, 0, false, 0}, Row{"3-", false, NA, false, 0, 0, false, 0},
        Row{"LOWLATENCY", false, NA, false, 0, 0, false, 0}));

TEST(AddressSyntax, LeavesNothingOfTheAddressThatWasParsedBefore) {
    TagAddress tag;
    ASSERT_TRUE(TagAddress::parse(QString::fromLatin1("3-NA10.7"), tag));
    ASSERT_TRUE(TagAddress::parse(QString::fromLatin1("PA0011000"), tag));
    EXPECT_EQ(tag.form, TagAddress::PA);
    EXPECT_FALSE(tag.has_station);
    EXPECT_EQ(int(tag.station), 0);
    EXPECT_FALSE(tag.has_bit);
    EXPECT_EQ(tag.bit, 0U);
}

TEST(AddressSyntax, AgreesWithRegularExpressionsOnRandomTexts) {
    const QString letters = QString::fromUtf8("0123456789abfABFgPpNnAaAaPN--..x٣ ");
    std::mt19937 random(1);
    int valid = 0;
    for (int i = 0; i < 200000; ++i) {
        QString text;
        if (random() % 2)
            text += QLatin1String(random() % 2 ? "PA" : "3-na");
        for (unsigned n = random() % 14; n > 0; --n)
            text += letters.at(int(random() % unsigned(letters.size())));
        TagAddress tag;
        valid += TagAddress::parse(text, tag);
        ASSERT_TRUE(patternsAgree(text)) << text.toStdString();
    }
    EXPECT_GT(valid, 10000);
}
