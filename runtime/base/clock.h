#ifndef RUNTIME_BASE_CLOCK_H
#define RUNTIME_BASE_CLOCK_H

#include <QtGlobal>

/** The only source of time and of waiting in the driver and the panel
 *  services. Implementations are safe to call from any thread. */
class Clock {
public:
    virtual ~Clock() {}

    /** Milliseconds of a monotonic clock; its zero is arbitrary (boot). */
    virtual qint64 msecsSinceBoot() = 0;

    /** Blocks the calling thread for @p msecs milliseconds; signals do not
     *  shorten it. Returns 0, or the errno of a failure other than EINTR. */
    virtual int sleepMsecs(quint32 msecs) = 0;

    /** The machine's CLOCK_MONOTONIC and nanosleep; lives for ever. */
    static Clock& system();
};

#endif
