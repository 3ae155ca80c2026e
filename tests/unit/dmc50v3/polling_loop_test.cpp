#include "tests/unit/dmc50v3/pollingfixture.h"

#include <atomic>
#include <thread>

namespace {
class PollingLoop : public PollingFixture {};
typedef PollingLoop PollingLoopDeath;
} // namespace

TEST_F(PollingLoopDeath, AMissingPortTableOrStationEndsTheProgram) {
    EXPECT_DEATH(PollingThread(nullptr, &m_valid, 1, m_clock), "\"m_interface != 0\"");
    EXPECT_DEATH(PollingThread(&m_port, nullptr, 1, m_clock), "\"m_valid_addresses_map\"");
    EXPECT_DEATH(PollingThread(&m_port, &m_valid, 0, m_clock), "\"m_default_station_id > 0\"");
}

TEST_F(PollingLoop, PollsAHundredAndTwentyAddressesInFramesOfFiftyFiftyAndTwenty) {
    startSession(120);
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"RN 1 50", "RN 1 50", "RN 1 20"}));
}

TEST_F(PollingLoop, DiscardsReceivedBytesImmediatelyBeforeEveryRequest) {
    startSession(1);
    m_probe->cycle();
    const QList<QByteArray> calls = m_port.calls();
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(calls.at(0), QByteArray("control 12 0"));
    EXPECT_EQ(calls.at(1), cplFrame("0100XRN00LL00001000"));
}

TEST_F(PollingLoop, PausesTheFrameIntervalBeforeARequest) {
    m_port.m_frame_interval = 40;
    startSession(120);
    const qint64 before = m_clock.msecsSinceBoot();
    m_probe->cycle();
    EXPECT_EQ(m_clock.msecsSinceBoot() - before, 3 * 40);
}

TEST_F(PollingLoop, PolledValuesReachTheCache) {
    m_controller.setValue(1, 0x1001, 77);
    startSession(3);
    m_probe->cycle();
    quint32 value = 0;
    ASSERT_TRUE(m_thread->getDWordFromDataCacheMap(1, 0x1001, value));
    EXPECT_EQ(value, 77u);
    EXPECT_FALSE(m_thread->addrInDataCache(1, 0x1003));
}

TEST_F(PollingLoop, AFailedRunKeepsTheOldValues) {
    m_controller.setValue(1, 0x1000, 5);
    startSession(1);
    m_probe->cycle();
    stayingSilent();
    m_probe->cycle();
    EXPECT_TRUE(m_thread->hasError());
    EXPECT_TRUE(m_thread->addrInDataCache(1, 0x1000));
}

TEST_F(PollingLoop, TriesASilentControllerOnceMoreThanItsRetries) {
    m_port.m_retries = 2;
    stayingSilent();
    startSession(60);
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"RN 1 50", "RN 1 50", "RN 1 50", "RN 1 10", "RN 1 10", "RN 1 10"}));
    EXPECT_EQ(m_thread->getLastError(),
              QString::fromLatin1("read station id#1 start address 00001032:DMC50 no response"));
}

TEST_F(PollingLoop, SendsWritesBeforeTheNextReadFrame) {
    startSession(120);
    int requests = 0;
    m_port.setAnswer([&](const QByteArray& request) {
        if (++requests == 1)
            m_thread->writeDWord(2, AddrArg{0x10, 9});
        return m_controller.answer(request);
    });
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"RN 1 50", "WN 2 1", "RN 1 50", "RN 1 20"}));
}

TEST_F(PollingLoop, AWriteWaitsBehindTheRetriesOfAFailedRead) {
    m_port.m_retries = 1;
    startSession(1);
    int requests = 0;
    m_port.setAnswer([&](const QByteArray& request) {
        if (++requests > 1)
            return m_controller.answer(request);
        // Queued before the failure is known: a write in error is refused.
        m_thread->writeDWord(1, AddrArg{0x1000, 9});
        return QByteArray();
    });
    m_probe->cycle();
    // The write waits while the failed read's error stands.
    EXPECT_EQ(sent(), Frames({"RN 1 1", "RN 1 1"}));
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"RN 1 1", "RN 1 1", "WN 1 1", "RN 1 1"}));
}

TEST_F(PollingLoop, AQueuedReadEndsTheScanAfterTheCurrentRunAndIsFetchedInTheSameCycle) {
    startSession(120);
    int requests = 0;
    m_port.setAnswer([&](const QByteArray& request) {
        if (++requests == 1)
            m_thread->pushReadAddresses(2, {0x10});
        return m_controller.answer(request);
    });
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"RN 1 50", "RN 2 1"}));
    EXPECT_TRUE(m_thread->addrInReadOnceDataMap(2, 0x10));
}

TEST_F(PollingLoop, TheEarlyEndDoesNotCancelTheRetriesOfTheCurrentRun) {
    m_port.m_retries = 1;
    startSession(120);
    m_thread->clearSessionCommand();
    stayingSilent();
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"RN 1 50", "RN 1 50"}));
}

TEST_F(PollingLoop, WhileTheSessionIsClearedEveryCycleEndsAfterItsFirstRun) {
    startSession(120);
    m_thread->clearSessionCommand();
    m_probe->cycle();
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"RN 1 50", "RN 1 50"}));
    EXPECT_EQ(m_thread->getFlag(), PollingThread::ClearedSession);

    m_thread->setSessionCommand(session("NA1000", 60));
    m_port.forgetCalls();
    m_probe->cycle();
    EXPECT_EQ(m_thread->getFlag(), 0);
    EXPECT_EQ(sent(), Frames({"RN 1 50", "RN 1 10"}));
}

