#include "host/session/linksession.h"

#include "tests/support/memorycontroller.h"
#include "tests/unit/line/scriptedchannel.h"
#include "tests/unit/session/datatag.h"
#include "tests/unit/session/scripteddriver.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

constexpr int TimeoutMsecs = 4000;
constexpr qint64 PatienceMsecs = 2 * TimeoutMsecs; // with one retry

class LinkSessionTest : public ::testing::Test {
protected:
    LinkSessionTest() {
        const DeviceSetting device(DEVICE_RS485, QStringLiteral("COM2"), 38400, 8, 0, 2);
        const DriverSetting timing(TimeoutMsecs, 1, 1, 20);
        auto port = std::make_unique<HostPort>(
            std::unique_ptr<ByteChannel>(&m_channel), device, timing, [](const QString&) {},
            PortOptions{nullptr, &m_clock});
        m_port = port.get();
        m_session = std::make_unique<LinkSession>(
            std::move(port), std::unique_ptr<DriverInterface>(&m_driver), m_clock);
        m_driver.on_tick = [this] { m_port->writeBytes("scan", 4); };
    }

    /** What the port hears of station 1 when it is well. */
    void hearStationOne() {
        m_port->writeBytes("scan", 4);
        m_channel.pieces = {"\x02"
                            "0100X00\x03"
                            "82\r\n"};
        char buffer[64];
        m_port->readBytes(buffer, sizeof buffer);
    }

    /** Station 2 is silent: a request to it that is out when the session changes
     *  still fails, 5 ticks later, and the error lasts until station 1 answers. Writes
     *  meanwhile are dropped. */
    void silenceStationTwo(bool error_at_first) {
        const auto silence = QStringLiteral("read station id#2 start address 00000010:DMC50 no "
                                            "response");
        m_driver.error = error_at_first ? silence : QString();
        m_driver.on_tick = [this, silence] {
            const bool polled = m_driver.sessions.last().contains(QLatin1String("2-"));
            m_ticks_alone = polled ? 0 : m_ticks_alone + 1;
            if (m_ticks_alone == 5)
                m_driver.error = silence;
            if (m_ticks_alone < 8)
                return;
            m_driver.error.clear();
            hearStationOne();
        };
        m_driver.on_write = [this](const QByteArray& data) {
            if (m_ticks_alone >= 8)
                m_driver.values[QStringLiteral("NA10")] = data;
        };
    }

    SimulatedClock m_clock;
    ScriptedChannel& m_channel = *new ScriptedChannel; // the port's
    ScriptedDriver& m_driver = *new ScriptedDriver;    // the session's
    HostPort* m_port;
    std::unique_ptr<LinkSession> m_session;
    int m_ticks_alone = 0; // since station 2 is no longer polled
};

const QByteArray Five("\x05\0\0\0", 4);

} // namespace

TEST_F(LinkSessionTest, NamesTheStationThroughThePortAndKeepsItOutOfTheAddress) {
    m_driver.values[QStringLiteral("NA10")] = Five;
    const TagResult result = m_session->read(dataTag("2-NA10", 2));
    EXPECT_TRUE(result.ok());
    EXPECT_EQ(result.data, Five);
    EXPECT_EQ(m_driver.asked, QStringList(QStringLiteral("read NA10 of 2")));
}

TEST_F(LinkSessionTest, PollsWholeDoubleWordsOfControllerDataOnly) {
    m_session->poll({dataTag("NA10.40", 1, "bit"), dataTag("PA0011000", 2, "word", 3),
                     dataTag("WRITE_QUE_SIZE0", 1, "word"), dataTag("2-LOWLATENCY", 2)});
    EXPECT_EQ(m_driver.sessions, QStringList(QStringLiteral("1-NA10_3_2 2-PA0011000_3_2")));
}

TEST_F(LinkSessionTest, LeavesTheSessionAloneWhenThereIsNothingToPoll) {
    m_session->poll({dataTag("WRITE_QUE_SIZE0", 1, "word")});
    EXPECT_EQ(m_driver.sessions, QStringList());
    EXPECT_EQ(m_session->readAll({dataTag("VVT_ERROR0", 1, "word")}).size(), 1);
}

