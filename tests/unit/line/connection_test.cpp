#include "host/line/connection.h"

#include "tests/support/simulatedclock.h"
#include "tests/unit/line/scriptedchannel.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace host;

namespace {

class ConnectionTest : public ::testing::Test {
protected:
    SimulatedClock m_clock;
    ScriptedChannel m_channel;
    QStringList m_log;
    Connection m_connection{m_channel, m_clock, [this](const QString& line) { m_log += line; }};
};

} // namespace

TEST_F(ConnectionTest, OpensWithoutAWordWhenAllIsWell) {
    EXPECT_TRUE(m_connection.awaitOpen(1000));
    EXPECT_TRUE(m_connection.isOpen());
    EXPECT_EQ(m_log, QStringList());
}

TEST_F(ConnectionTest, DoublesThePauseBetweenAttemptsUpToTheLongest) {
    m_channel.failing_attempts = 1000;
    EXPECT_FALSE(m_connection.awaitOpen(3000));
    // At 0, 100, 300, 700, 1500 ms; the next one would be at 3100.
    EXPECT_EQ(m_channel.attempts, 5);
    EXPECT_FALSE(m_connection.awaitOpen(60000));
    // At 3100, 6300 and from there every 5000 ms.
    EXPECT_EQ(m_channel.attempts, 5 + 2 + 11);
}

TEST_F(ConnectionTest, TellsEachChangeOfStateOnceWithTheCountOfWhatItKeptQuiet) {
    m_channel.failing_attempts = 4;
    EXPECT_TRUE(m_connection.awaitOpen(10000));
    EXPECT_EQ(m_log, QStringList({QStringLiteral("/dev/script: line lost: no such device"),
                                  QStringLiteral("/dev/script: line open again, 3 further failures "
                                                 "in between")}));
}

TEST_F(ConnectionTest, WaitsNoLongerThanAsked) {
    m_channel.failing_attempts = 1000;
    const qint64 start = m_clock.msecsSinceBoot();
    EXPECT_FALSE(m_connection.awaitOpen(70));
    EXPECT_EQ(m_clock.msecsSinceBoot() - start, 70);
}

TEST_F(ConnectionTest, AttemptsNothingOnceCancelled) {
    m_channel.cancel();
    EXPECT_FALSE(m_connection.awaitOpen(10000));
    EXPECT_EQ(m_channel.attempts, 0);
}

TEST_F(ConnectionTest, ClosesALostLineBeforeItIsOpenedAgain) {
    ASSERT_TRUE(m_connection.awaitOpen(0));
    m_connection.proveWorking();
    m_connection.lost(QStringLiteral("it hung up"));
    EXPECT_FALSE(m_connection.isOpen());
    EXPECT_EQ(m_channel.closings, 1);
    EXPECT_FALSE(m_connection.awaitOpen(Connection::FirstPauseMsecs - 1));
    EXPECT_TRUE(m_connection.awaitOpen(1));
    EXPECT_EQ(m_log.size(), 2);
}

TEST_F(ConnectionTest, KeepsQuietAboutALineThatOpensButBringsNothing) {
    ASSERT_TRUE(m_connection.awaitOpen(0));
    for (int i = 0; i < 5; ++i) {
        m_connection.lost(QStringLiteral("it hung up"));
        ASSERT_TRUE(m_connection.awaitOpen(10000));
    }
    EXPECT_EQ(m_log.size(), 3) << "lost, open again, lost: from then on it is flapping";
    m_connection.proveWorking();
    ASSERT_EQ(m_log.size(), 4);
    EXPECT_EQ(m_log.last(),
              QStringLiteral("/dev/script: line open again, 3 further failures in between"));
}

TEST_F(ConnectionTest, StartsWithAShortPauseAgainOnceBytesHaveArrived) {
    m_channel.failing_attempts = 10;
    ASSERT_TRUE(m_connection.awaitOpen(100000));
    m_connection.proveWorking();
    m_connection.lost(QStringLiteral("it hung up"));
    const qint64 start = m_clock.msecsSinceBoot();
    ASSERT_TRUE(m_connection.awaitOpen(100000));
    EXPECT_EQ(m_clock.msecsSinceBoot() - start, Connection::FirstPauseMsecs);
}

TEST_F(ConnectionTest, LeavesTheReasonOfAFirstFailureToTheCaller) {
    m_channel.failing_attempts = 1;
    EXPECT_FALSE(m_connection.open());
    EXPECT_EQ(m_log, QStringList());
}
