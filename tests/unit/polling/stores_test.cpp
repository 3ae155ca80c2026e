// The thread's shared maps and queues, without the thread.
#include "runtime/drivers/polling/addressvector.h"
#include "runtime/drivers/polling/commerror.h"
#include "runtime/drivers/polling/dwordmap.h"
#include "runtime/drivers/polling/readqueue.h"
#include "runtime/drivers/polling/writequeue.h"

#include <gtest/gtest.h>

namespace {

quint32 dwordAt(const QByteArray& data, int index) {
    quint32 value = 0;
    for (int byte = 3; byte >= 0; --byte)
        value = value << 8 | quint8(data.at(4 * index + byte));
    return value;
}

} // namespace

TEST(SearchIndex, FindsInsideTheBoundsOnly) {
    const AddressVector vector = {2, 4, 6, 8};
    EXPECT_EQ(SearchIndex(vector, 2), 0);
    EXPECT_EQ(SearchIndex(vector, 8), 3);
    EXPECT_EQ(SearchIndex(vector, 5), -1);
    EXPECT_EQ(SearchIndex(vector, 1, 2, 2), -1);
    EXPECT_EQ(SearchIndex(vector, 1, 2, 6), 2);
    EXPECT_EQ(SearchIndex(vector, 3, 2, 8), -1);
    EXPECT_EQ(SearchIndex(AddressVector(), 1), -1);
}

TEST(DWordMap, CopiesTwoCachedValuesAndReportsTheThirdAsAMiss) {
    DWordMap map;
    map.insert(1, 0x10, 111);
    map.insert(1, 0x12, 222);
    QByteArray data(12, '\0');
    AddressVector miss;
    UCharVector miss_indexes;
    map.copyKnown(1, {0x10, 0x11, 0x12}, {0, 1, 2}, data, miss, miss_indexes);
    EXPECT_EQ(dwordAt(data, 0), 111u);
    EXPECT_EQ(dwordAt(data, 1), 0u);
    EXPECT_EQ(dwordAt(data, 2), 222u);
    EXPECT_EQ(miss, AddressVector({0x11}));
    EXPECT_EQ(miss_indexes, UCharVector({1}));
}

TEST(DWordMap, AStationNeverPolledReportsEveryAddressAsAMiss) {
    DWordMap map;
    QByteArray data(8, '\0');
    AddressVector miss;
    UCharVector miss_indexes;
    map.copyKnown(9, {1, 2}, {0, 1}, data, miss, miss_indexes);
    EXPECT_EQ(miss, AddressVector({1, 2}));
    EXPECT_EQ(miss_indexes, UCharVector({0, 1}));
}

TEST(DWordMap, TakesAllOrNothing) {
    DWordMap map;
    map.insert(1, 5, 50);
    QByteArray data(8, '\0');
    EXPECT_FALSE(map.takeAll(2, {5}, {0}, data));
    EXPECT_FALSE(map.takeAll(1, {5, 6}, {0, 1}, data));
    EXPECT_TRUE(map.contains(1, 5));
    map.insert(1, 6, 60);
    EXPECT_TRUE(map.takeAll(1, {5, 6}, {0, 1}, data));
    EXPECT_EQ(dwordAt(data, 0), 50u);
    EXPECT_EQ(dwordAt(data, 1), 60u);
    EXPECT_FALSE(map.contains(1, 5));
    EXPECT_FALSE(map.contains(1, 6));
}

TEST(DWordMapDeath, APositionBeyondTheDataEndsTheProgram) {
    DWordMap map;
    map.insert(1, 5, 50);
    QByteArray data(4, '\0');
    EXPECT_DEATH(map.takeAll(1, {5}, {1}, data), "offset \\+ DWordSize <= data.size\\(\\)");
}

TEST(DWordMapDeath, AReplyWithoutAddressesEndsTheProgram) {
    DWordMap map;
    const quint32 number = 1;
    EXPECT_DEATH(map.store(1, nullptr, &number, 1), "\"addresses != 0\"");
    EXPECT_DEATH(map.store(1, &number, &number, 0), "\"num_of_addresses > 0\"");
}

TEST(DWordMap, StoresValuesUnderTheirAddresses) {
    DWordMap map;
    const quint32 addresses[] = {0x10, 0x20};
    const quint32 values[] = {1, 0xFFFFFFFF};
    map.store(1, addresses, values, 2);
    quint32 value = 0;
    EXPECT_TRUE(map.find(1, 0x20, value));
    EXPECT_EQ(value, 0xFFFFFFFFu);
    EXPECT_TRUE(map.find(1, 0x10, value));
    EXPECT_EQ(value, 1u);
    map.clear();
    EXPECT_FALSE(map.contains(1, 0x10));
}

TEST(DWordMap, StoresAsManyAsCountedAndNoNeighbour) {
    DWordMap map;
    const quint32 numbers[] = {1, 2, 3, 4};
    map.store(1, numbers + 1, numbers + 1, 2);
    EXPECT_FALSE(map.contains(1, 1));
    EXPECT_TRUE(map.contains(1, 2));
    EXPECT_TRUE(map.contains(1, 3));
    EXPECT_FALSE(map.contains(1, 4));
}

TEST(WriteQueue, BatchesOneStationAtATimeInStationOrder) {
    const CommError error;
    WriteQueue queue(error);
    const AddrArg two = {2, 20}, one = {1, 10};
    queue.push(2, &two, 1);
    queue.push(1, &one, 1);
    quint8 station = 0;
    std::vector<AddrArg> batch;
    ASSERT_TRUE(queue.takeBatch(25, station, batch));
    EXPECT_EQ(station, 1);
    ASSERT_TRUE(queue.takeBatch(25, station, batch));
    EXPECT_EQ(station, 2);
    EXPECT_FALSE(queue.takeBatch(25, station, batch));
    EXPECT_TRUE(queue.isEmpty());
}

TEST(WriteQueue, KeepsTwoWritesOfOneAddressInOrder) {
    const CommError error;
    WriteQueue queue(error);
    const AddrArg pairs[] = {{1, 10}, {1, 11}};
    queue.push(1, pairs, 2);
    EXPECT_EQ(queue.size(1), 2);
    quint8 station = 0;
    std::vector<AddrArg> batch;
    ASSERT_TRUE(queue.takeBatch(25, station, batch));
    ASSERT_EQ(batch.size(), 2u);
    EXPECT_EQ(batch[0].value, 10u);
    EXPECT_EQ(batch[1].value, 11u);
}

TEST(WriteQueue, AStationThatNeverHadAWriteHasNoneWaiting) {
    const CommError error;
    WriteQueue queue(error);
    EXPECT_EQ(queue.size(7), 0);
    queue.push(7, nullptr, 0);
    EXPECT_EQ(queue.size(7), 0);
    EXPECT_TRUE(queue.isEmpty());
}

TEST(ReadQueue, KeepsDuplicatesInOrder) {
    ReadQueue queue;
    EXPECT_TRUE(queue.isEmpty());
    queue.push(1, {3, 1});
    queue.push(1, {3});
    EXPECT_FALSE(queue.isEmpty());
    QMutexLocker lock(&queue.mutex());
    EXPECT_EQ(queue.stationsLocked()[1], AddressVector({3, 1, 3}));
}
