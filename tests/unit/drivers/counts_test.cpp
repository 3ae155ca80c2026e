#include "runtime/drivers/counts.h"

#include <gtest/gtest.h>

TEST(Counts, OfBitsRoundUpFromTheOffset) {
    EXPECT_EQ(NumOfBitsToNumOfBytes(0, 0), 0);
    EXPECT_EQ(NumOfBitsToNumOfBytes(0, 1), 1);
    EXPECT_EQ(NumOfBitsToNumOfBytes(7, 1), 1);
    EXPECT_EQ(NumOfBitsToNumOfBytes(7, 2), 2);
    EXPECT_EQ(NumOfBitsToNumOfWords(15, 1), 1);
    EXPECT_EQ(NumOfBitsToNumOfWords(15, 2), 2);
    EXPECT_EQ(NumOfBitsToNumOfDWords(31, 1), 1);
    EXPECT_EQ(NumOfBitsToNumOfDWords(31, 2), 2);
    EXPECT_EQ(NumOfBitsToNumOfDWords(33, 1), 2);
}

TEST(Counts, OfBytesRoundUp) {
    EXPECT_EQ(NumOfBytesToNumOfWords(0), 0);
    EXPECT_EQ(NumOfBytesToNumOfWords(3), 2);
    EXPECT_EQ(NumOfBytesToNumOfWords(4), 2);
    EXPECT_EQ(NumOfBytesToNumOfDWords(4), 1);
    EXPECT_EQ(NumOfBytesToNumOfDWords(5), 2);
    EXPECT_EQ(NumOfBytesToNumOfQuadWords(8), 1);
    EXPECT_EQ(NumOfBytesToNumOfQuadWords(9), 2);
}

TEST(Counts, OfHugeBitNumbersDoNotWrap) {
    EXPECT_EQ(NumOfBitsToNumOfDWords(0xFFFFFFFFU, 1), 0x08000000);
    EXPECT_EQ(NumOfBitsToNumOfBytes(0xFFFFFFFFU, 0xFFFFFFFFU), 0x40000000);
}
