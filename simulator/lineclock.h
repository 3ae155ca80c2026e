#ifndef SIMULATOR_LINECLOCK_H
#define SIMULATOR_LINECLOCK_H

#include <QtGlobal>

namespace simulator {

/** The simulator's time: nanoseconds of a monotonic clock, fine enough to place
 *  single characters on a line. Replaced in tests, which then take no time. */
class LineClock {
public:
    virtual ~LineClock() = default;

    virtual qint64 now() = 0;

    /** Returns at @p time, at once when it has passed. The time is absolute, so
     *  that a late wake-up delays nothing but itself. */
    virtual void sleepUntil(qint64 time) = 0;

    /** CLOCK_MONOTONIC; lives for ever, any thread. */
    static LineClock& system();
};

} // namespace simulator

#endif
