#include "runtime/drivers/polling/threadrequests.h"

#include <gtest/gtest.h>

#include <thread>

TEST(ThreadRequests, FlagsAreSetAndClearedBitByBit) {
    ThreadRequests requests;
    EXPECT_EQ(requests.getFlag(), 0);
    requests.setFlag(1);
    requests.setFlag(6);
    EXPECT_EQ(requests.getFlag(), 7);
    requests.clearFlag(3);
    EXPECT_EQ(requests.getFlag(), 4);
}

TEST(ThreadRequests, AStopIsForGood) {
    ThreadRequests requests;
    EXPECT_FALSE(requests.isStopped());
    requests.stop();
    EXPECT_TRUE(requests.isStopped());
}

TEST(ThreadRequests, NoBitIsLostToAnotherThread) {
    ThreadRequests requests;
    int lost = 0;
    const auto toggle = [&requests](quint8 bit, int& lost_here) {
        for (int i = 0; i < 200000; ++i) {
            requests.setFlag(bit);
            lost_here += (requests.getFlag() & bit) == 0;
            requests.clearFlag(bit);
            lost_here += (requests.getFlag() & bit) != 0;
        }
    };
    int lost_there = 0;
    std::thread other([&] { toggle(2, lost_there); });
    toggle(1, lost);
    other.join();
    EXPECT_EQ(lost + lost_there, 0);
}
