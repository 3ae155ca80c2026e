#include "simulator/fault.h"

#include "tests/support/errorof.h"
#include "tests/unit/simulator/wire.h"

#include <gtest/gtest.h>

using namespace simulator;
using Kind = Fault::Kind;

namespace {

Fault good(const char* text) {
    const Result<Fault> fault = parseFault(QLatin1String(text));
    EXPECT_EQ(shown(errorOf(fault)), "") << text;
    return fault.value_or(Fault());
}

} // namespace

TEST(SimulatorFault, HasTwelveKindsWithUsefulDefaults) {
    const std::pair<const char*, const char*> rows[] = {
        {"silence", "silence"},
        {"late", "late ms=1000"},
        {"split", "split at=1 ms=50"},
        {"dribble", "dribble ms=10"},
        {"checksum", "checksum"},
        {"wrong-station", "wrong-station value=next"},
        {"end-code", "end-code value=65"},
        {"truncate", "truncate at=1"},
        {"noise-before", "noise-before bytes=<FF><00>"},
        {"noise-after", "noise-after bytes=<FF><00>"},
        {"echo", "echo"},
        {"close", "close ms=1000"},
    };
    int kind = 0;
    for (const auto& [name, description] : rows) {
        const Fault fault = good(name);
        EXPECT_EQ(int(fault.kind), kind++);
        EXPECT_EQ(shown(faultName(fault.kind)), name);
        EXPECT_EQ(shown(describeFault(fault)), description);
    }
}

TEST(SimulatorFault, TakesSettings) {
    const Fault late = good("late:station=2,command=WN,every=3,count=4,ms=400");
    EXPECT_EQ(late.station, quint8(2));
    EXPECT_EQ(late.command, Command::WriteList);
    EXPECT_EQ(late.every, 3u);
    EXPECT_EQ(late.count, 4u);
    EXPECT_EQ(late.ms, 400);
    EXPECT_EQ(good("silence:on=7").on, 7u);
    EXPECT_EQ(good("silence:chance=0.25").chance, 0.25);
    EXPECT_EQ(good("split:at=12").at, 12);
    EXPECT_EQ(good("end-code:value=0x4A").value, quint8(0x4A));
    EXPECT_EQ(shown(good("noise-after:bytes=a<02><2C>").bytes), "a<02>,");
}

TEST(SimulatorFault, SaysWhatIsWrong) {
    const std::pair<const char*, const char*> rows[] = {
        {"lost", "unknown kind \"lost\"; the kinds are silence, late, split, dribble, checksum, "
                 "wrong-station, end-code, truncate, noise-before, noise-after, echo, close"},
        {"silence:station", "\"station\" must be like KEY=VALUE"},
        {"silence:ms=1", "\"silence\" takes no \"ms\"; it takes station, command, on, every, "
                         "chance, count"},
        {"split:bytes=a", "\"split\" takes no \"bytes\"; it takes at, ms, station, command, on, "
                          "every, chance, count"},
        {"silence:station=0", "station = \"0\" must be a station, 1 to 255"},
        {"silence:station=256", "station = \"256\" must be a station, 1 to 255"},
        {"silence:command=rn", "command = \"rn\" must be RN, WG or WN"},
        {"silence:on=0", "on = \"0\" must be a number from 1"},
        {"silence:every=-2", "every = \"-2\" must be a number from 1"},
        {"silence:chance=2", "chance = \"2\" must be between 0 and 1"},
        {"silence:chance=nan", "chance = \"nan\" must be between 0 and 1"},
        {"silence:count=x", "count = \"x\" must be a number from 1"},
        {"late:ms=3600001", "ms = \"3600001\" must be milliseconds, 0 to 3600000"},
        {"split:at=0", "at = \"0\" must be a number of bytes, 1 to 1000"},
        {"end-code:value=0", "value = \"0\" must be a number, 1 to 255"},
        {"noise-before:bytes=<FF", "bytes = \"<FF\" must be bytes such as <FF><00>AB"},
        {"noise-before:bytes=", "bytes = \"\" must be bytes such as <FF><00>AB"},
        {"silence:on=1,every=2", "only one of on, every and chance can be given"},
        {"silence:every=1,chance=0", "only one of on, every and chance can be given"},
    };
    for (const auto& [text, error] : rows)
        EXPECT_EQ(shown(errorOf(parseFault(QLatin1String(text)))), error);
}
