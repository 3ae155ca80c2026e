#include "runtime/drivers/dmc50v3/transfer/transferprogress.h"

#include <gtest/gtest.h>

#include <climits>

TEST(TransferProgress, IsTheIntegerPartOfThePercentage) {
    EXPECT_EQ(TransferProgress::percent(0, 3), 0);
    EXPECT_EQ(TransferProgress::percent(1, 3), 33);
    EXPECT_EQ(TransferProgress::percent(2, 3), 66);
    EXPECT_EQ(TransferProgress::percent(31, 32), 96);
}

TEST(TransferProgress, IsComputedInSinglePrecision) {
    // In double precision 29 / 100 x 100 is just below 29.
    EXPECT_EQ(TransferProgress::ratioPercent(TransferProgress::drainRatio(100, 71)), 29);
    EXPECT_EQ(int(29.0 / 100 * 100), 28);
}

TEST(TransferProgress, AQueueThatHasGrownGivesAHugeRatio) {
    EXPECT_EQ(TransferProgress::drainRatio(2, 3), 4294967295.0f / 2.0f);
    EXPECT_EQ(TransferProgress::ratioPercent(TransferProgress::drainRatio(2, 3)), INT_MAX);
    EXPECT_EQ(TransferProgress::ratioPercent(TransferProgress::drainRatio(0, 3)), INT_MAX);
}

TEST(TransferProgress, WhatAnIntCannotHoldIsTheLargestInt) {
    EXPECT_EQ(TransferProgress::ratioPercent(21474834.0f), 2147483392); // the next float below
    EXPECT_EQ(TransferProgress::ratioPercent(21474836.0f), INT_MAX);    // 2147483648.0f
}

TEST(DrainWatch, AQueueThatNeverMovesIsStalledAtTheSeventhPoll) {
    DrainWatch watch;
    for (int poll = 1; poll <= 6; ++poll)
        EXPECT_FALSE(watch.isStalled(0.0f));
    EXPECT_TRUE(watch.isStalled(0.0f));
}

TEST(DrainWatch, SixPollsWithoutChangeAreTooMany) {
    DrainWatch watch;
    EXPECT_FALSE(watch.isStalled(0.5f));
    for (int same = 1; same <= 5; ++same)
        EXPECT_FALSE(watch.isStalled(0.5f));
    EXPECT_TRUE(watch.isStalled(0.5f));
}

TEST(DrainWatch, AnyChangeStartsTheCountAgain) {
    DrainWatch watch;
    for (int poll = 0; poll < 6; ++poll)
        EXPECT_FALSE(watch.isStalled(0.5f));
    EXPECT_FALSE(watch.isStalled(0.25f)); // also backwards
    for (int same = 1; same <= 5; ++same)
        EXPECT_FALSE(watch.isStalled(0.25f));
    EXPECT_TRUE(watch.isStalled(0.25f));
}
