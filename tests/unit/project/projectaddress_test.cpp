#include "host/project/projectaddress.h"

#include "tests/support/errorof.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

ProjectAddress parsed(const char* text) {
    const auto address = parseProjectAddress(QString::fromLatin1(text));
    EXPECT_EQ(errorOf(address), QString()) << text;
    return address.value_or(ProjectAddress());
}

QString problemOf(const char* text) {
    return errorOf(parseProjectAddress(QString::fromLatin1(text)));
}

} // namespace

TEST(ProjectAddress, AddsTheGroupInBitsTwentyAndUpToTheOffset) {
    EXPECT_EQ(parsed("PA0011000").dword, 0x101000u);
    EXPECT_EQ(parsed("PA00A0010").dword, 0xA00010u);
    EXPECT_EQ(parsed("PAFFF0FFFFF").dword, 0xFFFFFFFFu);
    EXPECT_EQ(parsed("NA1F").dword, 0x1Fu);
    EXPECT_EQ(parsed("NAFFFFFFFF").dword, 0xFFFFFFFFu);
}

TEST(ProjectAddress, TakesSmallLettersAndGivesTheDriverCapitals) {
    EXPECT_EQ(parsed("pa00a001f").dword, 0xA0001Fu);
    EXPECT_EQ(parsed("pa00a001f").text, QStringLiteral("PA00A001F"));
    EXPECT_EQ(parsed("vvt_enable0").text, QStringLiteral("VVT_ENABLE0"));
}

TEST(ProjectAddress, KeepsStationAndBitApartFromTheText) {
    const ProjectAddress address = parsed("12-PA0011000.33");
    EXPECT_EQ(address.text, QStringLiteral("PA0011000"));
    EXPECT_EQ(address.station, 12);
    EXPECT_EQ(address.bit, 33);
    EXPECT_EQ(address.accessText(), QStringLiteral("PA0011000.33"));
    EXPECT_FALSE(parsed("NA10").station);
    EXPECT_FALSE(parsed("NA10").bit);
    EXPECT_EQ(parsed("NA10.0").bit, 0);
}

TEST(ProjectAddress, KnowsTheSpecialAddresses) {
    EXPECT_EQ(parsed("INITDRV0").kind, AddressKind::InitDriver);
    EXPECT_EQ(parsed("WRITE_QUE_SIZE0").kind, AddressKind::WriteQueueSize);
    EXPECT_EQ(parsed("LOWLATENCY").kind, AddressKind::LowLatency);
    EXPECT_EQ(parsed("2-LOWLATENCY").station, 2);
    EXPECT_EQ(parsed("VVT_PROG_COUNT0").kind, AddressKind::Transfer);
}

TEST(ProjectAddress, RefusesEveryTextThatTheDriverWouldEndTheProgramOn) {
    for (const char* text : {"", "PA", "NA", "PA001", "PB0011000", "XX", "-NA10", "1-", "NA10.x",
                             "NA10.1.2", "1-2-NA10", "NA10 ", "LOWLATENCY0", "X-LOWLATENCY",
                             "-LOWLATENCY", "INITDRV", "1-INITDRV0", "VVT_", "\xff"})
        EXPECT_FALSE(problemOf(text).isEmpty()) << text;
}

TEST(ProjectAddress, SaysWhatWouldBeRight) {
    EXPECT_EQ(problemOf("PA00l1000"),
              QStringLiteral("'l' in 'PA00l1000' is not a hexadecimal digit"));
    EXPECT_EQ(
        problemOf("NA1O"),
        QStringLiteral("'O' in 'NA1O' is not a hexadecimal digit; did you mean the digit 0?"));
    EXPECT_EQ(problemOf("WRITE_QUEUE_SIZE0"),
              QStringLiteral("'WRITE_QUEUE_SIZE0' is not an address; did you mean "
                             "'WRITE_QUE_SIZE0'?"));
    EXPECT_EQ(problemOf("256-NA1"),
              QStringLiteral("station 256 does not exist; stations are 1 to 255"));
    EXPECT_EQ(problemOf("2-VVT_ENABLE0"),
              QStringLiteral("'2-VVT_ENABLE0' takes no station; write VVT_ENABLE0"));
}
