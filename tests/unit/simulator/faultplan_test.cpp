#include "simulator/faultplan.h"

#include <gtest/gtest.h>

#include <string>

using namespace simulator;

namespace {

std::vector<Fault> faults(std::initializer_list<const char*> texts) {
    std::vector<Fault> result;
    for (const char* text : texts)
        result.push_back(*parseFault(QLatin1String(text)));
    return result;
}

char letter(const std::optional<Fault>& fault) {
    return fault ? faultName(fault->kind).at(0).toLatin1() : '.';
}

/** The first letters of the faults of @p count reads of station 1. */
std::string strikes(FaultPlan& plan, int count, quint8 station = 1,
                    Command command = Command::ReadList) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += letter(plan.next(station, command));
    return result;
}

std::string strikes(std::initializer_list<const char*> texts, int count, quint32 seed = 1) {
    FaultPlan plan(faults(texts), seed);
    return strikes(plan, count);
}

} // namespace

TEST(SimulatorFaultPlan, StrikesTheRequestsThatAreDue) {
    EXPECT_EQ(strikes({}, 3), "...");
    EXPECT_EQ(strikes({"silence"}, 3), "sss");
    EXPECT_EQ(strikes({"silence:on=3"}, 5), "..s..");
    EXPECT_EQ(strikes({"silence:every=2"}, 6), ".s.s.s");
    EXPECT_EQ(strikes({"silence:count=2"}, 4), "ss..");
    EXPECT_EQ(strikes({"silence:every=2,count=2"}, 8), ".s.s....");
    EXPECT_EQ(strikes({"silence:chance=0"}, 4), "....");
    EXPECT_EQ(strikes({"silence:chance=1"}, 4), "ssss");
    EXPECT_EQ(strikes({"silence:chance=1,count=1"}, 4), "s...");
}

TEST(SimulatorFaultPlan, TheFirstOfTheDueFaultsStrikes) {
    EXPECT_EQ(strikes({"silence:every=3", "late:every=2"}, 6), ".lsl.s");
}

TEST(SimulatorFaultPlan, AFaultThatYieldsIsNotUsedUp) {
    EXPECT_EQ(strikes({"silence:on=1", "late:count=1"}, 3), "sl.");
}

TEST(SimulatorFaultPlan, CountsTheRequestsOfItsStationAndCommandOnly) {
    FaultPlan plan(faults({"silence:station=2,command=WN,on=2"}), 1);
    EXPECT_EQ(strikes(plan, 3, 1, Command::WriteList), "...");
    EXPECT_EQ(strikes(plan, 3, 2, Command::ReadList), "...");
    EXPECT_EQ(strikes(plan, 3, 2, Command::WriteGroup), "...");
    EXPECT_EQ(strikes(plan, 3, 2, Command::WriteList), ".s.");
}

TEST(SimulatorFaultPlan, ChancesFollowTheSeed) {
    const std::string first = strikes({"silence:chance=0.25"}, 1000, 7);
    EXPECT_EQ(strikes({"silence:chance=0.25"}, 1000, 7), first);
    EXPECT_NE(strikes({"silence:chance=0.25"}, 1000, 8), first);
    const auto count = std::count(first.begin(), first.end(), 's');
    EXPECT_GT(count, 200);
    EXPECT_LT(count, 300);
}

TEST(SimulatorFaultPlan, AForcedFaultStrikesItsStationUntilReleased) {
    FaultPlan plan(faults({"late:every=2"}), 1);
    plan.force(2, *parseFault(QLatin1String("silence")));
    EXPECT_EQ(strikes(plan, 2, 2), "ss");
    EXPECT_EQ(strikes(plan, 2, 1), ".l");
    plan.release(2);
    EXPECT_EQ(strikes(plan, 2, 2), ".l");
}

TEST(SimulatorFaultPlan, AForcedFaultMayConcernOneCommand) {
    FaultPlan plan({}, 1);
    plan.force(1, *parseFault(QLatin1String("silence:command=WN")));
    EXPECT_EQ(strikes(plan, 2, 1, Command::ReadList), "..");
    EXPECT_EQ(strikes(plan, 2, 1, Command::WriteList), "ss");
}
