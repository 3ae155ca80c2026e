#include "tests/campaign/watchedport.h"

namespace campaign {

void WatchedPort::control(int code, QVariant argument) {
    m_watcher.beginning();
    m_port.control(code, argument);
}

int WatchedPort::writeBytes(const char* buffer, int length) {
    const QByteArray request(buffer, length);
    if (!m_failed || request != m_exchange.request)
        m_exchange.sent = m_time.now();
    m_exchange.request = request;
    m_exchange.reply.clear();
    m_watcher.requested(request);
    return m_port.writeBytes(buffer, length);
}

/** The driver asks on until a piece ends a line, nothing comes or its buffer is
 *  full. */
int WatchedPort::readBytes(char* buffer, int max) {
    const int count = m_port.readBytes(buffer, max);
    if (count > 0)
        m_exchange.reply.append(buffer, count);
    if (count < 1 || count == max || buffer[count - 1] == '\n')
        endReply();
    return count;
}

void WatchedPort::endReply() {
    m_exchange.done = m_time.now();
    m_failed = !m_watcher.replied(m_exchange);
}

} // namespace campaign
