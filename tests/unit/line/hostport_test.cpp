#include "host/line/hostport.h"

#include "host/line/serialchannel.h"
#include "tests/support/simulatedclock.h"
#include "tests/unit/line/ptypair.h"
#include "tests/unit/line/scriptedchannel.h"
#include "trace/frametrace.h"

#include <QBuffer>
#include <QStringList>

#include <gtest/gtest.h>

#include <thread>

using namespace host;

namespace {

constexpr int TimeoutMsecs = 3000;

DeviceSetting device(int baud = 38400) {
    return DeviceSetting(DEVICE_RS485, QStringLiteral("COM2"), baud, 8, 0, 2);
}

DriverSetting timing() {
    return DriverSetting(TimeoutMsecs, 1, 7, 20);
}

class HostPortTest : public ::testing::Test {
protected:
    void request(const QByteArray& bytes) {
        m_port.control(HostPort::DiscardReceived, QVariant(0));
        m_port.writeBytes(bytes.constData(), bytes.size());
    }

    QByteArray read() {
        char buffer[420];
        return QByteArray(buffer, m_port.readBytes(buffer, sizeof buffer));
    }

    SimulatedClock m_clock;
    QStringList m_log;
    ScriptedChannel& m_channel = *new ScriptedChannel; // m_port's
    HostPort m_port{std::unique_ptr<ByteChannel>(&m_channel), device(), timing(),
                    [this](const QString& line) { m_log += line; }, PortOptions{nullptr, &m_clock}};
};

} // namespace

TEST_F(HostPortTest, AnswersWithTheSettingsThatItWasGiven) {
    AbstractDeviceInterface& port = m_port;
    EXPECT_EQ(port.deviceSetting()->string, QStringLiteral("COM2"));
    EXPECT_EQ(port.driverSetting()->timeout, TimeoutMsecs);
    EXPECT_EQ(port.responseTimeout(), TimeoutMsecs);
    EXPECT_EQ(port.retryCount(), 1u);
    EXPECT_EQ(port.frameInterval(), 20u);
    EXPECT_EQ(port.stationId(), 7);
    port.setStationId(3);
    EXPECT_EQ(port.stationId(), 3);
}

TEST_F(HostPortTest, OpensWithTheFirstWrite) {
    EXPECT_FALSE(m_port.isOpen());
    EXPECT_EQ(m_port.writeBytes("ask", 3), 3);
    EXPECT_TRUE(m_port.isOpen());
    EXPECT_EQ(m_channel.sent, QList<QByteArray>({"ask"}));
}

TEST_F(HostPortTest, SaysWithItsNameWhyItDoesNotOpen) {
    m_channel.failing_attempts = 1;
    EXPECT_FALSE(m_port.open());
    EXPECT_EQ(m_port.lastError(), QStringLiteral("/dev/script: no such device"));
}

TEST_F(HostPortTest, WaitsTheResponseTimeoutForAByteAndReturnsWhatIsThere) {
    request("ask");
    m_channel.pieces = {"some", "more\n"};
    EXPECT_EQ(read(), QByteArray("some"));
    EXPECT_EQ(read(), QByteArray("more\n"));
    EXPECT_EQ(read(), QByteArray());
    EXPECT_EQ(m_channel.read_timeouts, QList<int>({TimeoutMsecs, TimeoutMsecs, TimeoutMsecs}));
}

TEST_F(HostPortTest, DiscardsBeforeEachRequestWithoutWaitingAfterACompleteLine) {
    request("ask");
    m_channel.pieces = {"answer\r\n"};
    read();
    m_channel.read_timeouts.clear();
    request("ask");
    EXPECT_EQ(m_channel.discards, 1); // the first request found no open line
    EXPECT_EQ(m_channel.read_timeouts, QList<int>());
}

TEST_F(HostPortTest, WaitsForAQuietLineAfterAnExchangeWithoutACompleteLine) {
    request("ask");
    m_channel.pieces = {"ans"};
    read();
    m_channel.read_timeouts.clear();
    m_channel.pieces = {"w", "er\r\n", ""};
    request("ask");
    EXPECT_EQ(m_channel.read_timeouts, QList<int>({20, 20, 20}));
    EXPECT_EQ(m_channel.pieces, QList<QByteArray>());

    request("next"); // silence counts as well
    EXPECT_EQ(m_channel.read_timeouts.size(), 4);
}

TEST_F(HostPortTest, IgnoresOtherControlCodes) {
    m_port.open();
    m_port.control(1, QVariant(0));
    EXPECT_EQ(m_channel.discards, 0);
}

TEST_F(HostPortTest, ReadsNothingFromALostLineAndOpensItForTheNextRequest) {
    request("ask");
    m_channel.pieces = {QByteArray()};
    EXPECT_EQ(read(), QByteArray());
    EXPECT_FALSE(m_port.isOpen());
    EXPECT_EQ(read(), QByteArray());
    EXPECT_EQ(m_channel.read_timeouts.size(), 1) << "no wait on a line that is not there";

    request("again");
    EXPECT_EQ(m_channel.sent.last(), QByteArray("again"));
    EXPECT_EQ(m_log, QStringList({QStringLiteral("/dev/script: line lost: it hung up"),
                                  QStringLiteral("/dev/script: line open again, 0 further failures "
                                                 "in between")}));
}