TEST_F(LinkSessionTest, ReportsTheDriversTextWhenAReadFails) {
    m_driver.silent_stations = {1};
    m_driver.error = QStringLiteral("read station id#1 start address 00000010:DMC50 no response");
    EXPECT_EQ(m_session->read(dataTag("NA10")).error, m_driver.error);
}

TEST_F(LinkSessionTest, StillSaysSomethingWhenTheDriverHasNoText) {
    m_driver.silent_stations = {1};
    EXPECT_EQ(m_session->read(dataTag("NA10")).error, QStringLiteral("no value from station 1"));
}

TEST_F(LinkSessionTest, AsksAStationThatFailedOnlyOnceARound) {
    m_driver.silent_stations = {2};
    m_driver.error = QStringLiteral("read station id#2 start address 00000010:DMC50 no response");
    const QVector<TagResult> results = m_session->readAll(
        {dataTag("NA10", 2), dataTag("NA11", 1), dataTag("NA12", 2), dataTag("NA13", 1)});
    EXPECT_EQ(m_driver.asked,
              QStringList({QStringLiteral("read NA10 of 2"), QStringLiteral("read NA11 of 1"),
                           QStringLiteral("read NA13 of 1")}));
    EXPECT_EQ(results[2].error, m_driver.error);
    EXPECT_TRUE(results[1].ok());
    EXPECT_TRUE(results[3].ok());
}

TEST_F(LinkSessionTest, LetsTheFirstScanFinishBeforeItAsksForTheRest) {
    m_session->poll({dataTag("NA1000", 1, "dword", 101)}); // 3 frames
    m_session->readAll({dataTag("NA1000")});
    EXPECT_GE(m_port->statistics().requests, 1u + 3u + 1u);
}

TEST_F(LinkSessionTest, ReadsAWriteBackAndPutsTheSessionBack) {
    const TagDefinition tag = dataTag("NA10");
    m_session->poll({dataTag("NA20")});
    const TagResult result = m_session->write(tag, Five);
    EXPECT_TRUE(result.ok()) << qPrintable(result.error);
    EXPECT_EQ(result.data, Five);
    EXPECT_EQ(m_driver.sessions,
              QStringList({QStringLiteral("1-NA20_3_1"), QStringLiteral("1-NA10_3_1"),
                           QStringLiteral("1-NA20_3_1")}));
}

TEST_F(LinkSessionTest, AWriteLetsTheNextRequestToItsStationThrough) {
    const QByteArray request = cplFrame("0100XRN00LL00000010");
    const auto exchange = [&] {
        char buffer[64];
        m_port->control(HostPort::DiscardReceived, QVariant(0));
        m_port->writeBytes(request.constData(), request.size());
        m_port->readBytes(buffer, sizeof buffer);
    };
    for (int i = 0; i < 3; ++i)
        exchange();
    ASSERT_TRUE(m_port->stationHealth(1).held_off);
    m_session->write(dataTag("NA10"), Five);
    const quint64 fences = m_port->statistics().fences;
    exchange();
    EXPECT_EQ(m_port->statistics().fences, fences + 1);
}

TEST_F(LinkSessionTest, WaitsUntilTheDriverHasSentWhatItQueued) {
    m_driver.waiting_writes = {3, 2, 2, 1, 0};
    EXPECT_TRUE(m_session->write(dataTag("NA10"), Five).ok());
    EXPECT_EQ(m_driver.waiting_writes, QList<int>());
}

TEST_F(LinkSessionTest, GivesUpOnAQueueThatDoesNotShrink) {
    m_driver.on_write = [this](const QByteArray&) {
        m_driver.error = QStringLiteral("write station id#1 address 00000010DMC50 no response");
        m_driver.silent_stations = {1};
    };
    for (int i = 0; i < 100000; ++i)
        m_driver.waiting_writes.append(1);
    const qint64 start = m_clock.msecsSinceBoot();
    EXPECT_EQ(m_session->write(dataTag("NA10"), Five).error, m_driver.error);
    EXPECT_GE(m_clock.msecsSinceBoot() - start, PatienceMsecs);
    EXPECT_LT(m_clock.msecsSinceBoot() - start, 2 * PatienceMsecs);
}

