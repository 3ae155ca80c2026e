#include "host/session/mailbox.h"

#include "tests/support/simulatedclock.h"
#include "tests/unit/session/datatag.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <thread>

using namespace host;

namespace {

constexpr int PatienceMsecs = 60000; // who waits longer waits in vain

class MailboxTest : public ::testing::Test {
protected:
    void make(const SubscriptionOptions& options = {}) {
        m_mailbox = std::make_unique<Mailbox>(
            std::vector<const TagDefinition*>{&m_number, &m_other}, options, m_clock);
    }

    void post(int place, int value, Quality quality = Quality::Good) {
        TagState state;
        state.data = QByteArray(1, char(value)) + QByteArray(3, '\0');
        state.quality = quality;
        m_mailbox->post(place, 100 + place, state);
    }

    /** The values that can be taken, each beside its tag. */
    std::vector<std::pair<TagId, int>> taken() {
        std::vector<std::pair<TagId, int>> values;
        for (const TagChange& change : m_mailbox->take())
            values.push_back({change.tag, change.state.data.at(0)});
        return values;
    }

    bool isReadable() {
        pollfd watched = {m_mailbox->descriptor(), POLLIN, 0};
        return ::poll(&watched, 1, 0) == 1;
    }

    using Values = std::vector<std::pair<TagId, int>>;

    const TagDefinition m_number = dataTag("NA10");
    const TagDefinition m_other = dataTag("NA20");
    SimulatedClock m_clock{0};
    std::unique_ptr<Mailbox> m_mailbox;
};

} // namespace

TEST_F(MailboxTest, KeepsTheNewestOfEachTagInTheOrderOfTheirFirst) {
    make();
    post(1, 5);
    post(0, 6);
    post(1, 7);
    EXPECT_EQ(taken(), (Values{{101, 7}, {100, 6}}));
    EXPECT_EQ(taken(), Values());
}

TEST_F(MailboxTest, TellsAValueOnceItDiffersByMoreThanTheDeadbandFromTheOneThatWasTaken) {
    SubscriptionOptions options;
    options.deadband = 2;
    make(options);
    post(0, 10);
    EXPECT_EQ(taken(), (Values{{100, 10}}));
    post(0, 12);
    EXPECT_EQ(taken(), Values());
    post(0, 11);
    post(0, 13);
    EXPECT_EQ(taken(), (Values{{100, 13}}));
    post(0, 15);
    EXPECT_EQ(taken(), Values());
}

TEST_F(MailboxTest, GivesTheNewestValueAlsoWhenItHasComeBackIntoTheDeadband) {
    SubscriptionOptions options;
    options.deadband = 2;
    make(options);
    post(0, 10);
    EXPECT_EQ(taken(), (Values{{100, 10}}));
    post(0, 13);
    post(0, 11);
    EXPECT_EQ(taken(), (Values{{100, 11}}));
}

TEST_F(MailboxTest, TellsAChangeOfQualityWhateverTheDeadband) {
    SubscriptionOptions options;
    options.deadband = 2;
    make(options);
    post(0, 10);
    EXPECT_EQ(taken(), (Values{{100, 10}}));
    post(0, 10, Quality::Stale);
    EXPECT_EQ(taken(), (Values{{100, 10}}));
}

TEST_F(MailboxTest, HoldsATagBackUntilItsLeastIntervalIsOver) {
    SubscriptionOptions options;
    options.least_interval_ms = 1000;
    make(options);
    post(0, 1);
    EXPECT_EQ(taken(), (Values{{100, 1}}));
    m_clock.advance(999);
    post(0, 2);
    post(1, 9);
    EXPECT_EQ(taken(), (Values{{101, 9}})) << "the other has an interval of its own";
    EXPECT_FALSE(m_mailbox->await(0));
    post(0, 3);
    m_clock.advance(1);
    EXPECT_TRUE(m_mailbox->await(0));
    EXPECT_EQ(taken(), (Values{{100, 3}}));
}

TEST_F(MailboxTest, WakesWhoWaitsForWhatIsPosted) {
    make();
    std::thread poster([this] { post(0, 1); });
    EXPECT_TRUE(m_mailbox->await(PatienceMsecs));
    poster.join();
}

TEST_F(MailboxTest, ReturnsAtOnceWhenSomethingWaitsAlready) {
    make();
    post(0, 1);
    EXPECT_TRUE(m_mailbox->await(PatienceMsecs));
    EXPECT_TRUE(m_mailbox->await(PatienceMsecs)) << "it has not been taken";
}

TEST_F(MailboxTest, CanBeWokenForNothingAlsoBeforehand) {
    make();
    m_mailbox->wake();
    EXPECT_FALSE(m_mailbox->await(PatienceMsecs));
    std::thread waker([this] { m_mailbox->wake(); });
    EXPECT_FALSE(m_mailbox->await(PatienceMsecs));
    waker.join();
}

TEST_F(MailboxTest, ShowsAnEventLoopWhetherThereIsSomethingToTake) {
    make();
    EXPECT_FALSE(isReadable());
    post(0, 1);
    pollfd watched = {m_mailbox->descriptor(), POLLIN, 0};
    EXPECT_EQ(::poll(&watched, 1, PatienceMsecs), 1);
    taken();
    EXPECT_FALSE(isReadable());
}

TEST_F(MailboxTest, ShowsAnEventLoopWhatWasThereBeforeItAsked) {
    make();
    post(0, 1);
    pollfd watched = {m_mailbox->descriptor(), POLLIN, 0};
    EXPECT_EQ(::poll(&watched, 1, PatienceMsecs), 1);
}

TEST_F(MailboxTest, ShowsAnEventLoopWhatAnIntervalHeldBackWhenItIsOver) {
    SubscriptionOptions options;
    options.least_interval_ms = 20;
    make(options);
    isReadable();
    post(0, 1);
    taken();
    post(0, 2);
    EXPECT_FALSE(isReadable());
    pollfd watched = {m_mailbox->descriptor(), POLLIN, 0};
    EXPECT_EQ(::poll(&watched, 1, PatienceMsecs), 1);
}
