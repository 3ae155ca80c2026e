#include "runtime/drivers/dmc50v3/transfer/transferprogress.h"

#include <limits>

namespace TransferProgress {

int percent(int part, int whole) {
    return ratioPercent(float(part) / float(whole));
}

float drainRatio(quint32 initial, quint32 left) {
    return float(initial - left) / float(initial);
}

int ratioPercent(float ratio) {
    const float percent = ratio * 100.0f;
    if (percent < 2147483648.0f) // the smallest float that an int cannot hold
        return int(percent);
    return std::numeric_limits<int>::max();
}

} // namespace TransferProgress

bool DrainWatch::isStalled(float ratio) {
    const int unchanged_polls_allowed = 5;
    if (m_has_previous)
        m_unchanged = ratio == m_previous ? m_unchanged + 1 : 0;
    m_has_previous = true;
    m_previous = ratio;
    return m_unchanged > unchanged_polls_allowed;
}
