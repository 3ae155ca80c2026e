#include "simulator/lineclock.h"

#include <cerrno>
#include <ctime>

namespace simulator {

namespace {

constexpr qint64 Second = 1000000000;

class SystemLineClock : public LineClock {
public:
    qint64 now() override {
        timespec time = {};
        clock_gettime(CLOCK_MONOTONIC, &time);
        return time.tv_sec * Second + time.tv_nsec;
    }

    void sleepUntil(qint64 time) override {
        timespec until = {};
        until.tv_sec = time_t(time / Second);
        until.tv_nsec = long(time % Second);
        while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
        }
    }
};

} // namespace

LineClock& LineClock::system() {
    static SystemLineClock clock;
    return clock;
}

} // namespace simulator
