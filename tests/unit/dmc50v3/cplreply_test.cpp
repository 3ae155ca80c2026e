#include "runtime/drivers/dmc50v3/cplreply.h"

#include "tests/support/memorycontroller.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

/** A reply as it came, and what it is taken for by a read and by a write of
 *  station 1, address 0x2016. An empty text: accepted. */
struct Reply {
    const char* name;
    QByteArray bytes;
    const char* read_error;
    const char* write_error;
};

std::ostream& operator<<(std::ostream& out, const Reply& reply) {
    return out << reply.name;
}

QByteArray withBadChecksum() {
    QByteArray frame = cplFrame("0100X00");
    frame[frame.size() - 3] = frame.at(frame.size() - 3) == '0' ? '1' : '0';
    return frame;
}

#define READ_PREFIX "read station id#1 start address 00002016:"
#define WRITE_PREFIX "write station id#1 address 00002016"

const Reply Replies[] = {
    {"silence", QByteArray(), READ_PREFIX "DMC50 no response", WRITE_PREFIX "DMC50 no response"},
    {"one byte", QByteArray("\x02"), READ_PREFIX "read: packet loss", WRITE_PREFIX "packet loss"},
    {"twelve bytes", cplFrame("0100X00").left(12), READ_PREFIX "read: packet loss",
     WRITE_PREFIX "packet loss"},
    {"thirteen good bytes", cplFrame("0100X00"), "", ""},
    {"a value", cplFrame("0100X00000000C8"), "", ""},
    {"bad checksum", withBadChecksum(), READ_PREFIX "checksum error",
     WRITE_PREFIX "checksum error"},
    {"another station", cplFrame("0200X00"), READ_PREFIX "invalid station id from DMC50",
     WRITE_PREFIX "invalid station id from DMC50"},
    {"end code", cplFrame("0100X4A"), READ_PREFIX "end code 4AH", WRITE_PREFIX "end code 4AH"},
    {"end code with a leading zero", cplFrame("0100X0F"), READ_PREFIX "end code 0FH",
     WRITE_PREFIX "end code 0FH"},
    {"bad checksum and another station", withBadChecksum().replace(1, 2, "02"),
     READ_PREFIX "checksum error", WRITE_PREFIX "checksum error"},
    {"another station and an end code", cplFrame("0200X4A"),
     READ_PREFIX "invalid station id from DMC50", WRITE_PREFIX "invalid station id from DMC50"},
};

class CPLReplies : public ::testing::TestWithParam<Reply> {};

} // namespace

TEST_P(CPLReplies, AreJudgedByAReadAndAWrite) {
    const Reply& row = GetParam();
    const CPLReply reply = {row.bytes.constData(), row.bytes.size()};
    QString error;
    EXPECT_EQ(checkReadRsp(reply, 1, 0x2016, error), !*row.read_error);
    EXPECT_EQ(error.toStdString(), row.read_error);

    error.clear();
    EXPECT_EQ(checkWriteRsp(reply, 1, 0x2016, error), !*row.write_error);
    EXPECT_EQ(error.toStdString(), row.write_error);
}

INSTANTIATE_TEST_SUITE_P(Table, CPLReplies, ::testing::ValuesIn(Replies));

TEST(CPLReply, FieldsStandAtTheirOffsets) {
    const QByteArray frame = cplFrame("1F00X4A0000000112345678");
    const CPLReply reply = {frame.constData(), frame.size()};
    EXPECT_EQ(getStationIdFromRsp(reply), 0x1F);
    EXPECT_EQ(getEndCodeFromRsp(reply), 0x4A);
    EXPECT_EQ(getDWordFromRsp(reply, 0), 1u);
    EXPECT_EQ(getDWordFromRsp(reply, 1), 0x12345678u);
}

TEST(CPLReply, TheHighestStationAndAddressAreWrittenInFull) {
    QString error;
    const CPLReply silence = {"", 0};
    EXPECT_FALSE(checkReadRsp(silence, 255, 0xFFFFFFFF, error));
    EXPECT_EQ(error.toStdString(), "read station id#255 start address FFFFFFFF:DMC50 no response");
    EXPECT_FALSE(checkWriteRsp(silence, 255, 0xABCDEF01, error));
    EXPECT_EQ(error.toStdString(), "write station id#255 address ABCDEF01DMC50 no response");
}
