#include "simulator/linesession.h"

#include "tests/unit/simulator/fakeline.h"
#include "tests/unit/simulator/wire.h"

#include <QBuffer>

#include <gtest/gtest.h>

using namespace simulator;

namespace {

constexpr qint64 Millisecond = 1000000;
constexpr double Character38400 = 11.0 / 38400 * 1e9; // ns

/** A line with the stations 1 and 2 on fake time. */
class SimulatorLineSession : public ::testing::Test {
protected:
    SimulatorLineSession() {
        for (quint8 id : {1, 2})
            m_stations[id] = std::make_unique<Station>(id);
        build({});
    }

    void build(const std::vector<const char*>& faults, LineTiming timing = {}) {
        std::vector<Fault> parsed;
        for (const char* fault : faults)
            parsed.push_back(*parseFault(QLatin1String(fault)));
        m_plan = std::make_unique<FaultPlan>(parsed, 1);
        m_session = std::make_unique<LineSession>(
            SessionParts{m_port, m_clock, m_stations, *m_plan, timing, m_trace.get(),
                         [this](const QString& text) { m_log += shown(text) + "\n"; }});
    }

    /** Hands bytes over and returns what came back. */
    std::string exchange(const QByteArray& bytes) {
        m_session->receive(bytes);
        return shown(m_port.takeBytes());
    }

    /** When the first and the last reply bytes left, in ns since @p start. */
    std::pair<qint64, qint64> replyTimes(qint64 start) const {
        return {m_port.written().front().time - start, m_port.written().back().time - start};
    }

    FakeLineClock m_clock;
    RecordingPort m_port{m_clock};
    StationMap m_stations;
    std::unique_ptr<FaultPlan> m_plan;
    std::unique_ptr<trace::FrameTrace> m_trace;
    std::unique_ptr<LineSession> m_session;
    std::string m_log;
};

const char CheckRequest[] = "<02>0100XRN00LL00002016<03>C1<0D><0A>";
const char CheckReply[] = "<02>0100X0000000000<03>02<0D><0A>";

} // namespace

TEST_F(SimulatorLineSession, AnswersItsStationsOnly) {
    EXPECT_EQ(exchange(wire(CheckRequest)), CheckReply);
    EXPECT_EQ(exchange(readRequest(2, 0x2016, 1)), "<02>0200X0000000000<03>01<0D><0A>");
    EXPECT_EQ(exchange(readRequest(3, 0x2016, 1)), "");
    EXPECT_EQ(m_session->counters().other_stations, 1u);
}

TEST_F(SimulatorLineSession, StaysSilentToABadChecksum) {
    EXPECT_EQ(exchange(wire("<02>0100XRN00LL00002016<03>C2<0D><0A>")), "");
    EXPECT_EQ(m_session->counters().bad_checksums, 1u);
    EXPECT_EQ(m_log, "bad checksum, ignored: <02>0100XRN00LL00002016<03>C2<0D><0A>\n");
}

TEST_F(SimulatorLineSession, RefusesBadContentsWithAnEndCode) {
    EXPECT_EQ(exchange(framed("0100XRN00LL")), shown(framed("0100X43")));
    EXPECT_EQ(exchange(framed("0200XQQ")), shown(framed("0200X41")));
    EXPECT_EQ(m_session->counters().refused, 2u);
    EXPECT_EQ(m_log, "station 1: item count out of range, refused with end code 43H\n"
                     "station 2: unknown command, refused with end code 41H\n");
}

TEST_F(SimulatorLineSession, WritesAndReadsAllThreeCommands) {
    EXPECT_EQ(exchange(framed("0100XWGLL000001000000000A0000000B")), shown(framed("0100X00")));
    EXPECT_EQ(exchange(framed("0100XWN00LL000001020000000C")), shown(framed("0100X00")));
    EXPECT_EQ(exchange(readRequest(1, 0x100, 3)), shown(framed("0100X000000000A0000000B0000000C")));
    EXPECT_EQ(m_log, "station 1: WG 2 from 0x00000100\n"
                     "station 1: WN 1 from 0x00000102\n"
                     "station 1: RN 3 from 0x00000100\n");
}

