#include "tests/unit/polling/pollingparts.h"

namespace {

class PolledDataTest : public PollingParts {
protected:
    PolledDataTest() { m_data.cache().insert(1, 100, 7); }

    /** Reads addresses 100 and 101 of station 1 from the cache. */
    bool readCache() {
        m_bytes = QByteArray(8, '\0');
        return m_data.readDataCacheMap(1, {100, 101}, {1, 0}, m_bytes, m_misses, m_miss_indexes);
    }

    /** Reads addresses 10 and 11 of station 1 once. */
    bool readOnce() {
        m_bytes = QByteArray(8, '\0');
        return m_data.readOnceData(1, m_bytes, {10, 11}, {1, 0});
    }

    void arriveAt(qint64 msecs, quint32 address, quint32 value) {
        m_clock.at(msecs, [=] { m_data.readOnce().insert(1, address, value); });
    }

    std::vector<quint32> sleepsOf(quint32 msecs, int count) const {
        return std::vector<quint32>(std::size_t(count), msecs);
    }

    QByteArray m_bytes;
    AddressVector m_misses;
    UCharVector m_miss_indexes;
};

} // namespace

TEST_F(PolledDataTest, ACachedValueIsReadWithoutWaiting) {
    EXPECT_TRUE(readCache());
    EXPECT_EQ(m_bytes, QByteArray("\0\0\0\0\x07\0\0\0", 8));
    EXPECT_EQ(m_misses, AddressVector({101}));
    EXPECT_EQ(m_miss_indexes, UCharVector({0}));
    EXPECT_TRUE(m_clock.sleeps().empty());
}

TEST_F(PolledDataTest, AnErrorIsWaitedOutInStepsOfTenMilliseconds) {
    m_error.set(QString::fromLatin1("lost"));
    m_clock.at(Budget - 10, [this] { m_error.clear(); });
    EXPECT_TRUE(readCache());
    EXPECT_EQ(m_clock.sleeps(), sleepsOf(10, 299));
}

TEST_F(PolledDataTest, AnErrorThatLastedForTheBudgetFailsTheReadEvenIfItIsOverNow) {
    m_error.set(QString::fromLatin1("lost"));
    m_clock.at(Budget, [this] { m_error.clear(); });
    EXPECT_FALSE(readCache());
    EXPECT_EQ(m_clock.sleeps(), sleepsOf(10, 300));
}

TEST_F(PolledDataTest, AStopEndsTheWaitForTheCache) {
    m_error.set(QString::fromLatin1("lost"));
    m_clock.at(50, [this] { m_requests.stop(); });
    EXPECT_FALSE(readCache());
    EXPECT_EQ(m_clock.sleeps().size(), 5u);
}

TEST_F(PolledDataTest, AStoppedThreadAnswersNoReader) {
    m_requests.stop();
    EXPECT_FALSE(readCache());
    EXPECT_FALSE(readOnce());
    EXPECT_TRUE(m_clock.sleeps().empty());
}

TEST_F(PolledDataTest, AReadOnceIsCompleteWithItsLastAddress) {
    arriveAt(30, 10, 0x0A);
    arriveAt(90, 11, 0x0B);
    EXPECT_TRUE(readOnce());
    EXPECT_EQ(m_bytes, QByteArray("\x0B\0\0\0\x0A\0\0\0", 8));
    EXPECT_EQ(m_clock.sleeps(), sleepsOf(30, 3));
    EXPECT_EQ(m_data.queue().stationsLocked()[1], AddressVector({10, 11}));
    EXPECT_FALSE(m_data.readOnce().contains(1, 10)); // taken
}

TEST_F(PolledDataTest, AReadOnceWhoseFirstAddressNeverCameFailsAndTakesNothing) {
    arriveAt(30, 11, 0x0B);
    EXPECT_FALSE(readOnce());
    EXPECT_TRUE(m_data.readOnce().contains(1, 11));
}

TEST_F(PolledDataTest, AReadOnceWaitsForTheWholeBudget) {
    EXPECT_FALSE(readOnce());
    EXPECT_EQ(m_clock.sleeps(), sleepsOf(30, 100));

    arriveAt(2 * Budget, 10, 1); // with the last step
    arriveAt(2 * Budget, 11, 2);
    EXPECT_TRUE(readOnce());
}

TEST_F(PolledDataTest, AStopEndsTheWaitForAReadOnce) {
    m_clock.at(60, [this] { m_requests.stop(); });
    EXPECT_FALSE(readOnce());
    EXPECT_EQ(m_clock.sleeps().size(), 2u);
}
