#include "tests/campaign/faultlog.h"

#include <algorithm>

namespace campaign {

namespace {

constexpr qint64 KeptUsecs = 600000000;

} // namespace

void FaultLog::add(const Struck& struck) {
    while (!m_recent.empty() && m_recent.front().ends < struck.usecs - KeptUsecs)
        m_recent.pop_front();
    m_recent.push_back(struck);
    ++m_counts[std::size_t(struck.fault.kind)];
}

void FaultLog::prolong(LineFault::Kind kind, qint64 ends) {
    const auto last =
        std::find_if(m_recent.rbegin(), m_recent.rend(),
                     [kind](const Struck& struck) { return struck.fault.kind == kind; });
    if (last != m_recent.rend())
        last->ends = ends;
}

} // namespace campaign
