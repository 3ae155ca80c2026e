#ifndef TESTS_SUPPORT_FREECLOCK_H
#define TESTS_SUPPORT_FREECLOCK_H

#include "runtime/base/clock.h"

/** Pauses cost nothing: time is what has been slept. One thread. */
class FreeClock : public Clock {
public:
    qint64 msecsSinceBoot() override { return m_now; }
    int sleepMsecs(quint32 msecs) override {
        m_now += msecs;
        return 0;
    }

private:
    qint64 m_now = 0;
};

#endif
