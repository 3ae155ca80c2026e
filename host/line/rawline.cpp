#include "host/line/rawline.h"

namespace host {

RawLine::RawLine(std::unique_ptr<ByteChannel> channel, Clock& clock, LineLog log, int timeout_ms)
    : m_channel(std::move(channel))
    , m_clock(clock)
    , m_connection(*m_channel, clock, std::move(log))
    , m_timeout_ms(timeout_ms) {}

bool RawLine::send(const QByteArray& bytes) {
    if (!m_connection.awaitOpen(m_timeout_ms))
        return false;
    const Result<void> sent = m_channel->write(bytes.constData(), bytes.size(), m_timeout_ms);
    if (!sent && !m_channel->isCancelled())
        m_connection.lost(sent.error());
    return sent.has_value();
}

QByteArray RawLine::receive(int max, int wait_ms) {
    if (!m_connection.isOpen())
        return QByteArray();
    QByteArray bytes(max, Qt::Uninitialized);
    const Result<int> count = m_channel->read(bytes.data(), max, wait_ms);
    if (!count)
        m_connection.lost(count.error());
    bytes.truncate(count.value_or(0));
    if (!bytes.isEmpty())
        m_connection.proveWorking();
    return bytes;
}

QByteArray RawLine::discard() {
    return m_connection.isOpen() ? m_channel->discard() : QByteArray();
}

} // namespace host
