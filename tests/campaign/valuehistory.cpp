#include "tests/campaign/valuehistory.h"

#include <algorithm>

namespace campaign {

namespace {

constexpr qint64 KeptUsecs = 120000000; // longer than any exchange lasts
constexpr int FewParts = 8;

bool holds(const Course& course, quint32 value, qint64 from, qint64 to) {
    if (course.period_ms == 0)
        return value == course.start;
    const quint32 first = course.moving().at(from / 1000);
    const quint32 last = course.moving().at(to / 1000);
    return value - first <= last - first;
}

} // namespace

simulator::MovingValue Course::moving() const {
    simulator::MovingValue moving;
    moving.shape = simulator::MovingValue::Shape::Counter;
    moving.from = start;
    moving.step = 1;
    moving.period_seconds = period_ms / 1000.0;
    return moving;
}

void ValueHistory::change(qint64 usecs, const Course& course) {
    while (m_parts.size() > FewParts && m_parts[1].since < usecs - KeptUsecs)
        m_parts.pop_front();
    m_parts.push_back({std::max(usecs, lastChange()), course});
}

bool ValueHistory::held(quint32 value, qint64 from, qint64 to) const {
    for (std::size_t i = m_parts.size(); i-- > 0;) {
        const Part& part = m_parts[i];
        const qint64 end = i + 1 < m_parts.size() ? m_parts[i + 1].since : to;
        if (part.since <= to && end >= from &&
            holds(part.course, value, std::max(from, part.since), std::min(to, end)))
            return true;
        if (part.since < from)
            return false;
    }
    return false;
}

} // namespace campaign
