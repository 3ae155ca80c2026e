#include "host/line/owedreplies.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

constexpr int Lateness = 9000;
constexpr int Wire = 30;

Question question(int station, int values) {
    Question asked;
    asked.station = station;
    asked.subaddress = "00";
    asked.is_write = values == 0;
    asked.addresses.resize(size_t(values));
    return asked;
}

WholeReply reply(int station, int values, bool refused = false) {
    return {station, "00", values, refused};
}

class OwedRepliesTest : public ::testing::Test {
protected:
    OwedReplies m_owed{Lateness};
};

} // namespace

TEST_F(OwedRepliesTest, AReplyIsOwedUntilItCannotComeAnyMore) {
    EXPECT_TRUE(m_owed.isClean(1, 0));
    m_owed.sent(question(1, 2), 100, Wire);
    EXPECT_FALSE(m_owed.isClean(1, 100));
    EXPECT_TRUE(m_owed.isClean(2, 100));
    EXPECT_FALSE(m_owed.isClean(1, 100 + Lateness + Wire));
    EXPECT_TRUE(m_owed.isClean(1, 101 + Lateness + Wire));
}

TEST_F(OwedRepliesTest, AStationBeginsWithARequestWhenItIsDoneWithThoseBefore) {
    m_owed.sent(question(1, 2), 0, 0);
    m_owed.sent(question(1, 2), 200, 0);
    EXPECT_FALSE(m_owed.isClean(1, 2 * Lateness));
    EXPECT_TRUE(m_owed.isClean(1, 2 * Lateness + 1));
}

TEST_F(OwedRepliesTest, NothingIsOwedForEverByAStationThatIsDead) {
    for (int i = 0; i < 100; ++i)
        m_owed.sent(question(1, 2), i, 0);
    EXPECT_FALSE(m_owed.isClean(1, 3 * Lateness));
    EXPECT_TRUE(m_owed.isClean(1, 100 + 3 * Lateness));
}

TEST_F(OwedRepliesTest, AReplyIsThatToTheOldestRequestThatItFits) {
    m_owed.sent(question(1, 2), 10, 0);
    m_owed.sent(question(1, 0), 20, 0);
    m_owed.sent(question(1, 2), 30, 0);
    EXPECT_EQ(m_owed.take(reply(1, 3), 40), -1);
    EXPECT_EQ(m_owed.take(reply(2, 2), 40), -1);
    EXPECT_EQ(m_owed.take({1, "01", 2, false}, 40), -1);
    EXPECT_EQ(m_owed.take(reply(1, 2), 40), 10);
    EXPECT_EQ(m_owed.take(reply(1, 2), 40), 30);
    EXPECT_EQ(m_owed.take(reply(1, 2), 40), -1);
    EXPECT_EQ(m_owed.take(reply(1, 0), 40), 20);
}

TEST_F(OwedRepliesTest, ARefusalFitsEveryRequest) {
    m_owed.sent(question(1, 2), 10, 0);
    EXPECT_EQ(m_owed.take(reply(1, 0, true), 40), 10);
}

TEST_F(OwedRepliesTest, KnowsALengthThatNoOwedReplyHas) {
    EXPECT_EQ(m_owed.freeCount(1, 0), 1);
    m_owed.sent(question(1, 1), 0, 0);
    m_owed.sent(question(1, 2), 0, 0);
    m_owed.sent(question(1, 0), 0, 0);
    EXPECT_EQ(m_owed.freeCount(1, 0), 3);
    EXPECT_TRUE(m_owed.owesOther(1, 1, 0));
    m_owed.settle(1);
    EXPECT_TRUE(m_owed.isClean(1, 0));
    m_owed.sent(question(1, 1), 0, 0);
    EXPECT_FALSE(m_owed.owesOther(1, 1, 0));
}