TEST_F(LinkSessionTest, NeverTrustsAWriteThatTheDriverDropped) {
    m_driver.on_write = [](const QByteArray&) {};
    const TagResult result = m_session->write(dataTag("NA10"), Five);
    EXPECT_EQ(result.error, QStringLiteral("the controller shows another value"));
    EXPECT_EQ(result.data, QByteArray(4, '\0'));
    EXPECT_TRUE(m_session->write(dataTag("NA10"), Five, false).ok());
}

TEST_F(LinkSessionTest, ReportsTheWritesErrorThoughTheDriverShowsItOnlyForAMoment) {
    int ticks = 0;
    m_driver.on_write = [](const QByteArray&) {};
    m_driver.on_tick = [&] {
        m_port->writeBytes("scan", 4);
        ++ticks;
        m_driver.error = ticks == 2 ? QStringLiteral("write station id#1 address 00000010end code "
                                                     "4AH")
                                    : QString();
    };
    EXPECT_EQ(m_session->write(dataTag("NA10"), Five, false).error,
              QStringLiteral("write station id#1 address 00000010end code 4AH"));
}

TEST_F(LinkSessionTest, TakesAWriteThatArrivedWithARetryForASuccess) {
    int ticks = 0;
    m_driver.on_tick = [&] {
        m_port->writeBytes("scan", 4);
        m_driver.error = ++ticks == 2 ? QStringLiteral("write station id#1 ...") : QString();
    };
    EXPECT_TRUE(m_session->write(dataTag("NA10"), Five).ok());
}

TEST_F(LinkSessionTest, DoesNotWriteWhileTheLinkIsInError) {
    m_driver.error = QStringLiteral("read station id#1 start address 00000010:DMC50 no response");
    EXPECT_EQ(m_session->write(dataTag("NA10"), Five).error, m_driver.error);
    EXPECT_EQ(m_driver.asked, QStringList());
}

TEST_F(LinkSessionTest, NamesTheStationOfAWriteThroughThePort) {
    EXPECT_TRUE(m_session->write(dataTag("2-NA10", 2), Five).ok());
    EXPECT_EQ(m_driver.asked,
              QStringList({QStringLiteral("write NA10 of 2"), QStringLiteral("read NA10 of 2")}));
}

TEST_F(LinkSessionTest, WritesToOneStationWhileTheErrorOfAnotherStands) {
    silenceStationTwo(true);
    m_session->poll({dataTag("NA10"), dataTag("NA10", 2)});
    const TagResult result = m_session->write(dataTag("NA10"), Five);
    EXPECT_EQ(result.error, QString());
    EXPECT_EQ(result.data, Five);
}

TEST_F(LinkSessionTest, WaitsForTheEndOfARequestToASilentStationBeforeItWrites) {
    silenceStationTwo(false);
    m_session->poll({dataTag("NA10"), dataTag("NA10", 2)});
    const TagResult result = m_session->write(dataTag("NA10"), Five);
    EXPECT_EQ(result.error, QString());
    EXPECT_EQ(result.data, Five);
}

TEST_F(LinkSessionTest, WritesInTheEndThoughTheStationIsNotHeard) {
    m_session->poll({dataTag("NA10"), dataTag("NA10", 2)});
    const qint64 start = m_clock.msecsSinceBoot();
    EXPECT_TRUE(m_session->write(dataTag("NA10"), Five).ok());
    EXPECT_GE(m_clock.msecsSinceBoot() - start, 2 * PatienceMsecs);
}

TEST_F(LinkSessionTest, HandsTheDriverNothingAfterTheDeadline) {
    m_session->poll({dataTag("NA10"), dataTag("NA10", 2)});
    const qint64 deadline = m_clock.msecsSinceBoot() + 500;
    EXPECT_EQ(m_session->write(dataTag("NA10"), Five, true, deadline).error,
              QStringLiteral("not sent in time"));
    EXPECT_EQ(m_clock.msecsSinceBoot(), deadline);
    EXPECT_EQ(m_driver.asked, QStringList());
}

TEST_F(LinkSessionTest, DoesNotBlameAWriteForAnotherStationsFailedWrite) {
    int ticks = 0;
    m_driver.on_write = [](const QByteArray&) {};
    m_driver.on_tick = [&] {
        m_port->writeBytes("scan", 4);
        m_driver.error =
            ++ticks == 2 ? QStringLiteral("write station id#2 address 00000010DMC50 no response")
                         : QString();
    };
    EXPECT_EQ(m_session->write(dataTag("NA10"), Five, false).error, QString());
}

