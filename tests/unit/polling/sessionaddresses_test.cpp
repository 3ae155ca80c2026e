#include "runtime/drivers/polling/sessionaddresses.h"

#include <gtest/gtest.h>

namespace {

AddressVectorMap merged(const SessionAddresses& session) {
    AddressVectorMap cache;
    session.mergeInto(cache);
    return cache;
}

} // namespace

TEST(SessionAddresses, BecomeAscendingVectorsOfTheirStations) {
    SessionAddresses session;
    session.replace({{3, {9}}, {1, {0x20, 0x10}}});
    EXPECT_EQ(merged(session), AddressVectorMap({{1, {0x10, 0x20}}, {3, {9}}}));
}

TEST(SessionAddresses, ANewSetReplacesTheOldOne) {
    SessionAddresses session;
    session.replace({{1, {5}}});
    session.replace({{2, {6}}});
    EXPECT_EQ(merged(session), AddressVectorMap({{2, {6}}}));
    session.clear();
    EXPECT_TRUE(merged(session).empty());
}

TEST(SessionAddresses, MergesIntoAVectorThatIsThere) {
    SessionAddresses session;
    session.replace({{1, {0x0F, 0x10, 0x11, 0x20}}});
    AddressVectorMap cache{{1, {0x11, 0x20}}, {4, {1}}};
    session.mergeInto(cache);
    EXPECT_EQ(cache, AddressVectorMap({{1, {0x0F, 0x10, 0x11, 0x20}}, {4, {1}}}));
}

TEST(SessionAddressesDeath, AStationWithoutAddressesEndsTheProgram) {
    SessionAddresses session;
    session.replace({{1, {}}});
    EXPECT_DEATH(merged(session), "\"av.size\\(\\) > 0\"");
}
