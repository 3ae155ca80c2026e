#include "runtime/drivers/checksums.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <ostream>
#include <random>
#include <thread>
#include <vector>

namespace {

const QByteArray digits("123456789"); // what published check values are made over

quint32 reflected(quint32 value, int width) {
    quint32 result = 0;
    for (int i = 0; i < width; ++i)
        result |= (value >> i & 1) << (width - 1 - i);
    return result;
}

/** Remainder of the message, bit after bit, by the polynomial as the books write
 *  it: most significant bit first. No table and no reflected arithmetic. */
quint32 referenceCrc(int width, quint32 polynomial, bool reflect, quint32 start,
                     const QByteArray& message) {
    const quint64 top = quint64(1) << (width - 1);
    const quint64 all = top | (top - 1);
    quint64 remainder = reflect ? reflected(start, width) : start;
    for (char c : message) {
        const quint32 byte = reflect ? reflected(quint8(c), 8) : quint8(c);
        for (int bit = 7; bit >= 0; --bit) {
            const bool out = ((remainder & top) != 0) != ((byte >> bit & 1) != 0);
            remainder = ((remainder << 1) & all) ^ (out ? polynomial : 0);
        }
    }
    return reflect ? reflected(quint32(remainder), width) : quint32(remainder);
}

struct CrcCase {
    const char* name;
    std::function<quint32(quint32, quint8)> update;
    int width;
    quint32 polynomial; // as the books write it
    bool reflect;
};

const std::vector<CrcCase>& crcCases() {
    static const std::vector<CrcCase> cases = {
        {"16", update_crc_16, 16, 0x8005, true},
        {"kermit", update_crc_kermit, 16, 0x1021, true},
        {"dnp", update_crc_dnp, 16, 0x3D65, true},
        {"ccitt", update_crc_ccitt, 16, 0x1021, false},
        {"32", update_crc_32, 32, 0x04C11DB7, true},
    };
    return cases;
}

quint32 crcOf(const std::function<quint32(quint32, quint8)>& update, quint32 start,
              const QByteArray& message) {
    quint32 crc = start;
    for (char c : message)
        crc = update(crc, quint8(c));
    return crc;
}

quint16 sickCrcOf(const QByteArray& message) {
    quint16 crc = 0;
    quint8 previous = 0;
    for (char c : message) {
        crc = update_crc_sick(crc, quint8(c), previous);
        previous = quint8(c);
    }
    return crc;
}

struct PublishedCheck {
    const char* name;
    std::function<quint32(quint32, quint8)> update;
    quint32 start;
    quint32 inversion;
    quint32 check;
};

void PrintTo(const PublishedCheck& check, std::ostream* stream) {
    *stream << check.name;
}

class PublishedCrc : public testing::TestWithParam<PublishedCheck> {};

} // namespace

TEST_P(PublishedCrc, GivesTheCheckValueOverTheDigits) {
    const PublishedCheck& crc = GetParam();
    EXPECT_EQ(crcOf(crc.update, crc.start, digits) ^ crc.inversion, crc.check);
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryFamily, PublishedCrc,
    testing::Values(PublishedCheck{"Arc", update_crc_16, 0, 0, 0xBB3D},
                    PublishedCheck{"Modbus", update_crc_16, 0xFFFF, 0, 0x4B37},
                    PublishedCheck{"Usb", update_crc_16, 0xFFFF, 0xFFFF, 0xB4C8},
                    PublishedCheck{"Kermit", update_crc_kermit, 0, 0, 0x2189},
                    PublishedCheck{"X25", update_crc_kermit, 0xFFFF, 0xFFFF, 0x906E},
                    PublishedCheck{"Dnp", update_crc_dnp, 0, 0xFFFF, 0xEA82},
                    PublishedCheck{"Xmodem", update_crc_ccitt, 0, 0, 0x31C3},
                    PublishedCheck{"CcittFalse", update_crc_ccitt, 0xFFFF, 0, 0x29B1},
                    PublishedCheck{"SpiFujitsu", update_crc_ccitt, 0x1D0F, 0, 0xE5CC},
                    PublishedCheck{"Crc32", update_crc_32, 0xFFFFFFFF, 0xFFFFFFFF, 0xCBF43926},
                    PublishedCheck{"JamCrc", update_crc_32, 0xFFFFFFFF, 0, 0x340BC6D9}),
    [](const testing::TestParamInfo<PublishedCheck>& row) { return row.param.name; });

