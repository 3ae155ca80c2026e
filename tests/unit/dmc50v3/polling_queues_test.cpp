#include "tests/unit/dmc50v3/pollingfixture.h"

namespace {
class PollingWrites : public PollingFixture {};
class PollingReads : public PollingFixture {
protected:
    /** Asks the cache for one double word; m_miss is what it does not hold of it. */
    bool readCache() {
        QByteArray data(4, '\0');
        m_miss.clear();
        UCharVector miss_indexes;
        return m_thread->readDataCacheMap(1, {0x1000}, {0}, data, m_miss, miss_indexes);
    }

    /** How long a failing read from the cache waits, ms. */
    qint64 failingReadMsecs() {
        const qint64 before = m_clock.msecsSinceBoot();
        EXPECT_FALSE(readCache());
        return m_clock.msecsSinceBoot() - before;
    }

    AddressVector m_miss;
};
typedef PollingReads PollingReadsDeath;
} // namespace

TEST_F(PollingWrites, SixtyPairsGoOutAsTwentyFiveTwentyFiveAndTen) {
    start();
    queueWrites(1, 60);
    EXPECT_EQ(m_thread->getAddrArgQueueSize(1), 60);
    EXPECT_TRUE(m_probe->sendWrites());
    EXPECT_EQ(sent(), Frames({"WN 1 25", "WN 1 25", "WN 1 10"}));
    EXPECT_EQ(m_controller.value(1, 0x1000 + 59), 59u);
    EXPECT_EQ(m_thread->getAddrArgQueueSize(1), 0);
}

TEST_F(PollingWrites, WithoutRetriesAFailedFrameIsLost) {
    start();
    queueWrites(1, 26);
    stayingSilent();
    EXPECT_FALSE(m_probe->sendWrites());
    EXPECT_EQ(sent(), Frames({"WN 1 25"}));
    EXPECT_EQ(m_thread->getAddrArgQueueSize(1), 1);
    EXPECT_EQ(m_thread->getLastError().toStdString(),
              "write station id#1 address 00001000DMC50 no response");
}

TEST_F(PollingWrites, AFailedFrameIsRepeatedAsOftenAsThePortAllows) {
    m_port.m_retries = 2;
    start();
    queueWrites(1, 1);
    stayingSilent();
    const qint64 before = m_clock.msecsSinceBoot();
    EXPECT_FALSE(m_probe->sendWrites());
    EXPECT_EQ(sent(), Frames({"WN 1 1", "WN 1 1", "WN 1 1"}));
    EXPECT_EQ(m_clock.msecsSinceBoot() - before, 3 * (10 + 3000)); // a pause before each
}

TEST_F(PollingWrites, AWriteIsRefusedWhileTheLineIsInError) {
    start();
    m_thread->setCommError(QString::fromLatin1("down"));
    EXPECT_FALSE(m_thread->writeDWord(1, AddrArg{1, 1}));
    EXPECT_FALSE(m_thread->writeDWords(1, {AddrArg{1, 1}}));
    EXPECT_TRUE(m_thread->addrArgQueueMapIsEmpty());
}

TEST_F(PollingWrites, QueuedWritesWaitUntilTheErrorIsCleared) {
    start();
    queueWrites(1, 1);
    m_thread->setCommError(QString::fromLatin1("down"));
    EXPECT_FALSE(m_probe->sendWrites());
    EXPECT_TRUE(sent().empty());
    m_probe->cycle(); // idle: clears the error
    m_probe->cycle();
    EXPECT_EQ(sent(), Frames({"WN 1 1"}));
}

TEST_F(PollingReads, AReadOfAnAddressInTheCacheSendsNoFrame) {
    m_controller.setValue(1, 0x1000, 8);
    startSession(1);
    m_probe->cycle();
    m_port.forgetCalls();
    m_thread->pushReadAddresses(1, {0x1000});
    m_probe->fetchReads();
    EXPECT_TRUE(sent().empty());
    QByteArray data(4, '\0');
    EXPECT_TRUE(m_thread->readOnceData(1, data, {0x1000}, {0}));
    EXPECT_EQ(data, QByteArray("\x08\0\0\0", 4));
}

TEST_F(PollingReads, AValuePutIntoTheReadOnceMapIsTakenByItsReader) {
    start();
    m_thread->insertDWordToReadOnceDataMap(1, 0x1000, 9);
    QByteArray data(4, '\0');
    EXPECT_TRUE(m_thread->readOnceData(1, data, {0x1000}, {0}));
    EXPECT_EQ(data, QByteArray("\x09\0\0\0", 4));
    EXPECT_FALSE(m_thread->addrInReadOnceDataMap(1, 0x1000));
}

TEST_F(PollingReads, ARunThatFailsAfterItsRetriesIsGivenUp) {
    m_port.m_retries = 1;
    start();
    stayingSilent();
    m_thread->pushReadAddresses(1, {0x1000});
    m_probe->fetchReads();
    EXPECT_EQ(sent(), Frames({"RN 1 1", "RN 1 1"}));
    EXPECT_FALSE(m_thread->addrInReadOnceDataMap(1, 0x1000));
    EXPECT_TRUE(m_thread->readAddrQueueMapIsEmpty());
}

TEST_F(PollingReads, QueuedWritesDoNotInterruptAFetch) {
    start();
    m_thread->pushReadAddresses(1, AddressVector(60, 0x1000));
    queueWrites(1, 1);
    m_probe->fetchReads();
    EXPECT_EQ(sent(), Frames({"RN 1 50", "RN 1 10"}));
}

TEST_F(PollingReads, AReadOnceOfASilentControllerFailsAfterTheWholeBudget) {
    m_port.m_timeout = 3000;
    m_port.m_retries = 2;
    start();
    QByteArray data(4, '\0');
    const qint64 before = m_clock.msecsSinceBoot();
    EXPECT_FALSE(m_thread->readOnceData(1, data, {0x1000}, {0}));
    EXPECT_EQ(m_clock.msecsSinceBoot() - before, 9000);
}

TEST_F(PollingReads, TheCacheIsClosedForTheWholeBudgetUntilARequestSucceeds) {
    m_port.m_retries = 2;
    startSession(1);
    m_probe->cycle();
    stayingSilent();
    m_probe->cycle();
    EXPECT_EQ(failingReadMsecs(), 9000);
    m_probe->cycle();
    EXPECT_EQ(failingReadMsecs(), 9000);
    answer();
    m_probe->cycle();
    EXPECT_TRUE(readCache());
    EXPECT_TRUE(m_miss.empty());
}

TEST_F(PollingReads, TheCacheIsClosedUntilAnIdlePause) {
    start();
    m_thread->setCommError(QString::fromLatin1("down"));
    EXPECT_EQ(failingReadMsecs(), 3000);
    EXPECT_EQ(failingReadMsecs(), 3000);
    m_probe->cycle(); // has nothing to do
    EXPECT_TRUE(readCache());
}

TEST_F(PollingReadsDeath, AMissWithoutItsPositionEndsTheProgram) {
    start();
    QByteArray data(8, '\0');
    UCharVector miss_indexes;
    EXPECT_DEATH(m_thread->readDataCacheMap(1, {0x1000, 0x1001}, {0}, data, m_miss, miss_indexes),
                 "\"miss_addresses.size\\(\\) == miss_data_indexes.size\\(\\)\"");
}

TEST_F(PollingReads, AStoppedThreadAnswersNoReader) {
    start();
    m_thread->stop();
    QByteArray data(4, '\0');
    EXPECT_FALSE(readCache());
    EXPECT_FALSE(m_thread->readOnceData(1, data, {0x1000}, {0}));
}
