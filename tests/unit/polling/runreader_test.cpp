#include "runtime/drivers/polling/runreader.h"

#include "runtime/drivers/polling/dwordmap.h"
#include "tests/support/memoryline.h"

#include <gtest/gtest.h>

namespace {

class RunReaderTest : public ::testing::Test {
protected:
    quint32 stored(quint32 address) const {
        quint32 value = 0;
        EXPECT_TRUE(m_map.find(2, address, value));
        return value;
    }

    CommError m_error;
    MemoryLine m_line{m_error};
    RunReader m_reader{m_line, m_error};
    DWordMap m_map;
};

} // namespace

TEST_F(RunReaderTest, ARunIsAsLongAsTheLineAllows) {
    EXPECT_EQ(m_reader.runLength(1), 1);
    EXPECT_EQ(m_reader.runLength(50), 50);
    EXPECT_EQ(m_reader.runLength(51), 50);
}

TEST_F(RunReaderTest, PausesThenReadsIntoTheMapAndClearsTheError) {
    m_error.set(QString::fromLatin1("lost"));
    const quint32 addresses[] = {7, 5, 9};
    m_line.m_on_request = [&] { EXPECT_TRUE(m_error.isSet()); };
    EXPECT_TRUE(m_reader.read(2, addresses, 3, m_map));
    EXPECT_EQ(m_line.takeLog(), MemoryLine::Log({"pause", "read 2:7 x3"}));
    EXPECT_EQ(stored(7), MemoryLine::valueAt(2, 7));
    EXPECT_EQ(stored(5), MemoryLine::valueAt(2, 5));
    EXPECT_EQ(stored(9), MemoryLine::valueAt(2, 9));
    EXPECT_FALSE(m_error.isSet());
}

TEST_F(RunReaderTest, AFailureStoresNothingAndLeavesItsError) {
    m_map.insert(2, 7, 1234);
    m_line.m_failures = 1;
    const quint32 addresses[] = {7, 5};
    EXPECT_FALSE(m_reader.read(2, addresses, 2, m_map));
    EXPECT_EQ(stored(7), 1234u);
    EXPECT_FALSE(m_map.contains(2, 5));
    EXPECT_TRUE(m_error.isSet());
}
