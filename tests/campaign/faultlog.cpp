#include "tests/campaign/faultlog.h"

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

} // namespace campaign
