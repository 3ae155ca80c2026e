#include "runtime/drivers/systemservices.h"

#include <gtest/gtest.h>

#include <csignal>
#include <ctime>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t alarms = 0;

void countAlarm(int) {
    alarms = alarms + 1;
}

/** Interrupts this process every 5 ms. */
class RepeatingAlarm {
public:
    RepeatingAlarm() {
        struct sigaction action = {};
        action.sa_handler = countAlarm; // no SA_RESTART: sleeps end with EINTR
        sigaction(SIGALRM, &action, &m_previous);
        setEvery(5000);
    }

    ~RepeatingAlarm() {
        setEvery(0);
        sigaction(SIGALRM, &m_previous, nullptr);
    }

private:
    static void setEvery(suseconds_t microseconds) {
        const itimerval interval = {{0, microseconds}, {0, microseconds}};
        setitimer(ITIMER_REAL, &interval, nullptr);
    }

    struct sigaction m_previous = {};
};

} // namespace

TEST(CurrentMSecsSinceBoot, IsTheMonotonicClockInMilliseconds) {
    timespec before = {}, after = {};
    clock_gettime(CLOCK_MONOTONIC, &before);
    const qint64 now = CurrentMSecsSinceBoot();
    clock_gettime(CLOCK_MONOTONIC, &after);
    EXPECT_GE(now, qint64(before.tv_sec) * 1000 + before.tv_nsec / 1000000);
    EXPECT_LE(now, qint64(after.tv_sec) * 1000 + after.tv_nsec / 1000000);
}

TEST(HRSleep, SleepsAtLeastTheGivenTime) {
    const qint64 start = CurrentMSecsSinceBoot();
    EXPECT_EQ(HRSleep(12), 0);
    EXPECT_GE(CurrentMSecsSinceBoot() - start, 12);
    EXPECT_EQ(HRSleep(0), 0);
}

TEST(HRSleep, SleepsOnAfterSignals) {
    alarms = 0;
    const qint64 start = CurrentMSecsSinceBoot();
    {
        RepeatingAlarm alarm;
        EXPECT_EQ(HRSleep(40), 0);
    }
    EXPECT_GE(CurrentMSecsSinceBoot() - start, 40);
    EXPECT_GT(int(alarms), 0);
}

TEST(ProcessIsRunning, KnowsTheLivingFromTheDead) {
    EXPECT_TRUE(ProcessIsRunning(getpid()));

    const pid_t child = fork();
    if (child == 0)
        _exit(0);
    ASSERT_GT(child, 0);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_FALSE(ProcessIsRunning(child));
}

TEST(ProcessIsRunningDeathTest, IsTrueForAProcessThatMayNotBeSignalled) {
    const uid_t nobody = 65534;
    EXPECT_EXIT(
        {
            if (kill(1, 0) == 0 && setuid(nobody) != 0)
                _exit(2);
            _exit(kill(1, 0) != 0 && ProcessIsRunning(1) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
