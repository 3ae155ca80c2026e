#include "runtime/base/fatal.h"

#include <gtest/gtest.h>

TEST(FatalCheck, EndsTheProgramWithTheConditionText) {
    EXPECT_DEATH(FATAL_CHECK(1 + 1 == 3, "sums%2 == 0"), "ASSERT: \"sums%2 == 0\" in file");
}

TEST(FatalCheck, LetsATrueConditionPass) {
    FATAL_CHECK(true, "never printed");
    SUCCEED();
}
