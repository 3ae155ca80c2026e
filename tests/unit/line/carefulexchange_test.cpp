#include "tests/unit/line/carefulport.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace host;

namespace {

using State = StationHealth::State;

const QList<quint32> Two = {0x1000, 0x1001};

bool isFence(const QByteArray& request) {
    return request.contains("XRN00LL") && requestItems(request).size() == 1;
}

class CarefulExchangeTest : public ::testing::Test {
protected:
    CarefulExchangeTest() {
        for (const int station : {1, 2, 3})
            m_line.channel.stations[station] = StationsChannel::Station();
    }

    /** Gives every value a new number and returns it. */
    quint32 renewValues() {
        ++m_generation;
        for (const int station : {1, 2, 3}) {
            for (quint32 address = 0x1000; address < 0x1010; ++address)
                m_line.channel.memory.setValue(station, address, valueOf(station, address));
        }
        return m_generation;
    }

    quint32 valueOf(int station, quint32 address) const {
        return m_generation << 16 | quint32(station) << 12 | (address & 0xFFF);
    }

    /** Reads with new values; whether the station has answered. A wrong value is a
     *  failure of the test. */
    bool readsRight(int station, const QList<quint32>& addresses) {
        renewValues();
        const auto values = m_line.read(station, addresses);
        for (int i = 0; values && i < addresses.size(); ++i)
            EXPECT_EQ(values->at(i), valueOf(station, addresses[i]))
                << "station " << station << " at " << m_line.now() << " ms";
        return values.has_value();
    }

    StationsChannel::Station& station(int id) { return m_line.channel.stations[id]; }
    LineStatistics counted() { return m_line.port->statistics(); }

    CarefulPort m_line;
    quint32 m_generation = 0;
};

} // namespace

TEST_F(CarefulExchangeTest, HandsTheAnswerOn) {
    EXPECT_TRUE(readsRight(1, Two));
    EXPECT_TRUE(m_line.write(1, 0x1000, 77));
    EXPECT_EQ(m_line.channel.memory.value(1, 0x1000), 77u);
    EXPECT_EQ(m_line.channel.sent.size(), 2);
    EXPECT_EQ(m_line.health(1).state, State::Up);
    EXPECT_EQ(m_line.health(1).mean_usecs, 40000);
}

TEST_F(CarefulExchangeTest, TellsWhoeverListensWhatWasBroughtAndWhen) {
    std::vector<Exchange> heard;
    m_line.port->setExchangeSink([&](const Exchange& exchange) { heard.push_back(exchange); });
    station(1).changed = [this](const QByteArray& reply) {
        station(1).changed = nullptr;
        return reply.left(5);
    };
    readsRight(1, Two); // at the second attempt
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].station, 1);
    EXPECT_FALSE(heard[0].is_write);
    EXPECT_EQ(heard[0].addresses, std::vector<quint32>({0x1000, 0x1001}));
    EXPECT_EQ(heard[0].sent_usecs, 20000) << "the first sending";
    EXPECT_EQ(heard[0].done_usecs, 1000 * m_line.now());
    m_line.write(1, 0x1005, 3);
    EXPECT_TRUE(heard.back().is_write);
    EXPECT_EQ(heard.back().addresses, std::vector<quint32>({0x1005}));
}

TEST_F(CarefulExchangeTest, ASilentStationSoonCostsTheLineNothing) {
    station(2).delay_ms = -1;
    readsRight(1, Two);
    readsRight(2, Two);
    const qint64 start = m_line.now();
    const int sent = m_line.channel.sent.size();
    EXPECT_FALSE(readsRight(2, Two));
    EXPECT_EQ(m_line.now() - start, 2 * CarefulPort::PauseMsecs);
    EXPECT_EQ(m_line.channel.sent.size(), sent);
    EXPECT_EQ(counted().withheld, 2u);
    EXPECT_EQ(counted().silent, 2u);
    EXPECT_EQ(m_line.health(2).withheld, 2u);
    EXPECT_TRUE(m_line.health(2).held_off);
    EXPECT_TRUE(m_line.traceLines().last().endsWith(
        "->\t+20.000\t\tRN station=2 items=2 first=00001000 withheld\tnone"));
}