TEST(CrcTables, AgreeWithLongDivisionForEveryByte) {
    for (const CrcCase& crc : crcCases()) {
        for (int byte = 0; byte < 256; ++byte) {
            const QByteArray message(1, char(byte));
            ASSERT_EQ(crcOf(crc.update, 0, message),
                      referenceCrc(crc.width, crc.polynomial, crc.reflect, 0, message))
                << crc.name << " byte " << byte;
        }
    }
}

TEST(CrcTables, AgreeWithLongDivisionForRandomMessagesAndStarts) {
    std::mt19937 random(20);
    for (const CrcCase& crc : crcCases()) {
        for (int round = 0; round < 200; ++round) {
            const quint32 start = quint32(random()) & (crc.width == 32 ? 0xFFFFFFFFU : 0xFFFFU);
            QByteArray message(int(random() % 40), '\0');
            for (int i = 0; i < message.size(); ++i)
                message[i] = char(random());
            ASSERT_EQ(crcOf(crc.update, start, message),
                      referenceCrc(crc.width, crc.polynomial, crc.reflect, start, message))
                << crc.name << " round " << round;
        }
    }
}

TEST(CrcTables, AreBuiltOnceWhenSeveralThreadsComeFirst) {
    std::array<quint32, 8> results = {};
    std::vector<std::thread> threads;
    for (quint32& result : results) {
        threads.emplace_back([&result] {
            for (const CrcCase& crc : crcCases())
                result = result * 31 + crcOf(crc.update, 0, digits);
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    quint32 expected = 0;
    for (const CrcCase& crc : crcCases())
        expected = expected * 31 + referenceCrc(crc.width, crc.polynomial, crc.reflect, 0, digits);
    for (quint32 result : results)
        EXPECT_EQ(result, expected);
}

TEST(SickCrc, GivesThePublishedCheckValueWithItsBytesSwapped) {
    EXPECT_EQ(sickCrcOf(digits), 0xA656);
}

TEST(SickCrc, ShiftsAndTakesInTheByteAndTheOneBefore) {
    EXPECT_EQ(update_crc_sick(0x0000, 0x12, 0x34), 0x3412);
    EXPECT_EQ(update_crc_sick(0x4000, 0x00, 0x00), 0x8000);
    EXPECT_EQ(update_crc_sick(0x8000, 0x00, 0x00), 0x8005);
    EXPECT_EQ(update_crc_sick(0xFFFF, 0xFF, 0xFF), 0x8004);
}

TEST(Crc16Calculate, GivesThePublishedCheckValue) {
    EXPECT_EQ(CRC16Calculate(digits.constData(), digits.size()), 0xBB3D);
}

TEST(Sums, AreTakenModuloTheirWidth) {
    const QByteArray full(600, char(0xFF));
    EXPECT_EQ(UInt8CheckSum(full.constData(), 2), 0xFE);
    EXPECT_EQ(UShortCheckSum(full.constData(), 2), 0x01FE);
    EXPECT_EQ(UShortCheckSum(full.constData(), 600), 600 * 255 % 65536);
    EXPECT_EQ(XorUInt8CheckSum("\x0F\x33\x81", 3), 0x0F ^ 0x33 ^ 0x81);
}

TEST(Checksums, OfALengthBelowOneAreZero) {
    for (int length : {0, -1, -2147483647 - 1}) {
        EXPECT_EQ(UInt8CheckSum("abc", length), 0);
        EXPECT_EQ(UShortCheckSum("abc", length), 0);
        EXPECT_EQ(XorUInt8CheckSum("abc", length), 0);
        EXPECT_EQ(CRC16Calculate("abc", length), 0);
    }
}
