#include "host/line/connection.h"

#include "runtime/base/clock.h"

#include <algorithm>

namespace host {

namespace {

constexpr qint64 CancelCheckMsecs = 50; // how late a cancelled wait may end

} // namespace

Connection::Connection(ByteChannel& channel, Clock& clock, LineLog log)
    : m_channel(channel), m_clock(clock), m_log(std::move(log)) {}

Result<void> Connection::open() {
    m_proved = false;
    const Result<void> opened = m_channel.open();
    m_open = opened.has_value();
    return opened;
}

bool Connection::awaitOpen(int msecs) {
    const qint64 deadline = m_clock.msecsSinceBoot() + msecs;
    while (!m_open && !m_channel.isCancelled()) {
        const qint64 now = m_clock.msecsSinceBoot();
        if (now >= m_next_attempt && tryOpen())
            break;
        if (now >= deadline)
            break;
        m_clock.sleepMsecs(quint32(std::min(CancelCheckMsecs, deadline - now)));
    }
    return m_open;
}

bool Connection::tryOpen() {
    if (const Result<void> opened = open(); !opened) {
        failed(opened.error());
        return false;
    }
    m_reopened = m_told_down;
    if (m_told_down && !m_flapping)
        tellUp();
    return true;
}

void Connection::close() {
    m_channel.close();
    m_open = false;
}

void Connection::lost(const QString& reason) {
    m_flapping = m_reopened && !m_proved;
    close();
    failed(reason);
}

void Connection::failed(const QString& reason) {
    if (m_told_down)
        ++m_untold;
    else
        tellDown(reason);
    m_next_attempt = m_clock.msecsSinceBoot() + m_pause_ms;
    m_pause_ms = std::min(2 * m_pause_ms, LongestPauseMsecs);
}

void Connection::proveWorking() {
    if (m_proved)
        return;
    m_proved = true;
    m_flapping = false;
    m_pause_ms = FirstPauseMsecs;
    if (m_told_down)
        tellUp();
}

void Connection::tellDown(const QString& reason) {
    m_told_down = true;
    m_untold = 0;
    m_log(QString::fromLatin1("%1: line lost: %2").arg(m_channel.name(), reason));
}

void Connection::tellUp() {
    m_told_down = false;
    m_log(QString::fromLatin1("%1: line open again, %2 further failures in between")
              .arg(m_channel.name())
              .arg(m_untold));
}

} // namespace host
