#ifndef TESTS_CAMPAIGN_VALUEHISTORY_H
#define TESTS_CAMPAIGN_VALUEHISTORY_H

#include "simulator/movingvalue.h"

#include <deque>

namespace campaign {

/** A double word that stands still, or counts up by 1 every so often. */
struct Course {
    quint32 start = 0;
    int period_ms = 0; // 0: stands still

    simulator::MovingValue moving() const;
};

/** All values that one double word of a controller has held of late. Times are
 *  microseconds. */
class ValueHistory {
public:
    /** From @p usecs on, which is not before the last change. */
    void change(qint64 usecs, const Course& course);

    /** True if it held @p value at a moment between the two, both included. Knows
     *  the last minutes. */
    bool held(quint32 value, qint64 from, qint64 to) const;

    qint64 lastChange() const { return m_parts.empty() ? 0 : m_parts.back().since; }

private:
    struct Part {
        qint64 since;
        Course course;
    };
    std::deque<Part> m_parts; // oldest first
};

} // namespace campaign

#endif