TEST_F(CarefulExchangeTest, LiveStationsAreReadWithin3SecondsAndThenInEveryCycle) {
    station(2).delay_ms = -1;
    qint64 longest_cycle = 0;
    qint64 longest_after = 0;
    while (m_line.now() < 1200000) {
        const qint64 start = m_line.now();
        EXPECT_TRUE(readsRight(1, Two));
        readsRight(2, Two);
        EXPECT_TRUE(readsRight(3, Two));
        const qint64 cycle = m_line.now() - start;
        if (start == 0) {
            EXPECT_LE(cycle, 3000);
        }
        longest_cycle = std::max(longest_cycle, cycle);
        if (start > 900000)
            longest_after = std::max(longest_after, cycle);
    }
    EXPECT_LE(longest_cycle, 9500) << "one trial for the whole timeout";
    EXPECT_LE(longest_after, 500) << "a probe now and then";
    EXPECT_EQ(m_line.health(2).state, State::Down);
}

namespace {

constexpr int Live = 26;
constexpr int AnswerMsecs = 245; // request and reply of 50 values at 38400 baud, 7 ms to think

/** The mean cycle of the live stations, in ms, beside those that follow and are silent
 *  from @p death on, over ten minutes from @p begin on. */
double meanCycle(int silent, qint64 death, qint64 begin) {
    CarefulPort line;
    int cycles = 0;
    qint64 start = 0;
    while (line.now() < begin + 600000) {
        if (start == 0 && line.now() >= begin)
            start = line.now();
        const int live = line.now() < death ? Live + silent : Live;
        for (int station = 1; station <= Live + silent; ++station) {
            line.channel.stations[station].delay_ms = station <= live ? AnswerMsecs : -1;
            line.read(station, addressRun(0x1000, 50));
        }
        cycles += start > 0;
    }
    return double(line.now() - start) / cycles;
}

} // namespace

TEST(ManyStations, FiveOf31ThatDieCostTheOthersLessThanATwentieth) {
    EXPECT_LE(meanCycle(5, 60000, 180000), 1.05 * meanCycle(0, 0, 60000));
}

TEST(ManyStations, FiveOf31ThatWereNeverThereCostTheOthersLessThanATwentieth) {
    constexpr qint64 AfterAllTrials = 3600000;
    EXPECT_LE(meanCycle(5, 0, AfterAllTrials), 1.05 * meanCycle(0, 0, 60000));
}

class SlowStationTest : public CarefulExchangeTest, public ::testing::WithParamInterface<int> {};

TEST_P(SlowStationTest, IsFoundWithinAMinuteAndKeepsItsLongWait) {
    station(2).delay_ms = GetParam();
    qint64 found = -1;
    while (m_line.now() < 120000) {
        readsRight(1, Two);
        if (!readsRight(2, Two)) {
            EXPECT_LT(found, 0) << "it has been found before";
        } else if (found < 0) {
            found = m_line.now();
        }
        readsRight(3, Two);
        EXPECT_NE(m_line.health(2).state, State::Down);
    }
    EXPECT_GE(found, 0);
    EXPECT_LE(found, 60000);
}

INSTANTIATE_TEST_SUITE_P(AnswersAfterMsecs, SlowStationTest,
                         ::testing::Values(300, 2000, 5000, 8000));

TEST_F(CarefulExchangeTest, FindsASlowStationAlsoWhereItsLateAnswersAreTalkedOver) {
    station(2).delay_ms = 8000;
    m_line.channel.is_half_duplex = true;
    while (!readsRight(2, Two) && m_line.now() < 3600000)
        readsRight(1, Two);
    EXPECT_LE(m_line.now(), 700000) << "by a probe that waits for the whole timeout";
}

