#include "simulator/transmission.h"

#include "tests/unit/simulator/wire.h"

#include <gtest/gtest.h>

using namespace simulator;

namespace {

const char AnyRequest[] = "<02>0100XRN00LL00002016<03>C1<0D><0A>";

/** What leaves, with pauses as "~ms~" between the pieces. */
std::string sent(const Transmission& transmission) {
    std::string text;
    if (!transmission.echo.isEmpty())
        text += "echo " + shown(transmission.echo) + " then ";
    for (const Transmission::Piece& piece : transmission.pieces) {
        if (piece.pause_ms > 0)
            text += '~' + std::to_string(piece.pause_ms) + '~';
        text += shown(piece.bytes);
    }
    if (transmission.closed_ms)
        text += "closed " + std::to_string(*transmission.closed_ms);
    return text;
}

std::string sentWith(const char* fault, const Reply& reply) {
    return sent(faultyTransmission(*parseFault(QLatin1String(fault)), wire(AnyRequest), reply));
}

} // namespace

TEST(SimulatorTransmission, WithoutAFaultIsTheReply) {
    EXPECT_EQ(sent(plainTransmission({1, 0, EndOk, {200}})), "<02>0100X00000000C8<03>E7<0D><0A>");
}

TEST(SimulatorTransmission, ShowsEveryFaultByteForByte) {
    const std::pair<const char*, const char*> rows[] = {
        {"silence", ""},
        {"late:ms=400", "~400~<02>0100X00000000C8<03>E7<0D><0A>"},
        {"split:at=6,ms=30", "<02>0100X~30~00000000C8<03>E7<0D><0A>"},
        {"split:at=100,ms=30", "<02>0100X00000000C8<03>E7<0D><0A>~30~"},
        {"checksum", "<02>0100X00000000C8<03>E8<0D><0A>"},
        {"wrong-station", "<02>0200X00000000C8<03>E6<0D><0A>"},
        {"wrong-station:value=0xFF", "<02>FF00X00000000C8<03>BC<0D><0A>"},
        {"end-code:value=0x4A", "<02>0100X4A<03>6D<0D><0A>"},
        {"truncate:at=9", "<02>0100X000"},
        {"truncate:at=100", "<02>0100X00000000C8<03>E7<0D><0A>"},
        {"noise-before:bytes=<FF>a", "<FF>a<02>0100X00000000C8<03>E7<0D><0A>"},
        {"noise-after:bytes=<FF>a", "<02>0100X00000000C8<03>E7<0D><0A><FF>a"},
        {"echo", "echo <02>0100XRN00LL00002016<03>C1<0D><0A> then "
                 "<02>0100X00000000C8<03>E7<0D><0A>"},
        {"close:ms=250", "closed 250"},
    };
    for (const auto& [fault, expected] : rows)
        EXPECT_EQ(sentWith(fault, {1, 0, EndOk, {200}}), expected) << fault;
}

TEST(SimulatorTransmission, DribblesByteByByte) {
    EXPECT_EQ(sentWith("dribble:ms=5", {1, 0, EndOk, {}}),
              "<02>~5~0~5~1~5~0~5~0~5~X~5~0~5~0~5~<03>~5~8~5~2~5~<0D>~5~<0A>");
}

TEST(SimulatorTransmission, TheBadChecksumOfFfIs00) {
    EXPECT_EQ(sentWith("checksum", {1, 0, EndOk, {0x10000002}}),
              "<02>0100X0010000002<03>00<0D><0A>");
}

TEST(SimulatorTransmission, TheStationAfterTheLastIs0) {
    EXPECT_EQ(sentWith("wrong-station", {255, 0, EndOk, {}}), "<02>0000X00<03>83<0D><0A>");
}

TEST(SimulatorTransmission, AnEchoedRefusalIsCarriedInOneText) {
    const Transmission transmission =
        faultyTransmission(*parseFault(QLatin1String("echo")), "ab", {1, 0, EndOk, {}});
    EXPECT_EQ(shown(transmission.bytes()), "ab<02>0100X00<03>82<0D><0A>");
}
