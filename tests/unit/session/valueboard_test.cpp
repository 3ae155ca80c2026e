#include "host/session/valueboard.h"

#include "tests/support/simulatedclock.h"
#include "tests/support/together.h"
#include "tests/unit/session/datatag.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

QByteArray bytes(int value) {
    return QByteArray(reinterpret_cast<const char*>(&value), sizeof value);
}

class ValueBoardTest : public ::testing::Test {
protected:
    SimulatedClock m_clock{0};
    ValueBoard m_board{{dataTag("NA10"), dataTag("NA20")}, m_clock};
};

} // namespace

TEST_F(ValueBoardTest, KnowsNothingAtFirst) {
    const TagState state = m_board.read(0);
    EXPECT_EQ(state.quality, Quality::Bad);
    EXPECT_EQ(state.sequence, 0u);
    EXPECT_EQ(state.data, QByteArray());
}

TEST_F(ValueBoardTest, KeepsTheMomentOfEachExchangeAlsoWhenTheValueStays) {
    m_board.bring(0, bytes(5), {1000, 50});
    m_board.bring(0, bytes(5), {2000, 51});
    const TagState state = m_board.read(0);
    EXPECT_EQ(state.quality, Quality::Good);
    EXPECT_EQ(state.data, bytes(5));
    EXPECT_EQ(state.when.monotonic_usecs, 2000);
    EXPECT_EQ(state.when.utc_msecs, 51);
    EXPECT_EQ(state.sequence, 2u);
    EXPECT_EQ(m_board.read(1).sequence, 0u);
}

TEST_F(ValueBoardTest, KeepsTheLastValueAndItsMomentWhenReadingFails) {
    m_board.fail(0, QStringLiteral("no response"));
    EXPECT_EQ(m_board.read(0).quality, Quality::Bad);
    EXPECT_EQ(m_board.read(0).text, QString("no response"));
    m_board.bring(0, bytes(5), {1000, 50});
    EXPECT_EQ(m_board.read(0).text, QString());
    m_board.fail(0, QStringLiteral("no response"));
    EXPECT_EQ(m_board.read(0).quality, Quality::Stale);
    EXPECT_EQ(m_board.read(0).data, bytes(5));
    EXPECT_EQ(m_board.read(0).when.monotonic_usecs, 1000);
}

TEST_F(ValueBoardTest, TellsASubscriberWhatIsKnownAndThenWhatChanges) {
    m_board.bring(0, bytes(5), {1000, 50});
    const auto mailbox = m_board.subscribe({1, 0}, {});
    std::vector<TagChange> changes = mailbox->take();
    ASSERT_EQ(changes.size(), 1u) << "nothing is known of the other";
    EXPECT_EQ(changes[0].tag, 0);

    m_board.bring(0, bytes(5), {2000, 51});
    EXPECT_TRUE(mailbox->take().empty()) << "it is the same value";
    m_board.bring(0, bytes(6), {3000, 52});
    changes = mailbox->take();
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].state.data, bytes(6));
    EXPECT_EQ(changes[0].state.when.monotonic_usecs, 3000);

    m_board.fail(0, QStringLiteral("no response"));
    EXPECT_EQ(mailbox->take().size(), 1u);
    m_board.fail(0, QStringLiteral("no response"));
    EXPECT_TRUE(mailbox->take().empty());
    m_board.fail(0, QStringLiteral("checksum error"));
    EXPECT_EQ(mailbox->take().size(), 1u);
    m_board.bring(0, bytes(6), {4000, 53});
    EXPECT_EQ(mailbox->take().size(), 1u) << "good again";
}

TEST_F(ValueBoardTest, ForgetsASubscriber) {
    const auto mailbox = m_board.subscribe({0, 1}, {});
    const auto other = m_board.subscribe({0, 1}, {});
    m_board.forget(*mailbox, {0, 1});
    m_board.bring(0, bytes(5), {1000, 50});
    EXPECT_TRUE(mailbox->take().empty());
    EXPECT_EQ(other->take().size(), 1u);
}

TEST_F(ValueBoardTest, NeverGoesBackForWhoReadsOrTakesMeanwhile) {
    constexpr int Rounds = 20000;
    const auto mailbox = m_board.subscribe({0}, {});
    quint64 sequence = 0;
    qint64 moment = -1;
    int torn = 0;
    const auto judge = [&](const TagState& state) {
        torn += state.sequence < sequence || state.when.monotonic_usecs < moment;
        torn += state.sequence > 0 && state.data != bytes(int(state.when.monotonic_usecs));
        sequence = state.sequence;
        moment = state.when.monotonic_usecs;
    };
    together(
        Rounds,
        [&](int) {
            judge(m_board.read(0));
            for (const TagChange& change : mailbox->take()) {
                if (change.state.sequence >= sequence)
                    judge(change.state);
            }
        },
        [&](int round) {
            m_board.bring(0, bytes(round), {round, round});
        });
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(m_board.read(0).sequence, quint64(Rounds));
}