TEST_F(SimulatorLineSession, AnswersDribbledGluedAndNoisyRequests) {
    const QByteArray request = wire(CheckRequest);
    std::string replies;
    for (char byte : request)
        replies += exchange(QByteArray(1, byte));
    EXPECT_EQ(replies, CheckReply);
    EXPECT_EQ(exchange(request + request), std::string(CheckReply) + CheckReply);
    EXPECT_EQ(exchange("noise" + request.left(10) + request), CheckReply);
    EXPECT_EQ(m_session->counters().noise_bytes, 15u);
}

TEST_F(SimulatorLineSession, WithoutASpeedTheReplyComesAtOnceInOneWrite) {
    const qint64 start = m_clock.now();
    m_session->receive(wire(CheckRequest));
    ASSERT_EQ(m_port.written().size(), 1u);
    EXPECT_EQ(m_port.written().front().time, start);
    EXPECT_EQ(m_clock.sleeps(), 0);
}

TEST_F(SimulatorLineSession, ARequestOccupiesTheLineBeforeItsReply) {
    build({}, {38400, 5});
    const qint64 start = m_clock.now();
    m_session->receive(wire(CheckRequest)); // 25 characters
    const double reply_start = 25 * Character38400 + 5.0 * Millisecond;
    const auto [first, last] = replyTimes(start);
    EXPECT_GT(double(first), reply_start);
    EXPECT_NEAR(double(last), reply_start + 21 * Character38400, 2);
}

TEST_F(SimulatorLineSession, CharactersLeaveAtTheSpeedOfTheLine) {
    build({}, {38400, 0});
    const qint64 start = m_clock.now();
    m_session->receive(readRequest(1, 0x1000, 50)); // 417 characters
    qint64 sent = 417;
    for (const RecordingPort::Written& part : m_port.written()) {
        sent += part.bytes.size();
        EXPECT_LE(part.bytes.size(), 3);
        EXPECT_NEAR(double(part.time - start), double(sent) * Character38400, 2);
    }
    EXPECT_EQ(sent, 417 + 413);
}

TEST_F(SimulatorLineSession, PacingDoesNotDriftOverManyExchanges) {
    build({}, {38400, 1.5});
    const QByteArray request = readRequest(1, 0x1000, 50);
    const qint64 start = m_clock.now();
    for (int i = 0; i < 100; ++i)
        m_session->receive(request);
    const double exchange_time = (417 + 413) * Character38400 + 1.5 * Millisecond;
    EXPECT_NEAR(double(m_clock.now() - start), 100 * exchange_time, 500);
}

TEST_F(SimulatorLineSession, ALateWakeUpDelaysNothingAfterIt) {
    build({}, {9600, 0});
    const qint64 start = m_clock.now();
    m_session->receive(wire(CheckRequest).left(24));
    m_clock.advance(30 * Millisecond); // past the wire time of the 24 characters
    m_session->receive(wire(CheckRequest).mid(24));
    const double character = 11.0 / 9600 * 1e9;
    EXPECT_NEAR(double(replyTimes(start).second), 30.0 * Millisecond + 22 * character, 2);
}

TEST_F(SimulatorLineSession, GluedRequestsAreAnsweredOneAfterTheOther) {
    build({}, {38400, 5});
    const qint64 start = m_clock.now();
    m_session->receive(wire(CheckRequest).repeated(2));
    EXPECT_NEAR(double(replyTimes(start).second), 2 * (46 * Character38400 + 5.0 * Millisecond), 4);
}

TEST_F(SimulatorLineSession, MovingValuesFollowTheClock) {
    m_stations[1]->setMoving(0x50, {MovingValue::Shape::Counter, 0, 0, 1, 1});
    EXPECT_EQ(exchange(readRequest(1, 0x50, 1)), shown(framed("0100X0000000000")));
    m_clock.advance(3000 * Millisecond);
    EXPECT_EQ(exchange(readRequest(1, 0x50, 1)), shown(framed("0100X0000000003")));
}

