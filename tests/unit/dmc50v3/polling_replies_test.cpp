#include "tests/unit/dmc50v3/pollingfixture.h"

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

class PollingReplies : public PollingFixture, public ::testing::WithParamInterface<Reply> {};

} // namespace

TEST_P(PollingReplies, AreJudgedByAReadAndAWrite) {
    start();
    const Reply& reply = GetParam();
    EXPECT_EQ(m_probe->checkReadRsp(reply.bytes, 1, 0x2016), !*reply.read_error);
    EXPECT_EQ(m_thread->hasError(), bool(*reply.read_error));
    EXPECT_EQ(m_thread->getLastError().toStdString(), reply.read_error);

    m_thread->setCommError(QString());
    m_thread->clearError();
    EXPECT_EQ(m_probe->checkWriteRsp(reply.bytes, 1, 0x2016), !*reply.write_error);
    EXPECT_EQ(m_thread->hasError(), bool(*reply.write_error));
    EXPECT_EQ(m_thread->getLastError().toStdString(), reply.write_error);
}

INSTANTIATE_TEST_SUITE_P(Table, PollingReplies, ::testing::ValuesIn(Replies));

namespace {
class PollingExchange : public PollingFixture {};
typedef PollingExchange PollingExchangeDeath;
} // namespace

TEST_F(PollingExchange, CollectsAReplyThatComesByteByByte) {
    m_port.m_chunk = 1;
    m_controller.setValue(1, 0x1000, 42);
    startSession(1);
    m_probe->cycle();
    quint32 value = 0;
    ASSERT_TRUE(m_thread->getDWordFromDataCacheMap(1, 0x1000, value));
    EXPECT_EQ(value, 42u);
}

TEST_F(PollingExchange, AReplyThatFillsTheBufferEndsTheRead) {
    m_port.setAnswer([](const QByteArray&) { return QByteArray(500, 'y'); });
    startSession(1);
    const qint64 before = m_clock.msecsSinceBoot();
    m_probe->cycle();
    EXPECT_EQ(m_clock.msecsSinceBoot() - before, 10); // no time-out was waited for
    EXPECT_EQ(m_thread->getLastError().toStdString(),
              "read station id#1 start address 00001000:checksum error");
}

TEST_F(PollingExchangeDeath, AReadIntoAFullBufferEndsTheProgram) {
    start();
    m_probe->setResponse(QByteArray(420, 'x'));
    EXPECT_DEATH(m_probe->readRspUntilLF(), "\"m_rsp_len < int\\(m_rsp_buf.size\\(\\)\\)\"");
}

TEST_F(PollingExchange, AGoodReplyWithTooFewValuesReadsTheRestAsZero) {
    // The checks do not count values: service tools rely on the short answer.
    m_port.setAnswer([](const QByteArray&) { return cplFrame("0100X0000000007"); });
    startSession(2);
    m_probe->cycle();
    EXPECT_FALSE(m_thread->hasError());
    quint32 value = 1;
    ASSERT_TRUE(m_thread->getDWordFromDataCacheMap(1, 0x1001, value));
    EXPECT_EQ(value, 0u);
}

TEST_F(PollingExchangeDeath, AReplyWithoutAddressesEndsTheProgram) {
    start();
    const quint32 address = 1;
    EXPECT_DEATH(m_probe->storeCached(nullptr, 1), "\"addresses != 0\"");
    EXPECT_DEATH(m_probe->storeCached(&address, 0), "\"num_of_addresses > 0\"");
}
