#ifndef TESTS_SUPPORT_SIMULATEDCLOCK_H
#define TESTS_SUPPORT_SIMULATEDCLOCK_H

#include "runtime/base/clock.h"

#include <condition_variable>
#include <mutex>
#include <set>

/** Virtual time for tests with any number of threads. Sleeping takes no real
 *  time: when all @e participants sleep at once, time jumps to the earliest
 *  wake-up. While one of them works, time stands still, so that a loaded machine
 *  cannot make a time-out happen. With 0 participants only advance() moves time.
 *
 *  A participant that ends, or waits for something else than this clock, must be
 *  taken out with setParticipants() or the others sleep for ever. */
class SimulatedClock : public Clock {
public:
    explicit SimulatedClock(int participants = 1, qint64 start_msecs = 1000000);

    qint64 msecsSinceBoot() override;
    int sleepMsecs(quint32 msecs) override;

    void setParticipants(int participants);

    /** Moves time by hand; wakes the sleepers whose time has come. */
    void advance(qint64 msecs);

    /** Blocks, in real time, until @p count threads sleep. */
    void waitForSleepers(int count);

    /** Threads that sleep now. */
    int sleepers();

private:
    int countSleepers() const;
    void moveIfAllSleep();

    std::mutex m_mutex; // guards all below
    std::condition_variable m_changed;
    std::multiset<qint64> m_wake_times; // of the threads that sleep now
    qint64 m_now;
    int m_participants;
};

#endif
