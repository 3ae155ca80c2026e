#include "tests/campaign/virtualchannel.h"

#include <algorithm>
#include <cstring>

namespace campaign {

namespace {

Failure lost() {
    return Failure(QStringLiteral("the adapter is gone"));
}

} // namespace

Result<void> VirtualChannel::open() {
    if (!m_line.isPlugged())
        return lost();
    while (!m_line.take().isEmpty()) { // what came while nobody listened
    }
    m_opened = m_line.unplugs();
    return {};
}

Result<int> VirtualChannel::read(char* buffer, int max, int timeout_ms) {
    const qint64 deadline = m_time.now() + 1000 * qint64(timeout_ms);
    for (;;) {
        if (isLost())
            return lost();
        const int count = takeReceived(buffer, max);
        if (count > 0 || m_cancelled || m_time.now() >= deadline)
            return count;
        m_time.sleepUntil(std::min(deadline, m_line.nextEvent()));
    }
}

int VirtualChannel::takeReceived(char* buffer, int max) {
    for (QByteArray more = m_line.take(); !more.isEmpty(); more = m_line.take())
        m_received += more;
    const int count = std::min(max, int(m_received.size()));
    std::memcpy(buffer, m_received.constData(), std::size_t(count));
    m_received.remove(0, count);
    return count;
}

Result<void> VirtualChannel::write(const char* buffer, int length, int) {
    if (isLost())
        return lost();
    m_line.send(QByteArray(buffer, length));
    return {};
}

QByteArray VirtualChannel::discard() {
    if (isLost())
        return QByteArray();
    for (QByteArray more = m_line.take(); !more.isEmpty(); more = m_line.take())
        m_received += more;
    return std::exchange(m_received, QByteArray());
}

} // namespace campaign
