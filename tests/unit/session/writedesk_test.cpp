#include "host/session/writedesk.h"

#include "tests/unit/line/scriptedchannel.h"
#include "tests/unit/session/datatag.h"
#include "tests/unit/session/scripteddriver.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace host;

namespace {

constexpr int WithinMsecs = 1000;

const QByteArray Five("\x05\0\0\0", 4);

class WriteDeskTest : public ::testing::Test {
protected:
    WriteDeskTest() {
        const DeviceSetting device(DEVICE_RS485, QStringLiteral("COM2"), 38400, 8, 0, 2);
        auto port = std::make_unique<HostPort>(
            std::make_unique<ScriptedChannel>(), device, DriverSetting(3000, 1, 1, 20),
            [](const QString&) {}, PortOptions{nullptr, &m_clock});
        m_port = port.get();
        m_driver.on_tick = [this] { m_port->writeBytes("scan", 4); };
        m_session = std::make_unique<LinkSession>(
            std::move(port), std::unique_ptr<DriverInterface>(&m_driver), m_clock);
        makeDesk(writeJournalPath(m_directory.path()));
    }

    void makeDesk(const QString& journal_path) {
        m_desk = std::make_unique<WriteDesk>(
            *m_session, m_board, m_clock,
            MomentSource{[] { return qint64(0); }, [] { return qint64(1234); }}, journal_path);
    }

    std::shared_ptr<WriteOrder> put() {
        auto order =
            std::make_shared<WriteOrder>(0, Five, QStringLiteral("a test"), WithinMsecs, m_clock);
        m_desk->put(order);
        return order;
    }

    WriteJournal::Line onlyLine() const {
        const auto lines = *(*WriteJournal::open(writeJournalPath(m_directory.path())))->lines();
        EXPECT_EQ(lines.size(), 1);
        return lines.value(0);
    }

    const QTemporaryDir m_directory;
    SimulatedClock m_clock;
    ScriptedDriver& m_driver = *new ScriptedDriver; // the session's
    HostPort* m_port;
    ValueBoard m_board{{dataTag("NA10")}, m_clock};
    std::unique_ptr<LinkSession> m_session;
    std::unique_ptr<WriteDesk> m_desk;
};

} // namespace

TEST_F(WriteDeskTest, ConfirmsWhatIsReadBackAsItWasWritten) {
    m_board.bring(0, QByteArray("\x03\0\0\0", 4), {1, 1});
    const auto order = put();
    EXPECT_TRUE(m_desk->hasOrders());
    EXPECT_EQ(m_desk->carryOutNext(), &m_board.tag(0));
    EXPECT_FALSE(m_desk->hasOrders());
    EXPECT_EQ(m_desk->carryOutNext(), nullptr);
    EXPECT_EQ(order->result()->outcome, WriteOutcome::Confirmed);
    EXPECT_EQ(order->result()->read_back, Five);
    const WriteJournal::Line line = onlyLine();
    EXPECT_EQ(line.entry.begun_utc_msecs, 1234);
    EXPECT_EQ(line.entry.tag, QString("NA10"));
    EXPECT_EQ(line.entry.old_value, QString("3"));
    EXPECT_EQ(line.entry.new_value, QString("5"));
    EXPECT_EQ(line.end.outcome, QString("confirmed"));
    EXPECT_EQ(line.end.read_back, QString("5"));
}

TEST_F(WriteDeskTest, RefusesWithTheReasonWhatTheControllerDoesNotTake) {
    m_driver.on_write = [](const QByteArray&) {};
    const auto order = put();
    m_desk->carryOutNext();
    EXPECT_EQ(order->result()->outcome, WriteOutcome::Refused);
    EXPECT_EQ(order->result()->why, QString("the controller shows another value"));
    EXPECT_EQ(onlyLine().end.outcome, QString("refused"));
    EXPECT_EQ(onlyLine().end.read_back, QString("0"));
    EXPECT_EQ(onlyLine().end.why, QString("the controller shows another value"));
}

TEST_F(WriteDeskTest, HasTheLineInTheJournalBeforeTheDriverHearsOfTheWrite) {
    QString outcome;
    m_driver.on_write = [&](const QByteArray&) { outcome = onlyLine().end.outcome; };
    put();
    m_desk->carryOutNext();
    EXPECT_EQ(outcome, QString("unknown"));
}

TEST_F(WriteDeskTest, DoesNotSendWhatHasExpired) {
    const auto order = put();
    m_clock.advance(WithinMsecs);
    m_desk->carryOutNext();
    EXPECT_EQ(order->result()->outcome, WriteOutcome::Expired);
    EXPECT_EQ(m_driver.asked, QStringList());
    EXPECT_EQ(onlyLine().end.outcome, QString("expired"));
}

TEST_F(WriteDeskTest, LetsAWriteExpireWhoseTurnDoesNotCome) {
    m_driver.error = QStringLiteral("read station id#2 start address 00000010:DMC50 no response");
    const qint64 start = m_clock.msecsSinceBoot();
    const auto order = put();
    m_desk->carryOutNext();
    EXPECT_EQ(order->result()->outcome, WriteOutcome::Expired);
    EXPECT_EQ(m_clock.msecsSinceBoot() - start, WithinMsecs);
    EXPECT_EQ(m_driver.asked, QStringList());
}

TEST_F(WriteDeskTest, LetsAWriteExpireThatTheDriverDoesNotSend) {
    for (int i = 0; i < 2 * WithinMsecs; ++i)
        m_driver.waiting_writes.append(1);
    const qint64 start = m_clock.msecsSinceBoot();
    const auto order = put();
    m_desk->carryOutNext();
    EXPECT_EQ(order->result()->outcome, WriteOutcome::Expired);
    EXPECT_LE(m_clock.msecsSinceBoot() - start, WithinMsecs + 1);
}

TEST_F(WriteDeskTest, PutsDownWhatItsOwnerWasTold) {
    const auto order = put();
    m_driver.on_write = [&](const QByteArray& data) {
        m_driver.values[QStringLiteral("NA10")] = data;
        order->finish({WriteOutcome::Expired, QByteArray(), QStringLiteral("too late")});
    };
    m_desk->carryOutNext();
    EXPECT_EQ(order->result()->outcome, WriteOutcome::Expired);
    EXPECT_EQ(onlyLine().end.outcome, QString("expired"));
}

TEST_F(WriteDeskTest, RefusesWhatCannotBePutDown) {
    makeDesk(QStringLiteral("/nowhere/journal.sqlite"));
    const auto order = put();
    m_desk->carryOutNext();
    EXPECT_EQ(order->result()->outcome, WriteOutcome::Refused);
    EXPECT_TRUE(order->result()->why.startsWith(QLatin1String("/nowhere/journal.sqlite: ")));
    EXPECT_EQ(m_driver.asked, QStringList());
}

TEST_F(WriteDeskTest, RefusesWhatWaitsAndWhatComesOnceItIsClosed) {
    const auto waiting = put();
    m_desk->close();
    const auto late = put();
    EXPECT_EQ(waiting->result()->outcome, WriteOutcome::Refused);
    EXPECT_EQ(late->result()->outcome, WriteOutcome::Refused);
    EXPECT_EQ(m_desk->carryOutNext(), nullptr);
    EXPECT_EQ(m_driver.asked, QStringList());
    EXPECT_EQ(onlyLine().end.outcome, QString("refused")) << "of the one that waited";
}
