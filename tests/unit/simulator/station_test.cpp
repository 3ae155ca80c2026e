#include "simulator/station.h"

#include "simulator/furnaceprograms.h"

#include <gtest/gtest.h>

#include <thread>

using namespace simulator;
using Words = std::vector<quint32>;

namespace {

Reply read(Station& station, const Words& addresses, qint64 now = 0) {
    return station.answer({station.id(), 0, Command::ReadList, addresses, {}}, now);
}

Reply write(Station& station, const Words& addresses, const Words& values) {
    return station.answer({station.id(), 0, Command::WriteList, addresses, values}, 0);
}

} // namespace

TEST(SimulatorStation, ReadsBackWhatWasWrittenInTheOrderAskedFor) {
    Station station(3);
    const Reply written = write(station, {0x10, 0xFFFFFFFF, 0x10}, {1, 2, 3});
    EXPECT_EQ(written.end_code, EndOk);
    EXPECT_TRUE(written.data.empty());
    const Reply reply = read(station, {0xFFFFFFFF, 0x10, 0x11});
    EXPECT_EQ(reply.station, 3);
    EXPECT_EQ(reply.data, (Words{2, 3, 0}));
}

TEST(SimulatorStation, RepeatsTheSubaddress) {
    Station station(1);
    EXPECT_EQ(station.answer({1, 0x1F, Command::ReadList, {0}, {}}, 0).subaddress, 0x1F);
}

TEST(SimulatorStation, IsReadyForLowLatencyWhileAllFourSettingsStand) {
    Station station(1);
    EXPECT_EQ(read(station, {0x2016}).data, Words{0});
    write(station, {0x2012, 0x2013, 0x2014}, {1, 5, 200});
    EXPECT_EQ(read(station, {0x2016}).data, Words{0});
    write(station, {0x2015}, {5});
    EXPECT_EQ(read(station, {0x2016}).data, Words{200});
    write(station, {0x2012}, {0});
    EXPECT_EQ(read(station, {0x2016}).data, Words{0});
}

TEST(SimulatorStation, TheLowLatencyCheckCannotBeWritten) {
    Station station(1);
    write(station, {0x2016}, {200});
    EXPECT_EQ(read(station, {0x2016}).data, Words{0});
    EXPECT_EQ(station.snapshot(0).count(0x2016), 0u);
}

TEST(SimulatorStation, HoldsThirtyTwoPlausiblePrograms) {
    Station station(1);
    for (int number = 1; number <= ProgramCount; ++number) {
        const quint32 base = 0x1000 + 0x20 * quint32(number - 1);
        EXPECT_GE(station.read(base, 0), 80u) << number;
        EXPECT_LE(station.read(base, 0), 1000u) << number;
        EXPECT_LT(station.read(base + 2, 0), 60u) << number;
        EXPECT_LT(station.read(base + 3, 0), 60u) << number;
        EXPECT_GE(station.read(base + 6, 0), 1u) << number;
        for (quint32 switched = 8; switched < 24; ++switched)
            EXPECT_LE(station.read(base + switched, 0), 1u) << number;
    }
    EXPECT_EQ(station.snapshot(0).size(), 32u * 24u);
}

TEST(SimulatorStation, AMovingValueMovesUntilItIsWritten) {
    Station station(1);
    station.setMoving(0x100, {MovingValue::Shape::Ramp, 0, 100, 0, 1});
    EXPECT_EQ(read(station, {0x100}, 500).data, Words{50});
    EXPECT_EQ(station.snapshot(250).at(0x100), 25u);
    write(station, {0x100}, {7});
    EXPECT_EQ(read(station, {0x100}, 500).data, Words{7});
}

TEST(SimulatorStation, CanBeUsedByManyThreads) {
    Station station(1);
    std::thread writer([&] {
        for (quint32 i = 0; i < 2000; ++i)
            station.write(i % 50, i);
    });
    for (int i = 0; i < 200; ++i)
        read(station, {0, 1, 2, 3});
    writer.join();
    EXPECT_EQ(station.read(49, 0), 1999u);
}
