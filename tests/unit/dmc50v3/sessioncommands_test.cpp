#include "runtime/drivers/dmc50v3/sessioncommands.h"

#include "runtime/interfaces/communicatorcommand.h"

#include <gtest/gtest.h>

namespace {

typedef SessionAddresses::Stations Stations;

QList<CommunicatorCommand> commands(const char* address, int count,
                                    int type = CommunicatorCommand::DoubleWord) {
    QList<CommunicatorCommand> list;
    list.append(CommunicatorCommand(QString::fromLatin1(address), type, count));
    return list;
}

Stations addresses(const QList<CommunicatorCommand>& list) {
    AddressVectorMap project;
    project[1] = {0x10, 0x11, 0x12, 0x20, 0x20, 0x100004};
    project[3] = {0x11};
    return addressesOfSession(list, project, 1);
}

} // namespace

TEST(SessionCommands, ACommandAddsWhatTheProjectHoldsOfItsRange) {
    EXPECT_EQ(addresses(commands("NA10", 4)), Stations({{1, {0x10, 0x11, 0x12}}}));
    EXPECT_EQ(addresses(commands("NAE", 3)), Stations({{1, {0x10}}}));
    EXPECT_EQ(addresses(commands("NA12", 14)), Stations({{1, {0x12}}}));
    EXPECT_EQ(addresses(commands("NA12", 15)), Stations({{1, {0x12, 0x20}}}));
}

TEST(SessionCommands, ACountIsOfDoubleWordsWhateverTheTagsType) {
    for (int type : {int(CommunicatorCommand::Bit), int(CommunicatorCommand::Byte),
                     int(CommunicatorCommand::Word), int(CommunicatorCommand::DoubleWord)})
        EXPECT_EQ(addresses(commands("NA10", 2, type)), Stations({{1, {0x10, 0x11}}})) << type;
}

TEST(SessionCommands, ACountBelowOneAddsTheStationAlone) {
    EXPECT_EQ(addresses(commands("NA10", 0)), Stations({{1, {}}}));
    EXPECT_EQ(addresses(commands("NA10", -1)), Stations({{1, {}}}));
}

TEST(SessionCommands, ACommandWhoseAddressesAreAllMissingAddsTheStationAlone) {
    EXPECT_EQ(addresses(commands("NA999", 3)), Stations({{1, {}}}));
}

TEST(SessionCommands, TwoCommandsOfOneStationAddUpAndOverlapsCountOnce) {
    const QList<CommunicatorCommand> list =
        commands("NA11", 2) + commands("NA10", 2) + commands("NA20", 1);
    EXPECT_EQ(addresses(list), Stations({{1, {0x10, 0x11, 0x12, 0x20}}}));
}

TEST(SessionCommands, AStationPrefixNamesTheStation) {
    EXPECT_EQ(addresses(commands("3-NA10", 2)), Stations({{3, {0x11}}}));
    EXPECT_EQ(addresses(commands("PA0010004", 1)), Stations({{1, {0x100004}}}));
}

TEST(SessionCommands, SpecialTagsAreSkippedInAnyCase) {
    for (const char* tag :
         {"vvt_enable0", "VVT_ERROR0", "INITDRV0", "Write_Que_Size0", "lowlatency", "Low0"})
        EXPECT_EQ(addresses(commands(tag, 1) + commands("NA20", 1)), Stations({{1, {0x20}}}))
            << tag;
}

TEST(SessionCommandsDeath, AnUnknownStationOrAMalformedTextEndsTheProgram) {
    EXPECT_DEATH(addresses(commands("9-NA10", 1)),
                 "\"m_valid_addresses_map->end\\(\\) != lookup_map_it\"");
    EXPECT_DEATH(addresses(commands("hello", 1)), "ASSERT: \"0\"");
}
