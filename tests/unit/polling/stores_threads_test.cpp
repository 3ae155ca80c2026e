// Two threads at one store: nothing is lost, torn or mixed up.
#include "runtime/drivers/polling/commerror.h"
#include "runtime/drivers/polling/dwordmap.h"
#include "runtime/drivers/polling/readqueue.h"
#include "runtime/drivers/polling/sessionaddresses.h"
#include "runtime/drivers/polling/writequeue.h"

#include "tests/support/together.h"

#include <gtest/gtest.h>

namespace {

const int Rounds = 20000;

/** A map that knows addresses 0 to 9 of station 1, each with its own number. */
struct KnownMap : DWordMap {
    KnownMap() {
        for (quint32 address = 0; address < 10; ++address)
            insert(1, address, address);
    }
};

const AddressVector Known = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
const UCharVector Positions = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

} // namespace

TEST(StoresThreads, TwoThreadsStoreTheirOwnAddresses) {
    DWordMap map;
    together(
        Rounds, [&](int round) { map.insert(1, quint32(round), 1); },
        [&](int round) {
            const quint32 address = quint32(Rounds + round), value = 2;
            map.store(1, &address, &value, 1);
        });
    int missing = 0;
    for (quint32 address = 0; address < 2 * Rounds; ++address)
        missing += !map.contains(1, address);
    EXPECT_EQ(missing, 0);
}

TEST(StoresThreads, AKnownAddressIsFoundWhileOthersAreStored) {
    KnownMap map;
    int wrong = 0;
    together(
        Rounds, [&](int round) { map.insert(1, 10 + quint32(round), 0); },
        [&](int round) {
            quint32 value = 99;
            wrong += !map.find(1, quint32(round % 10), value) || value != quint32(round % 10);
        });
    EXPECT_EQ(wrong, 0);
}

TEST(StoresThreads, KnownAddressesAreCopiedWhileOthersAreStored) {
    KnownMap map;
    std::size_t misses = 0;
    together(
        Rounds, [&](int round) { map.insert(1, 10 + quint32(round), 0); },
        [&](int) {
            QByteArray data(40, '\0');
            AddressVector miss;
            UCharVector miss_indexes;
            map.copyKnown(1, Known, Positions, data, miss, miss_indexes);
            misses += miss.size();
        });
    EXPECT_EQ(misses, 0u);
}

TEST(StoresThreads, AnAddressIsTakenByItsReaderAlone) {
    DWordMap map;
    int lost = 0;
    const auto insertAndTake = [&map](quint32 address, int& lost_here) {
        QByteArray data(4, '\0');
        map.insert(1, address, address);
        lost_here += !map.takeAll(1, {address}, {0}, data);
    };
    int lost_there = 0;
    together(
        Rounds, [&](int round) { insertAndTake(quint32(2 * (round % 50)), lost); },
        [&](int round) { insertAndTake(quint32(2 * (round % 50) + 1), lost_there); });
    EXPECT_EQ(lost + lost_there, 0);
    for (quint32 address = 0; address < 100; ++address)
        EXPECT_FALSE(map.contains(1, address));
}

TEST(StoresThreads, AMapIsForgottenAsAWhole) {
    DWordMap map;
    const quint32 addresses[] = {1, 2, 3}, values[] = {1, 2, 3};
    together(
        Rounds, [&](int) { map.clear(); }, [&](int) { map.store(1, addresses, values, 3); });
    map.clear();
    EXPECT_FALSE(map.contains(1, 1));
}

TEST(StoresThreads, EveryQueuedWriteIsTakenOnceAndInOrder) {
    const CommError error;
    WriteQueue queue(error);
    std::vector<quint32> taken;
    const auto take = [&] {
        quint8 station = 0;
        std::vector<AddrArg> batch;
        if (queue.takeBatch(25, station, batch)) {
            for (const AddrArg& pair : batch)
                taken.push_back(pair.address);
        }
    };
    together(
        Rounds, [&](int) { take(); },
        [&](int round) {
            const AddrArg pair = {quint32(round), 0};
            queue.push(1, &pair, 1);
        });
    while (!queue.isEmpty())
        take();
    ASSERT_EQ(taken.size(), std::size_t(Rounds));
    for (std::size_t i = 0; i < taken.size(); ++i)
        ASSERT_EQ(taken[i], i);
}

TEST(StoresThreads, TwoThreadsQueueWrites) {
    const CommError error;
    WriteQueue queue(error);
    const AddrArg pair = {1, 1};
    const auto push = [&](int) { queue.push(1, &pair, 1); };
    together(Rounds, push, push);
    EXPECT_EQ(queue.size(1), 2 * Rounds);
}

TEST(StoresThreads, PairsThatAreQueuedTogetherAreCountedTogether) {
    const CommError error;
    WriteQueue queue(error);
    const AddrArg pairs[] = {{1, 1}, {2, 2}};
    int odd = 0;
    together(
        Rounds, [&](int) { queue.push(1, pairs, 2); }, [&](int) { odd += queue.size(1) % 2; });
    EXPECT_EQ(odd, 0);
}

TEST(StoresThreads, TwoThreadsQueueReads) {
    ReadQueue queue;
    together(
        Rounds,
        [&](int) {
            queue.push(1, {1, 2});
        },
        [&](int) {
            queue.push(1, {3, 4});
        });
    const AddressVector& queued = queue.stationsLocked()[1];
    ASSERT_EQ(queued.size(), std::size_t(4 * Rounds));
    for (std::size_t i = 0; i < queued.size(); i += 2)
        ASSERT_EQ(queued[i + 1], queued[i] + 1); // a push stays together
}

TEST(StoresThreads, AnErrorTextIsOneThatWasSet) {
    CommError error;
    int wrong = 0;
    together(
        Rounds,
        [&](int round) {
            error.set(QString(5 + round % 3, QLatin1Char(char('a' + round % 3))));
            error.clear();
        },
        [&](int) {
            const QString text = error.text();
            if (!text.isEmpty())
                wrong += text != QString(5 + text.at(0).unicode() - 'a', text.at(0));
        });
    EXPECT_EQ(wrong, 0);
}

TEST(StoresThreads, ASessionIsTakenOverAsAWhole) {
    SessionAddresses session;
    SessionAddresses::Stations low, high;
    for (quint32 address = 0; address < 100; ++address) {
        low[1].insert(address);
        high[1].insert(1000 + address);
    }
    int wrong = 0;
    together(
        Rounds,
        [&](int round) {
            session.replace(round % 2 ? low : high);
            session.clear();
        },
        [&](int) {
            AddressVectorMap cache;
            session.mergeInto(cache);
            if (!cache.empty())
                wrong += cache[1].size() != 100 || cache[1].back() != cache[1].front() + 99;
        });
    EXPECT_EQ(wrong, 0);
}
