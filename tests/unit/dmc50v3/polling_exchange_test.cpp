// One request and its reply, from the port to the cache.
#include "tests/unit/dmc50v3/pollingfixture.h"

namespace {
class PollingExchange : public PollingFixture {};
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
