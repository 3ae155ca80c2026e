#include "simulator/numbers.h"

#include <gtest/gtest.h>

using namespace simulator;

TEST(SimulatorNumbers, AreDecimalOrHexadecimal) {
    const std::pair<const char*, quint32> rows[] = {
        {"0", 0},      {"4294967295", 0xFFFFFFFF}, {"010", 10},        {"0x10", 16},
        {"0XfF", 255}, {"0xFFFFFFFF", 0xFFFFFFFF}, {"-1", 0xFFFFFFFF}, {"-2147483648", 0x80000000},
    };
    for (const auto& [text, number] : rows)
        EXPECT_EQ(parseNumber(QLatin1String(text)), number) << text;
}

TEST(SimulatorNumbers, RefuseEverythingElse) {
    for (const char* text : {"", "x", "0x", "0x100000000", "4294967296", "-2147483649", "1.5", "+1",
                             " 1", "0x-1", "0x 1", "12h", "--1"})
        EXPECT_FALSE(parseNumber(QLatin1String(text))) << text;
}

TEST(SimulatorNumbers, AnAddressMayNameItsStation) {
    const auto everywhere = parseStationAddress(QLatin1String("0x2016"));
    ASSERT_TRUE(everywhere);
    EXPECT_FALSE(everywhere->station);
    EXPECT_EQ(everywhere->address, 0x2016u);
    const auto there = parseStationAddress(QLatin1String("31-256"));
    ASSERT_TRUE(there);
    EXPECT_EQ(there->station, quint8(31));
    EXPECT_EQ(there->address, 256u);
    for (const char* text : {"", "0-1", "256-1", "1-", "-1", "1--1", "x-1", "1-2-3"})
        EXPECT_FALSE(parseStationAddress(QLatin1String(text))) << text;
}

TEST(SimulatorNumbers, HexTextHasEightDigits) {
    EXPECT_EQ(hexText(0xAB), QLatin1String("0x000000AB"));
    EXPECT_EQ(hexText(0xFFFFFFFF), QLatin1String("0xFFFFFFFF"));
}
