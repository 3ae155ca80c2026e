#include "runtime/drivers/addrarg.h"

#include <gtest/gtest.h>

#include <cstddef>

TEST(AddrArg, IsAnAddressAndAValueOf32Bits) {
    EXPECT_EQ(sizeof(AddrArg), 8U);
    EXPECT_EQ(offsetof(AddrArg, address), 0U);
    EXPECT_EQ(offsetof(AddrArg, value), 4U);
}

TEST(LinkIdStationId, IsALinkAndAStationOf8Bits) {
    EXPECT_EQ(offsetof(LinkIdStationId, link_id), 0U);
    EXPECT_EQ(offsetof(LinkIdStationId, station_id), 4U);
    EXPECT_EQ(sizeof(LinkIdStationId::station_id), 1U);
}
