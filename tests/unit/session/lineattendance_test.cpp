#include "host/session/lineattendance.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace host;

namespace {

constexpr int PatienceMsecs = 60000; // who waits longer waits in vain

Exchange exchangeWith(int station) {
    Exchange exchange;
    exchange.station = station;
    return exchange;
}

} // namespace

TEST(LineAttendance, HoldsThePollingThreadUntilItIsReleased) {
    LineAttendance attendance;
    attendance.attend();
    std::atomic<int> stored{0};
    std::thread polling([&] {
        for (int round = 1; round <= 100; ++round) {
            attendance.note(exchangeWith(round));
            stored = round;
            attendance.betweenExchanges();
        }
    });
    for (int round = 1; round <= 100; ++round) {
        ASSERT_TRUE(attendance.await(PatienceMsecs));
        ASSERT_EQ(attendance.shown().size(), 1u);
        EXPECT_EQ(attendance.shown()[0].station, round);
        EXPECT_EQ(stored, round) << "the next exchange has not begun";
        EXPECT_TRUE(attendance.release());
    }
    polling.join();
}

TEST(LineAttendance, ShowsAlsoThatAnExchangeHasFailed) {
    LineAttendance attendance;
    attendance.attend();
    std::thread polling([&] { attendance.betweenExchanges(); });
    ASSERT_TRUE(attendance.await(PatienceMsecs));
    EXPECT_TRUE(attendance.shown().empty());
    attendance.release();
    polling.join();
}

TEST(LineAttendance, HoldsNobodyWhileNobodyAttends) {
    LineAttendance attendance;
    attendance.note(exchangeWith(1));
    attendance.betweenExchanges();
    attendance.attend();
    EXPECT_FALSE(attendance.await(0));
    attendance.note(exchangeWith(2));
    attendance.leave();
    attendance.note(exchangeWith(3));
    attendance.betweenExchanges();

    attendance.attend();
    std::thread polling([&] { attendance.betweenExchanges(); });
    ASSERT_TRUE(attendance.await(PatienceMsecs));
    EXPECT_TRUE(attendance.shown().empty()) << "what ended before is forgotten";
    attendance.release();
    polling.join();
}

TEST(LineAttendance, LetsThePollingThreadGoWhenTheOtherLeaves) {
    LineAttendance attendance;
    attendance.attend();
    std::thread polling([&] { attendance.betweenExchanges(); });
    ASSERT_TRUE(attendance.await(PatienceMsecs));
    attendance.leave();
    polling.join();
}

TEST(LineAttendance, TellsWhoTookTooLongThatThePollingThreadHasGone) {
    LineAttendance attendance;
    attendance.attend();
    std::thread polling([&] { attendance.betweenExchanges(); });
    ASSERT_TRUE(attendance.await(PatienceMsecs));
    polling.join(); // by itself, after HoldMsecs
    EXPECT_FALSE(attendance.release());
}

TEST(LineAttendance, CanBeWokenForSomethingElseAlsoBeforehand) {
    LineAttendance attendance;
    attendance.attend();
    attendance.wake();
    EXPECT_FALSE(attendance.await(PatienceMsecs));
    std::thread waker([&] { attendance.wake(); });
    EXPECT_FALSE(attendance.await(PatienceMsecs));
    waker.join();
}