TEST_F(CarefulExchangeTest, NeverTakesALateReplyForTheNextAnswer) {
    const QList<QList<quint32>> runs = {{0x1000, 0x1001}, {0x1002, 0x1003}, {0x1004, 0x1005}};
    for (int i = 0; i < 300; ++i) {
        station(1).delay_ms = i % 7 == 3 ? 100 + 37 * i % 8000 : 40;
        readsRight(1, runs[i % 3]);
        readsRight(3, runs[i % 3]);
        if (i % 5 == 0) {
            m_line.write(1, 0x1008, quint32(i));
        }
    }
    EXPECT_GT(counted().late, 0u);
    EXPECT_GT(counted().fences, 0u);
    EXPECT_GT(m_line.health(1).answers, 100u);
}

TEST_F(CarefulExchangeTest, ALateConfirmationIsNotThatOfTheNextWrite) {
    EXPECT_TRUE(m_line.write(1, 0x1000, 1));
    station(1).delay_ms = 3000;
    m_line.write(1, 0x1000, 2);
    // The next is lost on its way, and the confirmations of the one before come.
    station(1).delay_ms = -1;
    for (int i = 0; i < 40; ++i) {
        EXPECT_FALSE(m_line.write(1, 0x1001, 3));
        m_line.clock.advance(100);
    }
    EXPECT_GT(counted().late, 0u);
}

TEST_F(CarefulExchangeTest, AFenceIsOneOrMoreValuesLongAsNoOwedReplyIs) {
    readsRight(1, {0x1000});
    station(1).delay_ms = 3000;
    EXPECT_FALSE(readsRight(1, {0x1000}));
    station(1).delay_ms = 40;
    m_line.channel.sent.clear();
    m_line.exchange(readRequest(1, {0x1002}));
    ASSERT_FALSE(m_line.channel.sent.isEmpty());
    EXPECT_EQ(requestItems(m_line.channel.sent.first()), QList<quint32>({0x1002, 0x1002}));
    EXPECT_GT(m_line.countTraced(" fence"), 0);
}

TEST_F(CarefulExchangeTest, ARepetitionGoesOutAtOnce) {
    readsRight(1, Two);
    station(1).changed = [this](const QByteArray&) {
        station(1).changed = nullptr;
        return QByteArray();
    };
    m_line.channel.sent.clear();
    EXPECT_TRUE(readsRight(1, Two));
    EXPECT_EQ(m_line.channel.sent.size(), 2);
    EXPECT_EQ(m_line.channel.sent[0], m_line.channel.sent[1]);
    EXPECT_TRUE(readsRight(1, Two));
    EXPECT_TRUE(isFence(m_line.channel.sent[2])) << "the first reply may still come";
    EXPECT_EQ(m_line.channel.sent.size(), 4);
    EXPECT_TRUE(readsRight(1, Two));
    EXPECT_EQ(m_line.channel.sent.size(), 5) << "the fence has settled it";
}

TEST_F(CarefulExchangeTest, WhatTheDriverAsksAfterItsRepetitionsIsAQuestionOfItsOwn) {
    station(1).changed = [](const QByteArray&) { return QByteArray("noise\n"); };
    EXPECT_FALSE(readsRight(1, Two));
    station(1).changed = nullptr;
    EXPECT_EQ(m_line.channel.sent.size(), 2);
    EXPECT_TRUE(readsRight(1, Two));
    EXPECT_TRUE(isFence(m_line.channel.sent[2]));
}

TEST_F(CarefulExchangeTest, LearnsNothingFromTheAnswerToARepetition) {
    for (int i = 0; i < 20; ++i)
        readsRight(1, Two);
    station(1).changed = [this](const QByteArray&) {
        station(1).changed = nullptr;
        station(1).delay_ms = 280;
        return QByteArray();
    };
    EXPECT_TRUE(readsRight(1, Two)); // it may have been the answer to the first sending
    station(1).delay_ms = 40;
    EXPECT_TRUE(readsRight(1, Two));
    station(1).delay_ms = -1;
    const qint64 start = m_line.now();
    m_line.exchange(readRequest(1, Two));
    EXPECT_LE(m_line.now() - start, CarefulPort::PauseMsecs + 300 + 20) << "with 20 ms of wire";
}