TEST_F(PollingLoop, ANewSessionEndsTheScanAndEmptiesTheCache) {
    startSession(120);
    m_probe->cycle();
    m_thread->setSessionCommand(session("2-NA10", 2));
    m_probe->takeOverSession();
    EXPECT_FALSE(m_thread->addrInDataCache(1, 0x1000));
    ASSERT_EQ(m_probe->cacheAddresses().size(), 1u);
    EXPECT_EQ(m_probe->cacheAddresses().at(2), AddressVector({0x10, 0x11}));
}

TEST_F(PollingLoop, AnEmptySessionIdlesInStepsOfTenMillisecondsAndClearsTheError) {
    startSession(3);
    m_thread->setSessionCommand(QList<CommunicatorCommand>());
    m_thread->setCommError(QString::fromLatin1("lost"));
    const qint64 before = m_clock.msecsSinceBoot();
    m_probe->cycle();
    EXPECT_EQ(m_clock.msecsSinceBoot() - before, 10);
    EXPECT_FALSE(m_thread->hasError());
    EXPECT_EQ(m_thread->getLastError(), QString::fromLatin1("lost"));
    EXPECT_TRUE(sent().empty());
}

TEST_F(PollingLoop, ACycleWithQueuedReadsNeitherPausesNorClearsTheError) {
    start();
    stayingSilent();
    m_thread->pushReadAddresses(1, {0x1000});
    const qint64 before = m_clock.msecsSinceBoot();
    m_probe->cycle();
    EXPECT_EQ(m_clock.msecsSinceBoot() - before, 10 + 3000); // the request's own
    EXPECT_TRUE(m_thread->hasError());
}

TEST_F(PollingLoop, APollingCycleNeitherPausesNorClearsTheError) {
    startSession(1);
    stayingSilent();
    const qint64 before = m_clock.msecsSinceBoot();
    m_probe->cycle();
    EXPECT_EQ(m_clock.msecsSinceBoot() - before, 10 + 3000);
    EXPECT_TRUE(m_thread->hasError());
}

TEST_F(PollingLoop, QueuedWritesGoOutAndQueuedReadsAreFetchedWithoutASession) {
    start();
    queueWrites(1, 2);
    m_thread->pushReadAddresses(2, {0x10});
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"WN 1 2", "RN 2 1"}));
}

TEST_F(PollingLoop, ASessionThatWasOnlyClearedIsNotTakenOver) {
    startSession(2);
    m_probe->cycle();
    m_thread->clearSessionAddrMap();
    m_thread->clearSessionCommand();
    m_probe->cycle();
    EXPECT_TRUE(m_thread->addrInDataCache(1, 0x1000));
    EXPECT_EQ(m_probe->cacheAddresses().size(), 1u);
}

TEST_F(PollingLoop, ASessionThatIsSetDuringATakeOverIsNotLost) {
    start();
    const QList<CommunicatorCommand> early = session("NA1000", 120), late = session("2-NA10", 2);
    for (int round = 0; round < 30; ++round) {
        for (quint32 address = 0; address < 10000; ++address) // they take a while to forget
            m_probe->cache().insert(1, address, 0);
        m_thread->setSessionCommand(early);
        std::atomic<bool> go(false);
        std::thread host([&] {
            while (!go)
                std::this_thread::yield();
            m_thread->setSessionCommand(late);
        });
        go = true;
        m_probe->takeOverSession();
        host.join();
        m_probe->takeOverSession();
        ASSERT_EQ(m_probe->cacheAddresses(), AddressVectorMap({{2, {0x10, 0x11}}}));
    }
}

TEST_F(PollingLoop, RunsCyclesUntilItIsStopped) {
    start();
    m_thread->setSessionCommand(session("NA1000", 1));
    m_thread->setLowLatency({2});
    int requests = 0;
    m_port.setAnswer([&](const QByteArray& request) {
        if (++requests == 4)
            m_thread->stop();
        return m_controller.answer(request);
    });
    m_probe->run();
    EXPECT_EQ(sent(), Frames({"WN 2 4", "RN 1 1", "RN 1 1", "RN 1 1"}));
    m_probe->run(); // a stop is for good
    EXPECT_EQ(requests, 4);
}

TEST_F(PollingLoop, ParsesItsOwnAddressesWithAnOptionalStation) {
    start();
    quint32 address = 0;
    quint8 station = 0;
    EXPECT_TRUE(m_thread->parseAddrStr(QString::fromLatin1("pa0011000"), address, station));
    EXPECT_EQ(address, 0x101000u);
    EXPECT_EQ(station, 1);
    EXPECT_TRUE(m_thread->parseAddrStr(QString::fromLatin1("12-NA1F.3"), address, station));
    EXPECT_EQ(address, 0x1Fu);
    EXPECT_EQ(station, 12);
}

TEST_F(PollingLoopDeath, AMalformedAddressEndsTheProgram) {
    start();
    quint32 address = 0;
    quint8 station = 0;
    EXPECT_DEATH(m_thread->parseAddrStr(QString::fromLatin1("D100"), address, station),
                 "ASSERT: \"0\"");
}

TEST_F(PollingLoop, ClearingTheSessionAddressesLeavesNothingToTakeOver) {
    start();
    m_thread->setSessionCommand(session("NA1000", 3));
    m_thread->clearSessionAddrMap();
    m_probe->takeOverSession();
    EXPECT_TRUE(m_probe->cacheAddresses().empty());
}
