#include "tests/unit/dmc50v3/pollingfixture.h"

namespace {

class LowLatency : public PollingFixture {
protected:
    void startWithStations(const std::set<quint8>& stations) {
        m_thread.reset(new PollingThread(&m_port, &m_valid, 1, m_clock));
        m_thread->setLowLatency(stations);
        m_probe.reset(new PollingThreadProbe(*m_thread));
        m_probe->cycle(); // the set-up goes out with the first write batch
    }

    /** Cycles until @p msecs have passed. */
    void runFor(qint64 msecs) {
        const qint64 end = m_clock.msecsSinceBoot() + msecs;
        while (m_clock.msecsSinceBoot() < end)
            m_probe->cycle();
    }

    int setUps() const {
        int count = 0;
        for (const std::string& frame : sent())
            count += frame == "WN 1 4";
        return count;
    }
    int checks() const {
        int count = 0;
        for (const std::string& frame : sent())
            count += frame == "RN 1 1";
        return count;
    }
};
typedef LowLatency LowLatencyDeath;

} // namespace

TEST_F(LowLatency, WithoutStationsNothingIsEverSent) {
    startWithStations({});
    runFor(600000);
    EXPECT_TRUE(sent().empty());
}

TEST_F(LowLatency, TheSetUpWritesFourPairsInOrder) {
    startWithStations({1});
    ASSERT_EQ(m_port.requests().size(), 1);
    EXPECT_EQ(m_port.requests().at(0), cplFrame("0100XWN00LL00002012000000010000201300000005"
                                                "00002014000000C80000201500000005"));
}

TEST_F(LowLatency, EveryStationIsSetUp) {
    startWithStations({2, 1});
    EXPECT_EQ(sent(), Frames({"WN 1 4", "WN 2 4"}));
}

TEST_F(LowLatency, TheFirstCheckComesAfterThirtySecondsAndASuccessIsTheLast) {
    m_controller.setValue(1, 0x2016, 200);
    startWithStations({1});
    runFor(29900);
    EXPECT_EQ(checks(), 0);
    runFor(200);
    EXPECT_EQ(checks(), 1);
    runFor(400000);
    EXPECT_EQ(checks(), 1);
    EXPECT_EQ(setUps(), 1);
}

TEST_F(LowLatency, AFailedCheckSetsUpAgainAndChecksThirtySecondsLater) {
    m_controller.setValue(1, 0x2016, 199);
    startWithStations({1});
    runFor(30100);
    EXPECT_EQ(checks(), 1);
    EXPECT_EQ(setUps(), 2);
    runFor(30100);
    EXPECT_EQ(checks(), 2);
    EXPECT_EQ(setUps(), 3);
}

TEST_F(LowLatency, TheSetUpIsRenewedAfterNineMinutesAndCheckedAgain) {
    m_controller.setValue(1, 0x2016, 200);
    startWithStations({1});
    runFor(539900);
    EXPECT_EQ(setUps(), 1);
    EXPECT_EQ(checks(), 1);
    runFor(200);
    EXPECT_EQ(setUps(), 2);
    runFor(30000);
    EXPECT_EQ(checks(), 2);
}

TEST_F(LowLatency, ASilentControllerIsSetUpOnlyAfterTheErrorHasBeenCleared) {
    startWithStations({1});
    stayingSilent();
    runFor(30100);
    EXPECT_EQ(checks(), 1);
    EXPECT_EQ(setUps(), 1); // refused while the failed check's error stood
    EXPECT_EQ(m_thread->getLastError().toStdString(),
              "read station id#1 start address 00002016:DMC50 no response");
    m_controller.setValue(1, 0x2016, 0);
    answer();
    runFor(30100 + 3000);
    EXPECT_EQ(setUps(), 2);
}

TEST_F(LowLatency, TheCheckIsNotRepeatedByRetries) {
    m_port.m_retries = 3;
    startWithStations({1});
    stayingSilent();
    EXPECT_FALSE(m_probe->checkLowLatency());
    EXPECT_EQ(checks(), 1);
}

TEST_F(LowLatency, KickingTheWatchDogWritesTheFirstPairOfEveryStation) {
    startWithStations({1, 2});
    m_port.forgetCalls();
    m_thread->kickLowLatencyWatchDog();
    m_probe->cycle();
    ASSERT_EQ(m_port.requests().size(), 2);
    EXPECT_EQ(m_port.requests().at(0), cplFrame("0100XWN00LL0000201200000001"));
    EXPECT_EQ(m_port.requests().at(1), cplFrame("0200XWN00LL0000201200000001"));
}

TEST_F(LowLatency, TheSetIsReplacedNotMerged) {
    start();
    m_thread->setLowLatency({1, 2, 3});
    EXPECT_EQ(m_thread->numOfLowLatencyStation(), 3);
    m_thread->setLowLatency({4});
    EXPECT_EQ(m_thread->numOfLowLatencyStation(), 1);
}

TEST_F(LowLatencyDeath, CareWithoutTheSetUpPairsEndsTheProgram) {
    start();
    const char* const text = "\"m_low_latency_addr_args.size\\(\\) > 0\"";
    EXPECT_DEATH(m_thread->initLowLatencyStations(), text);
    EXPECT_DEATH(m_thread->kickLowLatencyWatchDog(), text);
    EXPECT_DEATH(m_probe->checkLowLatency(), text);
}

TEST_F(LowLatency, AnEmptySetPassesTheCheck) {
    start();
    m_thread->initLowLatencyAddrArgs();
    EXPECT_TRUE(m_probe->checkLowLatency());
}
