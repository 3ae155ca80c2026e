#include "host/line/stationcare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace host;

namespace {

using State = StationHealth::State;

constexpr int TimeoutMsecs = 9000;
constexpr int Station = 3;

class StationCareTest : public ::testing::Test {
protected:
    void answerAfter(int msecs, bool is_write = false) {
        m_now += msecs;
        m_care.answered(Station, {1000 * msecs, 0, is_write, true}, m_now);
    }

    /** Waits in vain for as long as the care says; returns how long that was. */
    int waitInVain() {
        const int wait = wait_ms();
        m_now += wait;
        m_care.silent(Station, wait, m_now);
        return wait;
    }

    int wait_ms(bool is_write = false) { return m_care.waitMsecs(Station, is_write, 0, m_now); }
    bool admits() { return m_care.admits(Station, m_now); }
    StationHealth health() { return m_care.health(Station); }

    qint64 m_now = 1000000;
    StationCare m_care{TimeoutMsecs};
};

} // namespace

TEST_F(StationCareTest, KnowsNothingAtFirst) {
    EXPECT_EQ(health().state, State::Unknown);
    EXPECT_TRUE(admits());
    EXPECT_TRUE(m_care.isTrial(Station));
    EXPECT_EQ(m_care.all().at(Station).answers, 0u);
}

TEST_F(StationCareTest, WaitsTwiceWhatAStationHasShownAndAtLeast300Msecs) {
    answerAfter(400); // deviation 200: an answer is expected within 400 + 4 x 200
    EXPECT_EQ(wait_ms(), 2400);
    EXPECT_EQ(m_care.waitMsecs(Station, false, 30, m_now), 2430);
    for (int i = 0; i < 100; ++i)
        answerAfter(5);
    EXPECT_EQ(wait_ms(), 300);
    EXPECT_FALSE(m_care.isTrial(Station));
    EXPECT_FALSE(m_care.isSlow(Station));
}

TEST_F(StationCareTest, LeavesTheTimeOnTheWireOutOfWhatAStationTakes) {
    m_care.answered(Station, {240000, 240, false, true}, m_now);
    EXPECT_EQ(m_care.waitMsecs(Station, false, 240, m_now), 540);
}

TEST_F(StationCareTest, NeverWaitsLongerThanTheTimeout) {
    answerAfter(8000);
    EXPECT_EQ(m_care.waitMsecs(Station, false, 500, m_now), TimeoutMsecs);
}

TEST_F(StationCareTest, WaitsASecondForTheFirstWriteOfAStationThatIsQuickToRead) {
    answerAfter(5);
    EXPECT_EQ(wait_ms(), 300);
    EXPECT_EQ(wait_ms(true), 1000);
    answerAfter(60, true);
    EXPECT_EQ(wait_ms(true), 360);
}

TEST_F(StationCareTest, DoesNotLearnFromAnAnswerThatMayBeOneToAnEarlierSending) {
    answerAfter(400);
    m_care.answered(Station, {5000000, 0, false, false}, m_now);
    EXPECT_EQ(wait_ms(), 2400);
    EXPECT_EQ(health().worst_usecs, 5000000);
}

TEST_F(StationCareTest, TriesAStationNeverHeardOfLongerAndLonger) {
    std::vector<int> waits;
    std::vector<int> pauses;
    for (int i = 0; i < 6; ++i) {
        waits.push_back(waitInVain());
        const qint64 end = m_now;
        while (!admits())
            m_now += 10;
        pauses.push_back(int(m_now - end));
    }
    EXPECT_EQ(waits, std::vector<int>({300, 900, 2700, 9000, 60, 60}));
    EXPECT_EQ(pauses, std::vector<int>({0, 5000, 7500, 11250, 16880, 25320}))
        << "the first is followed by the driver's own second attempt";
}

TEST_F(StationCareTest, LeavesNearlyAllOfTheLineToStationsThatAnswer) {
    m_care.answered(1, {40000, 0, false, true}, m_now);
    const qint64 start = m_now;
    qint64 waited = 0;
    int longest = 0;
    while (longest < TimeoutMsecs) {
        for (const int unknown : {7, 8}) {
            if (!m_care.admits(unknown, m_now))
                continue;
            const int wait = m_care.waitMsecs(unknown, false, 0, m_now);
            longest = std::max(longest, wait);
            waited += wait;
            m_now += wait;
            m_care.silent(unknown, wait, m_now);
        }
        m_now += 100;
    }
    EXPECT_LE(m_now - start, 600000);
    EXPECT_LE(waited - longest, (m_now - start) / 40) << "the probes included";
}