TEST_F(LinkSessionTest, PutsTheSessionBackAfterAWriteThatFails) {
    const QStringList there_and_back = {QStringLiteral("1-NA20_3_1"), QStringLiteral("1-NA10_3_1"),
                                        QStringLiteral("1-NA20_3_1")};
    m_session->poll({dataTag("NA20")});
    m_driver.error = QStringLiteral("read station id#1 start address 00000010:DMC50 no response");
    EXPECT_FALSE(m_session->write(dataTag("NA10"), Five).ok());
    EXPECT_EQ(m_driver.sessions, there_and_back) << "not made";

    m_driver.error.clear();
    m_driver.sessions = there_and_back.mid(0, 1);
    m_driver.takes_writes = false;
    EXPECT_FALSE(m_session->write(dataTag("NA10"), Five).ok());
    EXPECT_EQ(m_driver.sessions, there_and_back) << "refused";

    m_driver.sessions = there_and_back.mid(0, 1);
    m_driver.takes_writes = true;
    m_driver.on_write = [this](const QByteArray&) { m_session->cancel(); };
    EXPECT_FALSE(m_session->write(dataTag("NA10"), Five).ok());
    EXPECT_EQ(m_driver.sessions, there_and_back) << "cancelled";
}

TEST_F(LinkSessionTest, WritesTheDriversOwnTagsWhateverTheStateOfTheLine) {
    m_driver.error = QStringLiteral("read station id#2 start address 00000010:DMC50 no response");
    const qint64 start = m_clock.msecsSinceBoot();
    EXPECT_TRUE(m_session->write(dataTag("VVT_PROG_ID0", 1, "word"), QByteArray(2, '\1')).ok());
    EXPECT_EQ(m_clock.msecsSinceBoot(), start);
}

TEST_F(LinkSessionTest, ReportsAWriteThatTheDriverRefuses) {
    m_driver.takes_writes = false;
    m_driver.on_write = [this](const QByteArray&) {
        m_driver.error = QStringLiteral("can not open database");
    };
    EXPECT_EQ(m_session->write(dataTag("NA10"), Five).error,
              QStringLiteral("can not open database"));
}

TEST_F(LinkSessionTest, WritesSpecialAddressesWithoutReadingThemBack) {
    EXPECT_TRUE(m_session->write(dataTag("VVT_PROG_ID0", 1, "word"), QByteArray(2, '\1')).ok());
    EXPECT_EQ(m_driver.asked, QStringList(QStringLiteral("write VVT_PROG_ID0 of 1")));
}

TEST_F(LinkSessionTest, RemembersAnErrorUntilItsStationAnswers) {
    m_driver.error = QStringLiteral("read station id#2 start address 00000010:checksum error");
    EXPECT_EQ(m_session->lookForError(), m_driver.error);
    const QString seen = m_driver.error;
    m_driver.error.clear();
    EXPECT_EQ(m_session->lookForError(), QString());
    EXPECT_EQ(m_session->stationError(2), seen);
    EXPECT_EQ(m_session->stationError(1), QString());
    EXPECT_EQ(m_session->stationAgeMsecs(2), -1);

    m_port->writeBytes("ask", 3);
    m_channel.pieces = {"\x02"
                        "0200X00\x03"
                        "81\r\n"};
    char buffer[64];
    ASSERT_EQ(m_port->readBytes(buffer, sizeof buffer), 13);
    EXPECT_EQ(m_session->stationError(2), QString());
    EXPECT_GE(m_session->stationAgeMsecs(2), 0);
    EXPECT_EQ(m_session->stationAgeMsecs(1), -1);
}

TEST_F(LinkSessionTest, StopsWaitingWhenCancelled) {
    m_driver.error = QStringLiteral("read station id#1 ...");
    m_session->cancel();
    const qint64 start = m_clock.msecsSinceBoot();
    EXPECT_EQ(m_session->read(dataTag("NA10")).error, QStringLiteral("interrupted"));
    EXPECT_EQ(m_session->write(dataTag("NA10"), Five).error, QStringLiteral("interrupted"));
    EXPECT_LE(m_clock.msecsSinceBoot() - start, 5);
}