TEST_F(SimulatorLineSession, FaultsStrikeAndAreLogged) {
    build({"end-code:value=0x4A,on=2,station=1", "silence:on=3,station=1"});
    EXPECT_EQ(exchange(wire(CheckRequest)), CheckReply);
    EXPECT_EQ(exchange(wire(CheckRequest)), shown(framed("0100X4A")));
    EXPECT_EQ(exchange(wire(CheckRequest)), "");
    EXPECT_EQ(exchange(wire(CheckRequest)), CheckReply);
    EXPECT_EQ(m_session->counters().faults, 2u);
    EXPECT_EQ(m_log, "station 1: RN 1 from 0x00002016\n"
                     "station 1: RN 1 from 0x00002016, fault end-code value=74\n"
                     "station 1: RN 1 from 0x00002016, fault silence\n"
                     "station 1: RN 1 from 0x00002016\n");
}

TEST_F(SimulatorLineSession, AWriteThatIsNotHeardIsNotCarriedOut) {
    for (const char* fault : {"silence", "close:ms=0", "end-code"}) {
        build({fault});
        exchange(framed("0100XWN00LL000001000000000C"));
        EXPECT_EQ(m_stations[1]->read(0x100, 0), 0u) << fault;
    }
}

TEST_F(SimulatorLineSession, AWriteWhoseReplyIsSpoiltIsCarriedOut) {
    quint32 value = 0;
    for (const char* fault : {"late", "split", "dribble", "checksum", "wrong-station", "truncate",
                              "noise-before", "noise-after", "echo"}) {
        build({fault});
        ++value;
        exchange(
            framed("0100XWN00LL00000100" + QByteArray::number(value, 16).rightJustified(8, '0')));
        EXPECT_EQ(m_stations[1]->read(0x100, 0), value) << fault;
    }
}

TEST_F(SimulatorLineSession, ALateReplyComesThatMuchLater) {
    build({"late:ms=400"}, {38400, 5});
    const qint64 start = m_clock.now();
    m_session->receive(wire(CheckRequest));
    EXPECT_TRUE(m_port.written().empty());
    m_clock.advance(400 * Millisecond);
    m_session->sendDue();
    EXPECT_NEAR(double(replyTimes(start).second), 46 * Character38400 + 405.0 * Millisecond, 2);
}

TEST_F(SimulatorLineSession, ALateStationLeavesTheWireToTheOthers) {
    build({"late:station=1,ms=400,on=1"});
    m_session->receive(wire(CheckRequest));
    m_session->receive(readRequest(1, 0x1000, 2)); // it is not late, but busy
    EXPECT_EQ(m_session->msecsToDue(20), 20);
    EXPECT_NE(exchange(readRequest(2, 0x1000, 1)).find("<02>0200X00"), std::string::npos);
    m_clock.advance(390 * Millisecond);
    m_session->sendDue();
    EXPECT_TRUE(m_port.written().empty());
    EXPECT_EQ(m_session->msecsToDue(20), 10);
    m_clock.advance(10 * Millisecond);
    EXPECT_EQ(m_session->msecsToDue(20), 0);
    m_session->sendDue();
    ASSERT_EQ(m_port.written().size(), 2u);
    EXPECT_EQ(shown(m_port.written()[0].bytes), CheckReply);
    EXPECT_EQ(m_port.written()[1].bytes.size(), 29);
    EXPECT_EQ(m_session->msecsToDue(20), 20);
}

TEST_F(SimulatorLineSession, ASplitReplyPausesBetweenItsParts) {
    build({"split:at=6,ms=30"});
    const qint64 start = m_clock.now();
    m_session->receive(wire(CheckRequest));
    ASSERT_EQ(m_port.written().size(), 2u);
    EXPECT_EQ(shown(m_port.written()[0].bytes), "<02>0100X");
    EXPECT_EQ(m_port.written()[0].time, start);
    EXPECT_EQ(m_port.written()[1].time, start + 30 * Millisecond);
}

