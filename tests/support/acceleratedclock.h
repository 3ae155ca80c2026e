#ifndef TESTS_SUPPORT_ACCELERATEDCLOCK_H
#define TESTS_SUPPORT_ACCELERATEDCLOCK_H

#include "runtime/base/clock.h"

#include <chrono>
#include <thread>

/** Real time, a hundred times as fast. For tests of threads that wait for each
 *  other's locks as well as for the clock, which no simulated clock can know. */
class AcceleratedClock : public Clock {
public:
    qint64 msecsSinceBoot() override {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return Factor * std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    }

    int sleepMsecs(quint32 msecs) override {
        std::this_thread::sleep_for(std::chrono::microseconds(1000 * qint64(msecs) / Factor));
        return 0;
    }

private:
    static constexpr int Factor = 100;
};

#endif
