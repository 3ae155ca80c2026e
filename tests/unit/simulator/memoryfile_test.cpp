#include "simulator/linememory.h"
#include "simulator/memoryfile.h"

#include "tests/support/errorof.h"
#include "tests/support/temporarydirectory.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using namespace simulator;

namespace {

LineSettings stations(std::set<quint8> ids) {
    LineSettings settings;
    settings.stations = std::move(ids);
    return settings;
}

} // namespace

TEST(SimulatorMemoryFile, HasHexadecimalAndDecimalLinesWithComments) {
    TemporaryDirectory directory;
    directory.write(QLatin1String("memory"), "# furnace\n"
                                             "0x1000 850   # degrees\n"
                                             "\n"
                                             "  8193\t0xFFFFFFFF\r\n"
                                             "2-0x100 -1");
    const auto memory = loadMemoryFile(directory.filePath(QLatin1String("memory")));
    ASSERT_EQ(errorOf(memory), QString());
    ASSERT_EQ(memory->size(), 3u);
    EXPECT_EQ(memory->at(0).address.address, 0x1000u);
    EXPECT_EQ(memory->at(0).value, 850u);
    EXPECT_EQ(memory->at(1).address.address, 8193u);
    EXPECT_EQ(memory->at(1).value, 0xFFFFFFFFu);
    EXPECT_EQ(memory->at(2).address.station, quint8(2));
    EXPECT_EQ(memory->at(2).value, 0xFFFFFFFFu);
    EXPECT_EQ(memory->at(2).line, 5);
}

TEST(SimulatorMemoryFile, NamesTheLineOfAMistake) {
    const std::pair<const char*, const char*> rows[] = {
        {"0x10 1\n0x20\n", ":2: \"0x20\" is not ADDRESS VALUE, such as 0x1000 850"},
        {"0x10 1 2", ":1: \"0x10 1 2\" is not ADDRESS VALUE, such as 0x1000 850"},
        {"\n\nPA10 1", ":3: \"PA10\" is no address; it must be like 4096, 0x1000 or 2-0x1000 for "
                       "station 2"},
        {"0x10 1.5", ":1: \"1.5\" is no value; it must be a 32-bit number in decimal or, after 0x, "
                     "in hexadecimal"},
        {"1 0x1FFFFFFFF", ":1: \"0x1FFFFFFFF\" is no value; it must be a 32-bit number in decimal "
                          "or, after 0x, in hexadecimal"},
    };
    TemporaryDirectory directory;
    const QString file_name = directory.filePath(QLatin1String("memory"));
    for (const auto& [content, error] : rows) {
        directory.write(QLatin1String("memory"), content);
        const auto memory = loadMemoryFile(file_name);
        EXPECT_EQ(errorOf(memory).toStdString(), file_name.toStdString() + error);
    }
}

TEST(SimulatorMemoryFile, AMissingFileIsNamed) {
    EXPECT_EQ(errorOf(loadMemoryFile(QLatin1String("/nowhere/memory"))),
              QLatin1String("/nowhere/memory: No such file or directory"));
}

TEST(SimulatorMemoryFile, GoesToTheStationsThatItMeans) {
    TemporaryDirectory directory;
    directory.write(QLatin1String("memory"), "0x10 5\n2-0x11 6\n");
    const Line line(makePtyPort(), stations({1, 2}));
    EXPECT_EQ(errorOf(loadMemory(line, directory.filePath(QLatin1String("memory")))), QString());
    EXPECT_EQ(line.station(1)->read(0x10, 0), 5u);
    EXPECT_EQ(line.station(2)->read(0x10, 0), 5u);
    EXPECT_EQ(line.station(1)->read(0x11, 0), 0u);
    EXPECT_EQ(line.station(2)->read(0x11, 0), 6u);
}

TEST(SimulatorMemoryFile, AStationThatIsNotThereChangesNothing) {
    TemporaryDirectory directory;
    directory.write(QLatin1String("memory"), "0x10 5\n3-0x11 6\n");
    const QString file_name = directory.filePath(QLatin1String("memory"));
    const Line line(makePtyPort(), stations({1, 2}));
    EXPECT_EQ(errorOf(loadMemory(line, file_name)),
              file_name + QLatin1String(":2: there is no station 3 on this line"));
    EXPECT_EQ(line.station(1)->read(0x10, 0), 0u);
}

TEST(SimulatorMemoryFile, WhatIsSavedCanBeLoaded) {
    TemporaryDirectory directory;
    const QString file_name = directory.filePath(QLatin1String("memory"));
    const Line before(makePtyPort(), stations({1, 2}));
    before.station(2)->write(0xFFFFFFFE, 0xFFFFFFFF);
    EXPECT_EQ(errorOf(saveMemory(before, file_name)), QString());
    EXPECT_TRUE(directory.read(QLatin1String("memory")).contains("2-0xFFFFFFFE 4294967295\n"));

    const Line after(makePtyPort(), stations({1, 2}));
    EXPECT_EQ(errorOf(loadMemory(after, file_name)), QString());
    EXPECT_EQ(after.station(1)->snapshot(0), before.station(1)->snapshot(0));
    EXPECT_EQ(after.station(2)->snapshot(0), before.station(2)->snapshot(0));
}

TEST(SimulatorMemoryFile, AFileThatCannotBeSavedIsNamed) {
    EXPECT_EQ(errorOf(saveMemoryFile(QLatin1String("/nowhere/memory"), {})),
              QLatin1String("/nowhere/memory: No such file or directory"));
}