TEST_F(StationCareTest, WithholdsAndCountsBetweenTheProbes) {
    answerAfter(5);
    waitInVain();
    waitInVain();
    EXPECT_FALSE(health().held_off);
    EXPECT_EQ(health().state, State::Suspect);
    waitInVain();
    EXPECT_TRUE(health().held_off);
    EXPECT_TRUE(m_care.isTrial(Station));
    EXPECT_FALSE(admits());
    m_now += StationCare::FirstProbeMsecs - 1;
    EXPECT_FALSE(admits());
    m_care.withheld(Station);
    EXPECT_EQ(health().withheld, 1u);
    m_now += 1;
    EXPECT_TRUE(admits());
    EXPECT_EQ(wait_ms(), 60) << "a probe costs little";
    waitInVain();
    m_now += StationCare::FirstProbeMsecs;
    EXPECT_FALSE(admits()) << "the next probe comes later";
    m_now += StationCare::FirstProbeMsecs / 2;
    EXPECT_TRUE(admits());
}

TEST_F(StationCareTest, WaitsLongerAfterEachWaitInVain) {
    answerAfter(5);
    EXPECT_EQ(waitInVain(), 300);
    EXPECT_EQ(waitInVain(), 600);
    EXPECT_EQ(waitInVain(), 1200);
}

TEST_F(StationCareTest, IsDownOnlyWhenAnAnswerCanNoLongerCome) {
    answerAfter(5);
    const qint64 start = m_now;
    for (int i = 0; i < 3; ++i)
        waitInVain();
    m_now = start + TimeoutMsecs - 1;
    admits();
    EXPECT_EQ(health().state, State::Suspect);
    m_now = start + TimeoutMsecs;
    admits();
    EXPECT_EQ(health().state, State::Down);
    EXPECT_EQ(health().since_ms, m_now);
    m_now += 1000;
    admits();
    EXPECT_EQ(health().since_ms, m_now - 1000);
}

TEST_F(StationCareTest, LetsTheNextRequestThroughWhenAPersonAsks) {
    answerAfter(5);
    for (int i = 0; i < 3; ++i)
        waitInVain();
    m_care.askFor(Station);
    EXPECT_TRUE(admits());
    EXPECT_FALSE(admits());
}

TEST_F(StationCareTest, AnAnswerMakesItWhatItWas) {
    for (int i = 0; i < 3; ++i)
        waitInVain();
    answerAfter(7);
    EXPECT_EQ(health().state, State::Up);
    EXPECT_EQ(health().since_ms, m_now);
    EXPECT_FALSE(health().held_off);
    answerAfter(9);
    EXPECT_EQ(health().answers, 2u);
    EXPECT_EQ(health().mean_usecs, 8000);
    EXPECT_EQ(health().worst_usecs, 9000);
    for (int i = 0; i < 3; ++i)
        waitInVain();
    EXPECT_FALSE(admits());
    m_now += StationCare::FirstProbeMsecs;
    EXPECT_TRUE(admits()) << "the pauses begin anew";
}

TEST_F(StationCareTest, ALateAnswerWidensTheWaitAtOnce) {
    answerAfter(5);
    for (int i = 0; i < 3; ++i)
        waitInVain();
    m_care.heardLate(Station, 3000, m_now);
    EXPECT_EQ(health().state, State::Up);
    EXPECT_TRUE(admits());
    EXPECT_EQ(wait_ms(), TimeoutMsecs);
    EXPECT_EQ(wait_ms(true), TimeoutMsecs);
    EXPECT_EQ(health().worst_usecs, 3000000);
    EXPECT_TRUE(m_care.isSlow(Station));
    m_care.heardLate(Station, 10, m_now);
    EXPECT_EQ(wait_ms(), TimeoutMsecs) << "less than is known teaches nothing";
}

TEST_F(StationCareTest, BytesThatAreNoAnswerAreNoSilence) {
    answerAfter(5);
    for (int i = 0; i < 10; ++i)
        m_care.garbled(Station, m_now);
    EXPECT_EQ(health().state, State::Up);
    waitInVain();
    waitInVain();
    m_care.garbled(Station, m_now);
    EXPECT_EQ(health().state, State::Suspect);
    waitInVain();
    waitInVain();
    EXPECT_TRUE(admits());
}

TEST(StationHealthTest, HasANameForEachState) {
    EXPECT_STREQ(stateName(State::Unknown), "unknown");
    EXPECT_STREQ(stateName(State::Up), "up");
    EXPECT_STREQ(stateName(State::Suspect), "suspect");
    EXPECT_STREQ(stateName(State::Down), "down");
}