TEST_F(SimulatorLineSession, ADribbledReplyPausesBetweenBytes) {
    build({"dribble:ms=10"});
    const qint64 start = m_clock.now();
    m_session->receive(wire(CheckRequest));
    ASSERT_EQ(m_port.written().size(), 21u);
    EXPECT_EQ(replyTimes(start).second, 200 * Millisecond);
}

TEST_F(SimulatorLineSession, AnEchoComesBeforeTheTurnaround) {
    build({"echo"}, {38400, 5});
    const qint64 start = m_clock.now();
    m_session->receive(wire(CheckRequest));
    EXPECT_EQ(shown(m_port.written().front().bytes), CheckRequest);
    EXPECT_NEAR(double(m_port.written().front().time - start), 25 * Character38400, 2);
    EXPECT_NEAR(double(replyTimes(start).second), 46 * Character38400 + 5.0 * Millisecond, 2);
}

TEST_F(SimulatorLineSession, AClosedLineIsClosedForItsTime) {
    build({"close:ms=250"});
    const qint64 start = m_clock.now();
    EXPECT_EQ(exchange(wire(CheckRequest)), "");
    EXPECT_FALSE(m_port.isOpen());
    EXPECT_EQ(m_clock.now() - start, 250 * Millisecond);
}

TEST_F(SimulatorLineSession, AStoppedSessionSendsNothing) {
    build({"late:station=2,ms=1000"});
    m_session->receive(readRequest(2, 0x1000, 1));
    m_session->stop();
    EXPECT_EQ(exchange(wire(CheckRequest)), "");
    m_clock.advance(1000 * Millisecond);
    m_session->sendDue();
    EXPECT_EQ(exchange(QByteArray()), "");
    EXPECT_EQ(m_session->counters().replies, 0u);
    EXPECT_EQ(m_clock.sleeps(), 0);
}

TEST_F(SimulatorLineSession, LongWaitsAreSlicedSoThatAStopIsSeen) {
    build({"split:at=6,ms=1000"});
    m_session->receive(wire(CheckRequest));
    EXPECT_EQ(m_clock.sleeps(), 20);
}

TEST_F(SimulatorLineSession, CountsWhatHappens) {
    exchange(wire(CheckRequest));
    exchange(framed("0100XWN00LL000001000000000C"));
    exchange(wire("<02><0A>"));
    const LineCounters counters = m_session->counters();
    EXPECT_EQ(counters.reads, 1u);
    EXPECT_EQ(counters.writes, 1u);
    EXPECT_EQ(counters.replies, 2u);
    EXPECT_EQ(counters.unreadable, 1u);
    EXPECT_EQ(counters.bytes_received, 25u + 33u + 2u);
    EXPECT_EQ(counters.bytes_sent, 21u + 13u);
}

TEST_F(SimulatorLineSession, TracesWhatWasOnTheLineAndWhen) {
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    m_trace = std::make_unique<trace::FrameTrace>(&device);
    build({"checksum:on=2"}, {38400, 5});
    exchange(wire(CheckRequest));
    exchange(readRequest(2, 0x2016, 1));
    exchange(wire(CheckRequest));
    const QList<QByteArray> lines = device.data().trimmed().split('\n');
    ASSERT_EQ(lines.size(), 6);
    EXPECT_EQ(lines[0].trimmed().toStdString(),
              "5007.161\t->\t-\t<02>0100XRN00LL00002016<03>C1<0D><0A>"
              "\tRN station=1 items=1 first=00002016\tok");
    EXPECT_EQ(lines[1].trimmed().toStdString(), "5018.177\t<-\t+11.016\t<02>0100X0000000000<03>02"
                                                "<0D><0A>\treply station=1 end=00 data=1\tok");
    EXPECT_TRUE(lines[3].endsWith("\tbad found=02 expected=01")) << lines[3].constData();
}
