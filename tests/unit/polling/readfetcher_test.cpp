#include "runtime/drivers/polling/readfetcher.h"

#include "tests/unit/polling/pollingparts.h"

namespace {

class ReadFetcherTest : public PollingParts {
protected:
    void fetch(quint32 retries = 0) {
        ReadFetcher(m_reader, m_data, m_requests, retries).fetchAll();
    }
};

} // namespace

TEST_F(ReadFetcherTest, FetchesRunsOfFiftyInQueueOrderStationByStation) {
    m_data.queue().push(2, {11, 10, 11});
    m_data.queue().push(1, ascending(100, 101));
    fetch();
    EXPECT_EQ(requested(),
              Requests({"read 1:100 x50", "read 1:150 x50", "read 1:200 x1", "read 2:11 x3"}));
    EXPECT_TRUE(m_data.queue().isEmpty());
    quint32 value = 0;
    ASSERT_TRUE(m_data.readOnce().find(1, 200, value));
    EXPECT_EQ(value, MemoryLine::valueAt(1, 200));
    EXPECT_TRUE(m_data.readOnce().contains(2, 10));
    EXPECT_FALSE(m_data.cache().contains(2, 10));
}

TEST_F(ReadFetcherTest, CopiesWhatTheCacheHoldsAndReadsTheRest) {
    m_data.cache().insert(1, 100, 5);
    m_data.queue().push(1, {99, 100, 101});
    m_data.queue().push(2, {100});
    fetch();
    EXPECT_EQ(requested(), Requests({"read 1:99 x2", "read 2:100 x1"}));
    quint32 value = 0;
    ASSERT_TRUE(m_data.readOnce().find(1, 100, value));
    EXPECT_EQ(value, 5u);
}

TEST_F(ReadFetcherTest, ASuccessEndsTheError) {
    m_error.set(QString::fromLatin1("lost"));
    m_data.queue().push(1, {100});
    fetch();
    EXPECT_FALSE(m_error.isSet());
}

TEST_F(ReadFetcherTest, ARunIsRepeatedAsOftenAsAllowedThenGivenUp) {
    m_data.queue().push(1, ascending(100, 51));
    m_line.m_failures = 1;
    fetch(0);
    EXPECT_EQ(requested(), Requests({"read 1:100 x50", "read 1:150 x1"}));
    EXPECT_FALSE(m_data.readOnce().contains(1, 100));
    EXPECT_TRUE(m_data.readOnce().contains(1, 150));

    m_data.queue().push(1, {7});
    m_line.m_failures = 3;
    fetch(2);
    EXPECT_EQ(requested(), Requests({"read 1:7 x1", "read 1:7 x1", "read 1:7 x1"}));
    EXPECT_TRUE(m_data.queue().isEmpty());
    EXPECT_TRUE(m_error.isSet());

    m_data.queue().push(1, {8});
    m_line.m_failures = 2;
    fetch(2);
    EXPECT_EQ(requested().size(), 3u);
    EXPECT_TRUE(m_data.readOnce().contains(1, 8));
}

TEST_F(ReadFetcherTest, AStopEndsItAfterTheRunAndItsRetries) {
    m_data.queue().push(1, ascending(100, 51));
    m_data.queue().push(2, {10});
    m_line.m_on_request = [this] { m_requests.stop(); };
    m_line.m_failures = 1;
    fetch(3);
    EXPECT_EQ(requested(), Requests({"read 1:100 x50", "read 1:100 x50"}));
    EXPECT_FALSE(m_data.queue().isEmpty()); // station 2 was not come to
}

TEST_F(ReadFetcherTest, WhoQueuesMeanwhileWaitsUntilItIsOver) {
    m_data.queue().push(1, {100});
    bool free = true;
    m_line.m_on_request = [&] {
        free = m_data.queue().mutex().tryLock();
        if (free)
            m_data.queue().mutex().unlock();
    };
    fetch();
    EXPECT_FALSE(free);
    EXPECT_TRUE(m_data.queue().mutex().tryLock());
    m_data.queue().mutex().unlock();
}
