#include "simulator/lineclock.h"

#include <cerrno>
#include <ctime>

namespace simulator {

namespace {

constexpr qint64 second = 1000000000;

class SystemLineClock : public LineClock {
public:
    qint64 now() override {
        timespec time = {};
        clock_gettime(CLOCK_MONOTONIC, &time);
        return time.tv_sec * second + time.tv_nsec;
    }

    void sleepUntil(qint64 time) override {
        timespec until = {};
        until.tv_sec = time_t(time / second);
        until.tv_nsec = long(time % second);
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
