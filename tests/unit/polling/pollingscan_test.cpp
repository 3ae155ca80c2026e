#include "runtime/drivers/polling/pollingscan.h"

#include "runtime/drivers/polling/writequeue.h"
#include "runtime/drivers/polling/writesender.h"
#include "tests/unit/polling/pollingparts.h"

namespace {

class PollingScanTest : public PollingParts {
protected:
    bool scan(const AddressVectorMap& addresses, quint32 retries = 0) {
        return PollingScan(m_reader, m_writer, m_data, m_requests, retries).run(addresses);
    }

    /** Does @p action during the request numbered @p number, from 1 on. */
    void duringRequest(int number, const std::function<void()>& action) {
        m_line.m_on_request = [this, number, action] {
            if (++m_request == number)
                action();
        };
    }

    void queueWrite() {
        const AddrArg pair = {9, 9};
        m_writes.push(4, &pair, 1);
    }

    int m_request = 0;
    WriteQueue m_writes{m_error};
    WriteSender m_writer{m_line, m_error, m_writes, 0};

    /** A run of fifty and one of ten of station 1, one of station 3. */
    const AddressVectorMap m_two_stations{{1, ascending(100, 60)}, {3, {8}}};
};

} // namespace

TEST_F(PollingScanTest, PollsEveryRunOfEveryStationIntoTheCache) {
    EXPECT_FALSE(scan(m_two_stations));
    EXPECT_EQ(requested(), Requests({"read 1:100 x50", "read 1:150 x10", "read 3:8 x1"}));
    quint32 value = 0;
    ASSERT_TRUE(m_data.cache().find(1, 159, value));
    EXPECT_EQ(value, MemoryLine::valueAt(1, 159));
    EXPECT_TRUE(m_data.cache().contains(3, 8));
    EXPECT_FALSE(m_data.readOnce().contains(3, 8));
}

TEST_F(PollingScanTest, IsIdleWhenTheLastStationItCameToHasNoAddresses) {
    EXPECT_TRUE(scan({}));
    EXPECT_TRUE(scan({{1, {}}}));
    EXPECT_TRUE(scan({{1, {5}}, {2, {}}}));
    EXPECT_FALSE(scan({{1, {}}, {2, {5}}}));
}

TEST_F(PollingScanTest, ASuccessEndsTheError) {
    m_error.set(QString::fromLatin1("lost"));
    scan({{1, {5}}});
    EXPECT_FALSE(m_error.isSet());
}

TEST_F(PollingScanTest, ARunIsRepeatedAsOftenAsAllowedThenTheNextIsPolled) {
    m_line.m_failures = 4;
    scan(m_two_stations, 2);
    EXPECT_EQ(requested(), Requests({"read 1:100 x50", "read 1:100 x50", "read 1:100 x50",
                                     "read 1:150 x10", "read 1:150 x10", "read 3:8 x1"}));
    EXPECT_FALSE(m_data.cache().contains(1, 100));
    EXPECT_TRUE(m_data.cache().contains(1, 150));
}

TEST_F(PollingScanTest, WritesGoBeforeEveryRead) {
    queueWrite();
    duringRequest(2, [this] { queueWrite(); });
    scan(m_two_stations);
    EXPECT_EQ(requested(), Requests({"write 4:9 x1", "read 1:100 x50", "write 4:9 x1",
                                     "read 1:150 x10", "read 3:8 x1"}));
}

TEST_F(PollingScanTest, AWriteWaitsWhileAFailedReadIsRepeated) {
    m_line.m_failures = 1;
    duringRequest(1, [this] { queueWrite(); });
    scan(m_two_stations, 1);
    EXPECT_EQ(requested(), Requests({"read 1:100 x50", "read 1:100 x50", "write 4:9 x1",
                                     "read 1:150 x10", "read 3:8 x1"}));
}

TEST_F(PollingScanTest, EachKindOfOtherWorkEndsItAfterTheCurrentRun) {
    duringRequest(1, [this] { m_data.queue().push(9, {1}); });
    EXPECT_FALSE(scan(m_two_stations));
    EXPECT_EQ(requested(), Requests({"read 1:100 x50"}));
    m_data.queue().stationsLocked().clear();

    m_request = 0;
    duringRequest(2, [this] { m_requests.setFlag(2); });
    scan(m_two_stations);
    EXPECT_EQ(requested(), Requests({"read 1:100 x50", "read 1:150 x10"}));
    m_requests.clearFlag(2);

    m_request = 0;
    duringRequest(1, [this] { m_requests.stop(); });
    scan(m_two_stations);
    EXPECT_EQ(requested(), Requests({"read 1:100 x50"}));
}

TEST_F(PollingScanTest, OtherWorkThatCameUpAtAnyAttemptEndsItAfterTheRetries) {
    m_line.m_failures = 2;
    m_line.m_on_request = [this] {
        ++m_request;
        if (m_request == 2)
            m_requests.setFlag(1);
        if (m_request == 3)
            m_requests.clearFlag(1);
    };
    scan(m_two_stations, 5);
    EXPECT_EQ(requested(), Requests({"read 1:100 x50", "read 1:100 x50", "read 1:100 x50"}));
}
