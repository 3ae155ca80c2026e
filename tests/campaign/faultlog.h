#ifndef TESTS_CAMPAIGN_FAULTLOG_H
#define TESTS_CAMPAIGN_FAULTLOG_H

#include "tests/campaign/linefault.h"

#include <array>
#include <deque>

namespace campaign {

/** The faults that have struck so far. Times are microseconds. */
class FaultLog {
public:
    struct Struck {
        LineFault fault;
        int station;  // whose request it struck
        qint64 usecs; // when
        qint64 ends;  // from then on nothing of it can be seen
    };

    void add(const Struck& struck);

    /** The last fault of @p kind shows until @p ends. */
    void prolong(LineFault::Kind kind, qint64 ends);

    /** Those of the last minutes, oldest first. */
    const std::deque<Struck>& recent() const { return m_recent; }

    /** How many of each kind, by its number. */
    const std::array<quint64, FaultKinds>& counts() const { return m_counts; }

private:
    std::deque<Struck> m_recent;
    std::array<quint64, FaultKinds> m_counts = {};
};

} // namespace campaign

#endif
