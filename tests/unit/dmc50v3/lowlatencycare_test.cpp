// When the stations for fast answers are set up and checked, to the millisecond.
#include "runtime/drivers/dmc50v3/lowlatencycare.h"

#include "runtime/drivers/polling/writequeue.h"
#include "tests/support/memoryline.h"
#include "tests/support/scheduledclock.h"
#include "tests/support/together.h"

#include <gtest/gtest.h>

namespace {

/** Answers the check with m_check_value. */
class CheckedLine : public MemoryLine {
public:
    using MemoryLine::MemoryLine;

    bool read(quint8 station, const quint32* addresses, int count, quint32* values) override {
        const bool ok = MemoryLine::read(station, addresses, count, values);
        values[0] = m_check_value;
        return ok;
    }

    quint32 m_check_value = 200;
};

class LowLatencyCareTest : public ::testing::Test {
protected:
    void startWith(const std::set<quint8>& stations) {
        m_care.setLowLatency(stations);
        m_care.start();
        m_writes_before = m_writes.size(1);
    }

    /** Steps of a cycle @p msecs after the start. */
    void cycleAt(qint64 msecs) {
        m_clock.advance(msecs - m_clock.msecsSinceBoot());
        m_care.checkWhenDue();
        m_care.renewWhenDue();
    }

    /** Checks, and set-ups of station 1, since the last call. @{ */
    int checks() { return int(m_line.takeLog().size()) / 2; }
    int setUps() {
        const int count = (m_writes.size(1) - m_writes_before) / 4;
        m_writes_before = m_writes.size(1);
        return count;
    }
    /** @} */

    std::vector<AddrArg> queued(quint8 station) {
        std::vector<AddrArg> batch;
        quint8 from = 0;
        EXPECT_TRUE(m_writes.takeBatch(25, from, batch));
        EXPECT_EQ(from, station);
        return batch;
    }

    int m_writes_before = 0;
    ScheduledClock m_clock;
    CommError m_error;
    CheckedLine m_line{m_error};
    WriteQueue m_writes{m_error};
    LowLatencyCare m_care{m_clock, m_line, m_error, m_writes};
};
typedef LowLatencyCareTest LowLatencyCareDeath;

} // namespace

TEST_F(LowLatencyCareTest, WithoutStationsNothingIsDone) {
    startWith({});
    cycleAt(1000000);
    EXPECT_EQ(checks(), 0);
    EXPECT_TRUE(m_writes.isEmpty());
}

TEST_F(LowLatencyCareTest, TheStartQueuesFourPairsForEveryStation) {
    startWith({1, 2});
    for (quint8 station = 1; station <= 2; ++station) {
        const std::vector<AddrArg> pairs = queued(station);
        ASSERT_EQ(pairs.size(), 4u);
        const quint32 values[] = {1, 5, 200, 5};
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(pairs[i].address, 0x2012 + i);
            EXPECT_EQ(pairs[i].value, values[i]);
        }
    }
    EXPECT_TRUE(m_writes.isEmpty());
}

TEST_F(LowLatencyCareTest, TheFirstCheckIsDueAfterThirtySeconds) {
    m_clock.advance(5000);
    startWith({1});
    cycleAt(5000 + 29999);
    EXPECT_EQ(checks(), 0);
    cycleAt(5000 + 30000);
    EXPECT_EQ(m_line.takeLog(), MemoryLine::Log({"pause", "read 1:8214 x1"}));
}

TEST_F(LowLatencyCareTest, ASuccessIsTheLastCheck) {
    startWith({1});
    cycleAt(30000);
    EXPECT_EQ(checks(), 1);
    cycleAt(60000);
    cycleAt(539999);
    EXPECT_EQ(checks(), 0);
    EXPECT_EQ(setUps(), 0);
}

TEST_F(LowLatencyCareTest, AWrongValueSetsUpAgainAndIsCheckedThirtySecondsLater) {
    startWith({1});
    m_line.m_check_value = 199;
    cycleAt(31000);
    EXPECT_EQ(checks(), 1);
    EXPECT_EQ(setUps(), 1);
    cycleAt(60999);
    EXPECT_EQ(checks(), 0);
    m_line.m_check_value = 200;
    cycleAt(61000);
    EXPECT_EQ(checks(), 1);
    EXPECT_EQ(setUps(), 0);
}

TEST_F(LowLatencyCareTest, TheTimeOfAFailedCheckIsItsEnd) {
    startWith({1});
    m_line.m_check_value = 0;
    m_line.m_on_request = [this] { m_clock.advance(100); };
    cycleAt(30000); // until 30100
    cycleAt(60099);
    EXPECT_EQ(checks(), 1);
    cycleAt(60100);
    EXPECT_EQ(checks(), 1);
}

TEST_F(LowLatencyCareTest, SilenceIsRepeatedByNoRetryAndTheSetUpIsRefused) {
    startWith({1});
    m_line.m_failures = 1;
    cycleAt(30000);
    EXPECT_EQ(checks(), 1);
    EXPECT_EQ(setUps(), 0);
    EXPECT_TRUE(m_error.isSet());
}