TEST_F(CarefulExchangeTest, AReplyOfAnotherShapeIsALossToTheDriver) {
    const QByteArray right = m_line.exchange(readRequest(1, Two));
    EXPECT_EQ(right.size(), 29);
    const auto replyTo = [this](const QByteArray& reply) {
        station(1).changed = [reply](const QByteArray&) { return reply; };
        const QByteArray heard = m_line.exchange(readRequest(1, Two));
        station(1).changed = nullptr;
        m_line.clock.advance(20000); // what is owed can no longer come
        return heard;
    };
    EXPECT_EQ(replyTo(cplFrame("0100X0000000001")).size(), 12) << "one value";
    EXPECT_EQ(replyTo(cplFrame("0100X00000000010000000200000003")).size(), 12) << "three";
    EXPECT_EQ(replyTo(cplFrame("0100X00")).size(), 12) << "as after a write";
    EXPECT_EQ(replyTo(cplFrame("0100X00000000G100000002")).size(), 12) << "no digit";
    EXPECT_EQ(replyTo(cplFrame("0101X000000000100000002")).size(), 12) << "sub-address";
    EXPECT_EQ(replyTo(cplFrame("0100Y000000000100000002")).size(), 12) << "device";
    EXPECT_EQ(counted().misshapen, 6u);
    EXPECT_EQ(m_line.countTraced(" misshapen"), 6);
}

TEST_F(CarefulExchangeTest, WhatTheDriverRefusesByItselfPassesAsItIs) {
    const auto heardOf = [this](const QByteArray& reply) {
        station(1).changed = [reply](const QByteArray&) { return reply; };
        const QByteArray heard = m_line.exchange(readRequest(1, Two));
        m_line.clock.advance(20000);
        return heard;
    };
    const QList<QByteArray> refused = {
        cplFrame("0100X41"),                                         // an end code
        cplFrame("0200X000000000100000002"),                         // another station
        cplFrame("0100X000000000100000002").replace("0001", "0003"), // a bad sum
        QByteArray("half a line"), QByteArray("\n")};
    for (const QByteArray& reply : refused)
        EXPECT_EQ(heardOf(reply), reply);
    EXPECT_EQ(counted().misshapen, 0u);
}

TEST_F(CarefulExchangeTest, OnlyTheAnswerMakesAStationsValuesFresh) {
    for (const QByteArray& reply : {cplFrame("0100X41"), cplFrame("0100X0000000001")}) {
        station(1).changed = [reply](const QByteArray&) { return reply; };
        m_line.exchange(readRequest(1, Two));
        m_line.clock.advance(20000);
        EXPECT_EQ(m_line.port->lastGoodReplyUsecs(1), -1) << reply.toStdString();
    }
    station(1).changed = nullptr;
    m_line.exchange(readRequest(1, Two));
    EXPECT_EQ(m_line.port->lastGoodReplyUsecs(1), 1000 * m_line.now());
}

TEST_F(CarefulExchangeTest, AReplyMayComeInPiecesThatAreHalfASecondApart) {
    readsRight(1, Two);
    station(1).changed = [this](const QByteArray& reply) {
        m_line.channel.put(m_line.now() + 540, reply.mid(10));
        return reply.left(10);
    };
    m_line.channel.sent.clear();
    EXPECT_TRUE(readsRight(1, Two));
    EXPECT_EQ(m_line.channel.sent.size(), 1);
}

TEST_F(CarefulExchangeTest, ALostLineSaysNothingAboutAStation) {
    readsRight(1, Two);
    m_line.channel.is_lost = true;
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(readsRight(1, Two));
    m_line.channel.is_lost = false;
    EXPECT_EQ(m_line.health(1).state, State::Up);
    EXPECT_FALSE(m_line.health(1).held_off);
}

