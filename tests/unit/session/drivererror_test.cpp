#include "host/session/drivererror.h"

#include <gtest/gtest.h>

using namespace host;

TEST(DriverError, NamesStationAndFirstAddressOfARead) {
    const auto error = readDriverError(
        QStringLiteral("read station id#31 start address 0010100F:DMC50 no response"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->station, 31);
    EXPECT_EQ(error->read_from, 0x10100Fu);
}

TEST(DriverError, NamesTheStationOfAWrite) {
    const auto error =
        readDriverError(QStringLiteral("write station id#2 address 00000010end code 4AH"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->station, 2);
    EXPECT_EQ(error->read_from, std::nullopt);
}

TEST(DriverError, IsNoneWithoutAStation) {
    EXPECT_FALSE(readDriverError(QStringLiteral("can not open database")));
    EXPECT_FALSE(readDriverError(QString()));
}
