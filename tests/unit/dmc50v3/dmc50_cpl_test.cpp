#include "runtime/drivers/dmc50v3/dmc50_cpl.h"

#include "tests/support/memorycontroller.h"

#include <QVector>

#include <gtest/gtest.h>

#include <vector>

namespace {

QByteArray packRN(quint8 station, quint8 sub, const std::vector<quint32>& addresses) {
    char buffer[CPLBufferSize];
    const int length =
        CPLPackRNCmd(buffer, sizeof buffer, station, sub, addresses.data(), uint(addresses.size()));
    return QByteArray(buffer, length);
}

QByteArray packWN(quint8 station, const std::vector<AddrArg>& pairs) {
    char buffer[CPLBufferSize];
    const int length =
        CPLPackWNCmd(buffer, sizeof buffer, station, 0, pairs.data(), int(pairs.size()));
    return QByteArray(buffer, length);
}

} // namespace

TEST(CplFrames, ReadOfOneAddress) {
    const QByteArray frame = packRN(1, 0, {0x2016});
    EXPECT_EQ(frame, QByteArray("\x02"
                                "0100XRN00LL00002016\x03"
                                "C1\r\n"));
    EXPECT_EQ(frame.size(), 25);
}

TEST(CplFrames, ReadOfSeveralAddressesInTheirOrder) {
    EXPECT_EQ(packRN(0xAB, 0x0F, {0xFFFFFFFF, 0, 0x101000}),
              cplFrame("AB0FXRN00LLFFFFFFFF0000000000101000"));
}

TEST(CplFrames, WriteOfPairs) {
    EXPECT_EQ(packWN(3, {{0x2012, 1}, {0x2014, 200}}),
              cplFrame("0300XWN00LL000020120000000100002014000000C8"));
}

TEST(CplFrames, WriteOfConsecutiveDoubleWordsPrintsTheHighByteFirst) {
    const uchar dwords[] = {0x78, 0x56, 0x34, 0x12, 0x01, 0x00, 0x00, 0xFF};
    char buffer[CPLBufferSize];
    const int length = CPLPackWGCmd(buffer, sizeof buffer, 1, 0, 0x1020, dwords, 2);
    EXPECT_EQ(QByteArray(buffer, length), cplFrame("0100XWGLL0000102012345678FF000001"));
}

TEST(CplFrames, FiftyAddressesAndTwentyFivePairsFitTheBuffer) {
    EXPECT_EQ(packRN(1, 0, std::vector<quint32>(50, 0x1000)).size(), 417);
    EXPECT_EQ(packWN(1, std::vector<AddrArg>(25, AddrArg{1, 2})).size(), 417);
    EXPECT_TRUE(packRN(1, 0, std::vector<quint32>(50, 0x1000)).endsWith("\r\n"));
}

TEST(CplFrames, FiftyConsecutiveDoubleWordsAreCutButTheLengthIsTheWholeFrames) {
    const std::vector<uchar> dwords(200, 0x11);
    std::vector<char> buffer(CPLBufferSize + 8, '#');
    EXPECT_EQ(CPLPackWGCmd(buffer.data(), CPLBufferSize, 1, 0, 0, dwords.data(), 50), 423);
    EXPECT_EQ(buffer[418], '\x03'); // the end of text is the last that fits
    EXPECT_EQ(buffer[419], '\0');
    EXPECT_EQ(QByteArray(buffer.data() + CPLBufferSize, 8), QByteArray(8, '#'));
}

TEST(CplFrames, ASmallBufferIsNeverOverrun) {
    const quint32 address = 0x2016;
    for (int size = 0; size < 30; ++size) {
        std::vector<char> buffer(40, '#');
        EXPECT_EQ(CPLPackRNCmd(buffer.data(), size, 1, 0, &address, 1), 25);
        for (std::size_t i = std::size_t(size); i < buffer.size(); ++i)
            ASSERT_EQ(buffer[i], '#') << "size " << size << " byte " << i;
    }
}

TEST(CplFramesDeath, CountsAndListsOutsideTheLimitsEndTheProgram) {
    char buffer[CPLBufferSize];
    const std::vector<quint32> addresses(51, 1);
    const std::vector<uchar> dwords(4 * 51, 1);
    const std::vector<AddrArg> pairs(26, AddrArg{1, 1});
    const char* const rn = "\"num_of_addresses > 0 && num_of_addresses <= 50\"";
    EXPECT_DEATH(CPLPackRNCmd(buffer, 420, 1, 0, nullptr, 1), "\"addresses != 0\"");
    EXPECT_DEATH(CPLPackRNCmd(buffer, 420, 1, 0, addresses.data(), 0), rn);
    EXPECT_DEATH(CPLPackRNCmd(buffer, 420, 1, 0, addresses.data(), 51), rn);
    const char* const wg = "\"num_of_dwords > 0 && num_of_dwords <= 50\"";
    EXPECT_DEATH(CPLPackWGCmd(buffer, 420, 1, 0, 0, nullptr, 1), "\"dwords != 0\"");
    EXPECT_DEATH(CPLPackWGCmd(buffer, 420, 1, 0, 0, dwords.data(), 0), wg);
    EXPECT_DEATH(CPLPackWGCmd(buffer, 420, 1, 0, 0, dwords.data(), 51), wg);
    const char* const wn = "\"num_of_addr_args > 0 && num_of_addr_args <= 25\"";
    EXPECT_DEATH(CPLPackWNCmd(buffer, 420, 1, 0, nullptr, 1), "\"addr_args != 0\"");
    EXPECT_DEATH(CPLPackWNCmd(buffer, 420, 1, 0, pairs.data(), 0), wn);
    EXPECT_DEATH(CPLPackWNCmd(buffer, 420, 1, 0, pairs.data(), 26), wn);
}

TEST(CplChecksum, IsAcceptedInAWholeFrameOnly) {
    const QByteArray good = cplFrame("0100X00");
    EXPECT_EQ(good.size(), CPLMinResponseLength);
    EXPECT_TRUE(CPLValidateChecksum(good.constData(), good.size()));
    EXPECT_FALSE(CPLValidateChecksum(good.constData(), 4));
    EXPECT_FALSE(CPLValidateChecksum(good.constData(), 0));
}

TEST(CplChecksum, RefusesEveryOtherByteButSmallDigits) {
    const QByteArray good = cplFrame("0100X00000000C8"); // its checksum is E7
    const int digits = good.size() - 4;
    for (int at = 0; at < digits + 2; ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            QByteArray other = good;
            other[at] = char(byte);
            const bool same = other == good || (at == digits && byte == 'e');
            EXPECT_EQ(CPLValidateChecksum(other.constData(), other.size()), same)
                << "byte " << at << " as " << byte;
        }
    }
}
