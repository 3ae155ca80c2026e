#include "runtime/drivers/dmc50v3/sessionaddresses.h"
#include "runtime/interfaces/communicatorcommand.h"

#include <gtest/gtest.h>

namespace {

QList<CommunicatorCommand> commands(const char* address, int count) {
    QList<CommunicatorCommand> list;
    list.append(
        CommunicatorCommand(QString::fromLatin1(address), CommunicatorCommand::DoubleWord, count));
    return list;
}

AddressVectorMap project() {
    AddressVectorMap valid;
    valid[1] = {0x10, 0x11, 0x12, 0x20, 0x20, 0x100004};
    valid[3] = {0x11};
    return valid;
}

} // namespace

TEST(SessionAddresses, ACommandAddsWhatTheProjectHoldsOfItsRange) {
    SessionAddresses session;
    session.replace(commands("NA10", 4), project(), 1);
    AddressVectorMap cache;
    session.mergeInto(cache);
    ASSERT_EQ(cache.size(), 1u);
    EXPECT_EQ(cache[1], AddressVector({0x10, 0x11, 0x12}));
}

TEST(SessionAddresses, ACountIsOfDoubleWordsWhateverTheTagsType) {
    for (int type : {int(CommunicatorCommand::Bit), int(CommunicatorCommand::Byte),
                     int(CommunicatorCommand::Word), int(CommunicatorCommand::DoubleWord)}) {
        QList<CommunicatorCommand> list;
        list.append(CommunicatorCommand(QString::fromLatin1("NA10"), type, 2));
        SessionAddresses session;
        session.replace(list, project(), 1);
        AddressVectorMap cache;
        session.mergeInto(cache);
        EXPECT_EQ(cache[1], AddressVector({0x10, 0x11})) << type;
    }
}

TEST(SessionAddresses, TwoCommandsOfOneStationAddUpAndOverlapsCountOnce) {
    SessionAddresses session;
    QList<CommunicatorCommand> list = commands("NA11", 2);
    list += commands("NA10", 2);
    list += commands("NA20", 1); // twice in the project
    session.replace(list, project(), 1);
    AddressVectorMap cache;
    session.mergeInto(cache);
    EXPECT_EQ(cache[1], AddressVector({0x10, 0x11, 0x12, 0x20}));
}

TEST(SessionAddresses, AStationPrefixNamesTheStation) {
    SessionAddresses session;
    session.replace(commands("3-NA10", 2), project(), 1);
    AddressVectorMap cache;
    session.mergeInto(cache);
    ASSERT_EQ(cache.size(), 1u);
    EXPECT_EQ(cache[3], AddressVector({0x11}));
}

TEST(SessionAddresses, SpecialTagsAreSkippedInAnyCase) {
    for (const char* tag :
         {"vvt_enable0", "VVT_ERROR0", "INITDRV0", "Write_Que_Size0", "lowlatency"}) {
        SessionAddresses session;
        session.replace(commands(tag, 1), project(), 1);
        AddressVectorMap cache;
        session.mergeInto(cache);
        EXPECT_TRUE(cache.empty()) << tag;
    }
}

TEST(SessionAddresses, ANewListReplacesTheOldOne) {
    SessionAddresses session;
    session.replace(commands("NA10", 1), project(), 1);
    session.replace(commands("PA0010004", 1), project(), 1);
    AddressVectorMap cache;
    session.mergeInto(cache);
    EXPECT_EQ(cache[1], AddressVector({0x100004}));
}

TEST(SessionAddresses, MergesIntoAVectorThatIsThere) {
    SessionAddresses session;
    session.replace(commands("NA10", 2), project(), 1);
    AddressVectorMap cache;
    cache[1] = {0x11, 0x20};
    session.mergeInto(cache);
    EXPECT_EQ(cache[1], AddressVector({0x10, 0x11, 0x20}));
}

TEST(SessionAddressesDeath, ACommandWhoseAddressesAreAllMissingEndsTheProgramAtTheTakeOver) {
    SessionAddresses session;
    session.replace(commands("NA999", 3), project(), 1);
    AddressVectorMap cache;
    EXPECT_DEATH(session.mergeInto(cache), "\"av.size\\(\\) > 0\"");
}

TEST(SessionAddressesDeath, AnUnknownStationOrAMalformedTextEndsTheProgram) {
    SessionAddresses session;
    EXPECT_DEATH(session.replace(commands("9-NA10", 1), project(), 1),
                 "\"m_valid_addresses_map->end\\(\\) != lookup_map_it\"");
    EXPECT_DEATH(session.replace(commands("hello", 1), project(), 1), "ASSERT: \"0\"");
}
