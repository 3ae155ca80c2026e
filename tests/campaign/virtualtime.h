#ifndef TESTS_CAMPAIGN_VIRTUALTIME_H
#define TESTS_CAMPAIGN_VIRTUALTIME_H

#include "runtime/base/clock.h"
#include "tests/campaign/fiber.h"

#include <map>
#include <utility>
#include <vector>

namespace campaign {

/** A world whose time is what is slept, in microseconds. Its fibers run one at a
 *  time, each until it sleeps; who wakes first runs next, and of several that wake
 *  at once the one that went to sleep first. So a run is the same every time. */
class VirtualTime : public Clock {
public:
    VirtualTime();
    ~VirtualTime() override;

    qint64 now() const { return m_now; }
    qint64 msecsSinceBoot() override { return m_now / 1000; }
    int sleepMsecs(quint32 msecs) override {
        sleepUntil(m_now + 1000 * qint64(msecs));
        return 0;
    }

    /** Outside of all fibers time only moves on. */
    void sleepUntil(qint64 usecs);

    /** A fiber that begins when run() comes to it. */
    void start(std::function<void()> body);

    /** Returns when all fibers have ended. */
    void run();

    /** Time that the present fiber has waited for mutexes so far, microseconds. */
    qint64 lockedOutUsecs() const;

    /** One wait for a mutex that another fiber holds. */
    void waitForMutex();

    /** The world in which the caller lives, or null. */
    static VirtualTime* current();

private:
    void wakeAt(qint64 usecs, Fiber* fiber);

    qint64 m_now = 1000000000;
    quint64 m_sleeps = 0; // so far; keeps the order of equal wake-up times
    std::vector<std::unique_ptr<Fiber>> m_fibers;
    std::map<std::pair<qint64, quint64>, Fiber*> m_sleepers; // by wake-up time
    std::map<const Fiber*, qint64> m_locked_out;             // microseconds
};

} // namespace campaign

#endif