TEST_F(CarefulExchangeTest, AStationThatComesBackIsReadWithinTheProbeInterval) {
    readsRight(2, Two);
    station(2).delay_ms = -1;
    for (int round = 0; round < 3; ++round) {
        while (m_line.now() < 100000 * (round + 1)) {
            readsRight(1, Two);
            readsRight(2, Two);
        }
        EXPECT_EQ(m_line.health(2).state, State::Down);
        station(2).delay_ms = 40;
        const qint64 back = m_line.now();
        while (!readsRight(2, Two))
            readsRight(1, Two);
        EXPECT_LE(m_line.now() - back, 31000);
        EXPECT_EQ(m_line.health(2).state, State::Up);
        station(2).delay_ms = -1;
    }
}

TEST_F(CarefulExchangeTest, APersonWhoAsksNeedNotWaitForTheNextProbe) {
    station(2).delay_ms = -1;
    for (int i = 0; i < 20; ++i)
        readsRight(2, Two);
    station(2).delay_ms = 40;
    EXPECT_FALSE(readsRight(2, Two));
    m_line.port->askFor(2);
    EXPECT_TRUE(readsRight(2, Two));
}

TEST_F(CarefulExchangeTest, AStationThatIsAskedForAgainAndAgainComesBackAsSoon) {
    station(2).delay_ms = -1;
    for (int i = 0; i < 200; ++i) {
        m_line.port->askFor(2);
        readsRight(2, Two);
    }
    for (const QByteArray& request : m_line.channel.sent)
        EXPECT_LE(requestItems(request).size(), 16);
    station(2).delay_ms = 40;
    const qint64 back = m_line.now();
    while (!readsRight(2, Two))
        readsRight(1, Two);
    EXPECT_LE(m_line.now() - back, 31000);
}

TEST_F(CarefulExchangeTest, APersonWhoAsksForOneStationEndsTheWaitForAnUnknownOne) {
    station(2).delay_ms = -1;
    for (int i = 0; i < 2; ++i)
        readsRight(2, Two);
    m_line.clock.advance(120000);
    readsRight(1, Two);
    m_line.clock.at(m_line.now() + 100, [this] { m_line.port->askFor(1); });
    const qint64 start = m_line.now();
    readsRight(2, Two); // would wait for 2.7 s
    EXPECT_LE(m_line.now() - start, 200);
    EXPECT_TRUE(readsRight(1, Two));
}

TEST_F(CarefulExchangeTest, OnceItHasBeenAskedTheOthersAreTriedAgain) {
    m_line.port->askFor(1);
    readsRight(1, Two);
    station(2).delay_ms = 150;
    EXPECT_TRUE(readsRight(2, Two));
}

TEST_F(CarefulExchangeTest, AskingForAStationDoesNotCutItsOwnWaitShort) {
    station(2).delay_ms = 150;
    m_line.port->askFor(2);
    EXPECT_TRUE(readsRight(2, Two));
}

TEST_F(CarefulExchangeTest, ARefusedFenceLeavesWhatCameBeforeInDoubt) {
    readsRight(1, Two);
    station(1).delay_ms = 3000;
    EXPECT_FALSE(readsRight(1, Two)); // two replies are owed
    station(1).delay_ms = 1;
    station(1).changed = [](const QByteArray&) { return cplFrame("0100X41"); };
    m_line.exchange(readRequest(1, {0x1002, 0x1003}));
    station(1).changed = nullptr;
    while (m_line.now() < 60000)
        readsRight(1, {0x1002, 0x1003});
    EXPECT_TRUE(readsRight(1, {0x1002, 0x1003}));
}

TEST(PatientPortTest, WaitsForEverybodyAndJudgesNothing) {
    CarefulPort line(false);
    line.channel.stations[1].changed = [](const QByteArray&) {
        return cplFrame("0100X0000000001");
    };
    EXPECT_EQ(line.exchange(readRequest(1, Two)), cplFrame("0100X0000000001"));
    const qint64 start = line.now();
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(line.read(2, Two));
    EXPECT_GE(line.now() - start, 10 * CarefulPort::TimeoutMsecs);
    EXPECT_EQ(line.channel.sent.size(), 11);
    EXPECT_EQ(line.port->statistics().withheld, 0u);
    EXPECT_EQ(line.health(2).state, State::Unknown);
}
