#include "host/session/writeorder.h"

#include "tests/support/simulatedclock.h"

#include <gtest/gtest.h>

#include <thread>

using namespace host;

namespace {

constexpr int WithinMsecs = 60000;

class WriteOrderTest : public ::testing::Test {
protected:
    SimulatedClock m_clock{0};
    WriteOrder m_order{3, QByteArray("\x05"), QStringLiteral("somebody"), WithinMsecs, m_clock};
    const WriteResult m_confirmed{WriteOutcome::Confirmed, QByteArray("\x05"), QString()};
};

} // namespace

TEST_F(WriteOrderTest, EndsOnceOnly) {
    EXPECT_FALSE(m_order.result());
    EXPECT_TRUE(m_order.take());
    EXPECT_TRUE(m_order.finish(m_confirmed));
    EXPECT_FALSE(m_order.finish({WriteOutcome::Refused, QByteArray(), QStringLiteral("why")}));
    EXPECT_EQ(m_order.result()->outcome, WriteOutcome::Confirmed);
    EXPECT_EQ(m_order.await().outcome, WriteOutcome::Confirmed);
}

TEST_F(WriteOrderTest, WakesWhoWaitsForItsEnd) {
    std::thread finisher([this] { m_order.finish(m_confirmed); });
    EXPECT_EQ(m_order.await().outcome, WriteOutcome::Confirmed);
    finisher.join();
}

TEST_F(WriteOrderTest, ExpiresAtItsDeadlineForWhoWaitsAndIsThenNotSent) {
    m_clock.advance(WithinMsecs);
    const WriteResult result = m_order.await();
    EXPECT_EQ(result.outcome, WriteOutcome::Expired);
    EXPECT_EQ(result.why, QString("not sent within 60000 ms"));
    EXPECT_FALSE(m_order.take());
    EXPECT_FALSE(m_order.finish(m_confirmed));
}

TEST_F(WriteOrderTest, IsNotSentAfterItsDeadlineThoughNobodyWaits) {
    m_clock.advance(WithinMsecs - 1);
    EXPECT_TRUE(m_order.take());
    m_clock.advance(1);
    EXPECT_FALSE(m_order.take());
    EXPECT_EQ(m_order.result()->outcome, WriteOutcome::Expired);
}

TEST_F(WriteOrderTest, SaysWhetherItMayStillArrive) {
    m_order.take();
    m_clock.advance(WithinMsecs);
    EXPECT_EQ(m_order.await().why, QString("not confirmed within 60000 ms; it may have arrived"));
}
