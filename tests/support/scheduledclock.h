#ifndef TESTS_SUPPORT_SCHEDULEDCLOCK_H
#define TESTS_SUPPORT_SCHEDULEDCLOCK_H

#include "runtime/base/clock.h"

#include <functional>
#include <map>
#include <vector>

/** Time is what has been slept, from 0 on. Who sleeps past a time does what the
 *  test has laid down for it, so that one thread can play all. */
class ScheduledClock : public Clock {
public:
    qint64 msecsSinceBoot() override { return m_now; }

    int sleepMsecs(quint32 msecs) override {
        m_sleeps.push_back(msecs);
        advance(msecs);
        return 0;
    }

    void advance(qint64 msecs) {
        m_now += msecs;
        while (!m_actions.empty() && m_actions.begin()->first <= m_now) {
            const std::function<void()> action = m_actions.begin()->second;
            m_actions.erase(m_actions.begin());
            action();
        }
    }

    void at(qint64 msecs, const std::function<void()>& action) {
        m_actions.insert(std::make_pair(msecs, action));
    }

    /** All sleeps so far, oldest first, ms. */
    const std::vector<quint32>& sleeps() const { return m_sleeps; }

private:
    qint64 m_now = 0;
    std::vector<quint32> m_sleeps;
    std::multimap<qint64, std::function<void()>> m_actions; // by their time
};

#endif
