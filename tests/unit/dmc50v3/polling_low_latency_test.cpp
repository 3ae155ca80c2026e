// Stations for fast answers in the cycle of the thread.
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

    int setUps() const { return countOf("WN 1 4"); }
    int checks() const { return countOf("RN 1 1"); }

private:
    int countOf(const std::string& wanted) const {
        int count = 0;
        for (const std::string& frame : sent())
            count += frame == wanted;
        return count;
    }
};

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

TEST_F(LowLatency, IsCheckedOnceAndRenewedEveryNineMinutes) {
    m_controller.setValue(1, 0x2016, 200);
    startWithStations({1});
    runFor(29900);
    EXPECT_EQ(checks(), 0);
    runFor(200);
    EXPECT_EQ(checks(), 1);
    runFor(539900 - 30100);
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

TEST_F(LowLatency, TheCheckComesAfterTheWritesAndBeforeTheScan) {
    m_controller.setValue(1, 0x2016, 200);
    startWithStations({1});
    m_thread->setSessionCommand(session("2-NA10", 2));
    m_port.forgetCalls();
    queueWrites(1, 3);
    m_clock.advance(30000);
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"WN 1 3", "RN 1 1", "RN 2 2"}));
}

TEST_F(LowLatency, TheSetUpIsRenewedInACycleWithQueuedReadsToo) {
    m_controller.setValue(1, 0x2016, 200);
    startWithStations({1});
    m_clock.advance(540000);
    m_port.forgetCalls();
    m_thread->pushReadAddresses(2, {0x10, 0x11});
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"RN 1 1", "RN 2 2"}));
    EXPECT_EQ(m_thread->getAddrArgQueueSize(1), 4);
}

TEST_F(LowLatency, TheThreadPassesOnWhatItsOwnerAsks) {
    start();
    m_thread->setLowLatency({1, 2});
    EXPECT_EQ(m_thread->numOfLowLatencyStation(), 2);
    m_thread->initLowLatencyAddrArgs();
    m_thread->initLowLatencyStations();
    EXPECT_EQ(m_thread->getAddrArgQueueSize(2), 4);
    m_thread->kickLowLatencyWatchDog();
    EXPECT_EQ(m_thread->getAddrArgQueueSize(2), 5);
}