TEST_F(HostPortTest, TakesAResponseTimeoutToFailOnADeadLine) {
    m_channel.failing_attempts = 1000;
    const qint64 start = m_clock.msecsSinceBoot();
    EXPECT_EQ(m_port.writeBytes("ask", 3), 0);
    EXPECT_EQ(m_clock.msecsSinceBoot() - start, TimeoutMsecs);
    EXPECT_EQ(m_channel.sent, QList<QByteArray>());
}

TEST_F(HostPortTest, TakesARefusedWriteForALostLine) {
    m_channel.refuses_writes = true;
    EXPECT_EQ(m_port.writeBytes("ask", 3), 0);
    EXPECT_FALSE(m_port.isOpen());
}

TEST_F(HostPortTest, FailsAtOnceWhenCancelled) {
    m_channel.failing_attempts = 1000;
    m_port.cancel();
    const qint64 start = m_clock.msecsSinceBoot();
    EXPECT_EQ(m_port.writeBytes("ask", 3), 0);
    EXPECT_EQ(m_clock.msecsSinceBoot(), start);
    EXPECT_EQ(m_log, QStringList());
}

TEST_F(HostPortTest, CountsExchangesByTheirEnd) {
    request("first");
    m_channel.pieces = {"yes\r\n"};
    read();
    request("second");
    m_channel.pieces = {"half"};
    read();
    request("second");
    read();
    m_channel.stale = "late";
    request("third");

    const LineStatistics counted = m_port.statistics();
    EXPECT_EQ(counted.requests, 4u);
    EXPECT_EQ(counted.replies, 1u);
    EXPECT_EQ(counted.incomplete, 1u);
    EXPECT_EQ(counted.silent, 1u);
    EXPECT_EQ(counted.repeats, 1u);
    EXPECT_EQ(counted.bytes_sent, 5u + 6u + 6u + 5u);
    EXPECT_EQ(counted.bytes_received, 5u + 4u + 4u);
    EXPECT_GE(counted.longest_reply_usecs, 0);
    EXPECT_EQ(counted.reply_usecs, counted.longest_reply_usecs);
}

TEST(HostPortTrace, WritesRequestsRepliesAndWhatWasThrownAway) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    trace::FrameTrace frame_trace(&file);
    auto owned = std::make_unique<ScriptedChannel>();
    ScriptedChannel& channel = *owned;
    HostPort port(
        std::move(owned), device(), timing(), [](const QString&) {}, PortOptions{&frame_trace});
    char buffer[64];

    port.writeBytes("ask\r\n", 5);
    channel.pieces = {"an", "swer\r\n"};
    port.readBytes(buffer, sizeof buffer);
    port.readBytes(buffer, sizeof buffer);
    channel.stale = "late";
    port.control(HostPort::DiscardReceived, QVariant(0));

    const QList<QByteArray> lines = file.data().trimmed().split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].contains("ask"));
    EXPECT_TRUE(lines[1].contains("answer"));
    EXPECT_TRUE(lines[2].contains("late"));
}

TEST(HostPortOnAPty, NeverLetsALateReplyAnswerTheNextRequest) {
    PtyPair pty;
    HostPort port(std::make_unique<SerialChannel>(pty.slavePath(), device()), device(),
                  DriverSetting(50, 0, 1, 10), [](const QString&) {});
    char buffer[64];
    ASSERT_EQ(port.writeBytes("one\n", 4), 4);
    EXPECT_EQ(pty.receive(4), QByteArray("one\n"));
    EXPECT_EQ(port.readBytes(buffer, sizeof buffer), 0);

    pty.send("late\n");
    port.control(HostPort::DiscardReceived, QVariant(0));
    ASSERT_EQ(port.writeBytes("two\n", 4), 4);
    EXPECT_EQ(pty.receive(4), QByteArray("two\n"));
    pty.send("2\n");
    ASSERT_EQ(port.readBytes(buffer, sizeof buffer), 2);
    EXPECT_EQ(QByteArray(buffer, 2), QByteArray("2\n"));
}

TEST(HostPortOnAPty, CancelUnblocksAThreadThatWaitsForAReply) {
    PtyPair pty;
    HostPort port(std::make_unique<SerialChannel>(pty.slavePath(), device()), device(),
                  DriverSetting(60000, 0, 1, 10), [](const QString&) {});
    std::thread poller([&] {
        char buffer[64];
        port.writeBytes("ask", 3);
        EXPECT_EQ(port.readBytes(buffer, sizeof buffer), 0);
    });
    EXPECT_EQ(pty.receive(3), QByteArray("ask"));
    port.cancel();
    poller.join();
}
