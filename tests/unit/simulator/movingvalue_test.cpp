#include "simulator/movingspec.h"

#include "tests/support/errorof.h"

#include <gtest/gtest.h>

using namespace simulator;
using Shape = MovingValue::Shape;

namespace {

Result<MovingSpec> spec(Shape shape, const char* text) {
    return parseMovingSpec(shape, QLatin1String(text));
}

} // namespace

TEST(SimulatorMovingValue, ARampRisesAndStartsAgain) {
    const MovingValue ramp = {Shape::Ramp, 100, 200, 0, 10};
    EXPECT_EQ(ramp.at(0), 100u);
    EXPECT_EQ(ramp.at(5000), 150u);
    EXPECT_EQ(ramp.at(9999), 200u);
    EXPECT_EQ(ramp.at(10000), 100u);
    EXPECT_EQ(ramp.at(12500), 125u);
}

TEST(SimulatorMovingValue, ASineSwingsAroundTheMiddle) {
    const MovingValue sine = {Shape::Sine, 0, 100, 0, 4};
    EXPECT_EQ(sine.at(0), 50u);
    EXPECT_EQ(sine.at(1000), 100u);
    EXPECT_EQ(sine.at(2000), 50u);
    EXPECT_EQ(sine.at(3000), 0u);
}

TEST(SimulatorMovingValue, ACounterStepsAtTheEndOfEachPeriod) {
    const MovingValue counter = {Shape::Counter, 7, 0, 3, 2};
    EXPECT_EQ(counter.at(1999), 7u);
    EXPECT_EQ(counter.at(2000), 10u);
    EXPECT_EQ(counter.at(20000), 37u);
}

TEST(SimulatorMovingValue, NegativeValuesAreTwosComplementAndCountersRunOver) {
    EXPECT_EQ((MovingValue{Shape::Ramp, -10, 10, 0, 10}.at(0)), 0xFFFFFFF6u);
    EXPECT_EQ((MovingValue{Shape::Counter, 4294967295.0, 0, 1, 1}.at(2000)), 1u);
}

TEST(SimulatorMovingSpec, HasDefaultsForAllButTheAddress) {
    const Result<MovingSpec> ramp = spec(Shape::Ramp, "0x100");
    ASSERT_EQ(errorOf(ramp), QString());
    EXPECT_EQ(ramp->address.address, 0x100u);
    EXPECT_EQ(ramp->value.at(5000), 500u);
    EXPECT_EQ(spec(Shape::Counter, "1")->value.at(5000), 5u);
}

TEST(SimulatorMovingSpec, TakesItsSettings) {
    const Result<MovingSpec> sine = spec(Shape::Sine, "2-0x100:from=-5,to=5,period=0.5");
    ASSERT_EQ(errorOf(sine), QString());
    EXPECT_EQ(sine->address.station, quint8(2));
    EXPECT_EQ(sine->value.at(125), 5u);
    EXPECT_EQ(spec(Shape::Counter, "1:from=4,step=-1,period=2")->value.at(2000), 3u);
}

TEST(SimulatorMovingSpec, SaysWhatIsWrong) {
    const std::tuple<Shape, const char*, const char*> rows[] = {
        {Shape::Ramp, "abc",
         "\"abc\" is no address; it must be like 0x100, or 2-0x100 for station 2"},
        {Shape::Ramp, "1:to", "\"to\" must be like KEY=VALUE"},
        {Shape::Ramp, "1:step=1", "unknown key \"step\"; the keys are from, to and period"},
        {Shape::Counter, "1:to=1", "unknown key \"to\"; the keys are from, step and period"},
        {Shape::Ramp, "1:to=high", "\"high\" is no number for to"},
        {Shape::Ramp, "1:period=0", "\"0\" is no number for period; it must be above 0 seconds"},
        {Shape::Ramp, "1:from=nan", "\"nan\" is no number for from"},
    };
    for (const auto& [shape, text, error] : rows)
        EXPECT_EQ(errorOf(spec(shape, text)).toStdString(), error);
}
