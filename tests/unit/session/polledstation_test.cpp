#include "host/session/polledstation.h"

#include "tests/unit/session/datatag.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace host;

namespace {

std::vector<quint32> addresses(quint32 first, int count) {
    std::vector<quint32> all(static_cast<std::size_t>(count));
    std::iota(all.begin(), all.end(), first);
    return all;
}

/** Double words whose numbers are those of their places. */
QByteArray counted(int first, int count) {
    QByteArray bytes;
    for (int place = first; place < first + count; ++place)
        bytes += QByteArray(1, char(place)) + QByteArray(3, '\0');
    return bytes;
}

/** 60 double words at 0x1000, which take two frames, and two tags apart from
 *  them. */
class PolledStationTest : public ::testing::Test {
protected:
    const TagDefinition m_block = dataTag("NA1000", 1, "dword", 60);
    const TagDefinition m_bits = dataTag("NA10.4", 1, "bit", 3);
    const TagDefinition m_word = dataTag("NA10", 1, "word");
    PolledStation m_station{{{0, &m_block}, {1, &m_bits}, {2, &m_word}}};
};

} // namespace

TEST_F(PolledStationTest, KnowsTheFramesThatTheDriverAsksFor) {
    std::vector<quint32> first = addresses(0x1000, 49);
    first.insert(first.begin(), 0x10);
    EXPECT_EQ(m_station.frameOf(first), 0);
    EXPECT_EQ(m_station.frameOf(addresses(0x1031, 11)), 1);
    EXPECT_EQ(m_station.frameAt(0x10), 0);
    EXPECT_EQ(m_station.frameAt(0x1031), 1);
}

TEST_F(PolledStationTest, TakesNothingElseForAFrame) {
    EXPECT_EQ(m_station.frameOf({}), std::nullopt);
    EXPECT_EQ(m_station.frameOf({0x10}), std::nullopt) << "a part";
    EXPECT_EQ(m_station.frameOf(addresses(0x1031, 12)), std::nullopt) << "one too many";
    EXPECT_EQ(m_station.frameOf(addresses(0x1000, 50)), std::nullopt) << "begins in a frame";
    EXPECT_EQ(m_station.frameAt(0x11), std::nullopt);
    EXPECT_EQ(m_station.frameAt(0x2000), std::nullopt);
}

TEST_F(PolledStationTest, ReadsAFrameInRunsOfConsecutiveAddresses) {
    const std::vector<PolledStation::Run> runs = m_station.runs(0);
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(runs[0].address, 0x10u);
    EXPECT_EQ(runs[0].dwords, 1);
    EXPECT_EQ(runs[1].address, 0x1000u);
    EXPECT_EQ(runs[1].dwords, 49);
}

TEST_F(PolledStationTest, GivesEachTagOnceItsLastPartHasCome) {
    m_station.store(0, QByteArray("\xa0\x01\0\0", 4) + counted(0, 49), {1000, 1});
    const std::vector<PolledStation::Value> values = m_station.values(0);
    ASSERT_EQ(values.size(), 2u) << "a part of the block is missing";
    EXPECT_EQ(values[0].id, 1);
    EXPECT_EQ(values[0].data, QByteArray("\x02")) << "bits 4 to 6";
    EXPECT_EQ(values[1].id, 2);
    EXPECT_EQ(values[1].data, QByteArray("\xa0\x01", 2));

    m_station.store(1, counted(49, 11), {2000, 2});
    const std::vector<PolledStation::Value> block = m_station.values(1);
    ASSERT_EQ(block.size(), 1u);
    EXPECT_EQ(block[0].data, counted(0, 60));
    EXPECT_EQ(block[0].when.monotonic_usecs, 1000) << "its oldest part";
}

TEST_F(PolledStationTest, DoesNotChangeWhatItHasGiven) {
    m_station.store(0, QByteArray(200, '\0'), {1000, 1});
    m_station.store(1, counted(0, 11), {2000, 2});
    const QByteArray given = m_station.values(1).at(0).data;
    const QByteArray copy(given.constData(), given.size());
    m_station.store(1, counted(20, 11), {3000, 3});
    EXPECT_EQ(given, copy);
    EXPECT_NE(m_station.values(1).at(0).data, copy);
}

TEST_F(PolledStationTest, GivesNoTagAPartOfWhichIsUnknown) {
    m_station.store(1, counted(49, 11), {2000, 2});
    EXPECT_TRUE(m_station.values(1).empty());
}

TEST_F(PolledStationTest, NamesAllTagsThatAFailedFrameHasAPartOf) {
    EXPECT_EQ(m_station.tags(0).size(), 3u);
    EXPECT_EQ(m_station.tags(1), std::vector<TagId>{0});
}