TEST_F(LowLatencyCareTest, AnAnswerEndsTheErrorWhateverItsValue) {
    startWith({1});
    for (quint32 value : {200, 199}) {
        m_error.set(QString::fromLatin1("lost"));
        m_line.m_check_value = value;
        EXPECT_EQ(m_care.checkLowLatency(), value == 200);
        EXPECT_FALSE(m_error.isSet()) << value;
    }
}

TEST_F(LowLatencyCareTest, TheCheckEndsWithTheFirstStationThatFails) {
    startWith({1, 2, 3});
    EXPECT_TRUE(m_care.checkLowLatency());
    EXPECT_EQ(checks(), 3);
    m_line.m_failures = 1;
    EXPECT_FALSE(m_care.checkLowLatency());
    EXPECT_EQ(checks(), 1);
    m_line.m_check_value = 201;
    EXPECT_FALSE(m_care.checkLowLatency());
    EXPECT_EQ(checks(), 1);
}

TEST_F(LowLatencyCareTest, TheSetUpIsRenewedAfterNineMinutesNotEarlier) {
    startWith({1});
    cycleAt(30000);
    cycleAt(539999);
    EXPECT_EQ(setUps(), 0);
    cycleAt(540000);
    EXPECT_EQ(setUps(), 1);
    cycleAt(540000 + 539999);
    EXPECT_EQ(setUps(), 0);
    cycleAt(540000 + 540000);
    EXPECT_EQ(setUps(), 1);
}

TEST_F(LowLatencyCareTest, ARenewedSetUpIsCheckedThirtySecondsLater) {
    startWith({1});
    cycleAt(30000);
    cycleAt(540000);
    EXPECT_EQ(checks(), 1);
    cycleAt(540000 + 29999);
    EXPECT_EQ(checks(), 0);
    cycleAt(540000 + 30000);
    EXPECT_EQ(checks(), 1);
    cycleAt(540000 + 60000);
    EXPECT_EQ(checks(), 0);
}

TEST_F(LowLatencyCareTest, ARenewalPutsOffACheckThatIsDue) {
    startWith({1});
    m_line.m_check_value = 0;
    cycleAt(520000); // fails; the next check were due at 550000
    cycleAt(540000);
    EXPECT_EQ(checks(), 1);
    cycleAt(569999);
    EXPECT_EQ(checks(), 0);
    cycleAt(570000);
    EXPECT_EQ(checks(), 1);
}

TEST_F(LowLatencyCareTest, KickingTheWatchDogQueuesTheFirstPair) {
    startWith({1});
    queued(1);
    m_care.kickLowLatencyWatchDog();
    const std::vector<AddrArg> pairs = queued(1);
    ASSERT_EQ(pairs.size(), 1u);
    EXPECT_EQ(pairs[0].address, 0x2012u);
    EXPECT_EQ(pairs[0].value, 1u);
}

TEST_F(LowLatencyCareTest, TheSetIsReplacedNotMerged) {
    m_care.setLowLatency({1, 2, 3});
    EXPECT_EQ(m_care.numOfLowLatencyStation(), 3);
    m_care.setLowLatency({4});
    EXPECT_EQ(m_care.numOfLowLatencyStation(), 1);
}

TEST_F(LowLatencyCareTest, FillingTheSetUpTwiceKeepsItAtFourPairs) {
    startWith({1});
    queued(1);
    m_care.initLowLatencyAddrArgs();
    m_care.initLowLatencyStations();
    EXPECT_EQ(queued(1).size(), 4u);
}

TEST_F(LowLatencyCareTest, TheSetIsReplacedAsAWhole) {
    std::set<quint8> low, high;
    for (quint8 station = 1; station <= 20; ++station) {
        low.insert(station);
        high.insert(quint8(100 + station));
    }
    startWith(low);
    const int rounds = 3000;
    int wrong = 0;
    together(
        rounds, [&](int round) { m_care.setLowLatency(round % 2 ? low : high); },
        [&](int) {
            wrong += m_care.numOfLowLatencyStation() != 20;
            m_care.kickLowLatencyWatchDog();
            m_care.initLowLatencyStations();
            wrong += !m_care.checkLowLatency();
            m_line.takeLog();
        });
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(m_writes.size(5) + m_writes.size(105), 4 + 5 * rounds);
}

TEST_F(LowLatencyCareDeath, CareWithoutTheSetUpPairsEndsTheProgram) {
    const char* const text = "\"m_low_latency_addr_args.size\\(\\) > 0\"";
    EXPECT_DEATH(m_care.initLowLatencyStations(), text);
    EXPECT_DEATH(m_care.kickLowLatencyWatchDog(), text);
    EXPECT_DEATH(m_care.checkLowLatency(), text);
}

TEST_F(LowLatencyCareDeath, StationsThatComeAfterAStartWithoutAnyEndTheProgram) {
    startWith({});
    m_care.setLowLatency({1});
    cycleAt(539999);
    EXPECT_DEATH(cycleAt(540000), "\"m_low_latency_addr_args.size\\(\\) > 0\"");
}

TEST_F(LowLatencyCareTest, AnEmptySetPassesTheCheck) {
    m_care.initLowLatencyAddrArgs();
    EXPECT_TRUE(m_care.checkLowLatency());
}
