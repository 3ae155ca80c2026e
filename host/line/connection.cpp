#include "host/line/connection.h"

#include "runtime/base/clock.h"

#include <algorithm>

namespace host {

namespace {

constexpr qint64 CANCEL_CHECK_MS = 50; // how late a cancelled wait may end

} // namespace

Connection::Connection(ByteChannel& channel, Clock& clock, LineLog log)
    : m_channel(channel), m_clock(clock), m_log(std::move(log)) {}

bool Connection::open() {
    m_proved = false;
    m_open = m_channel.open();
    return m_open;
}

bool Connection::awaitOpen(int msecs) {
    const qint64 deadline = m_clock.msecsSinceBoot() + msecs;
    while (!m_open && !m_channel.isCancelled()) {
        const qint64 now = m_clock.msecsSinceBoot();
        if (now >= m_next_attempt && tryOpen())
            break;
        if (now >= deadline)
            break;
        m_clock.sleepMsecs(quint32(std::min(CANCEL_CHECK_MS, deadline - now)));
    }
    return m_open;
}

bool Connection::tryOpen() {
    if (!open()) {
        failed();
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

void Connection::lost() {
    m_flapping = m_reopened && !m_proved;
    close();
    failed();
}

void Connection::failed() {
    if (m_told_down)
        ++m_untold;
    else
        tellDown();
    m_next_attempt = m_clock.msecsSinceBoot() + m_pause_ms;
    m_pause_ms = std::min(2 * m_pause_ms, LONGEST_PAUSE_MS);
}

void Connection::proveWorking() {
    if (m_proved)
        return;
    m_proved = true;
    m_flapping = false;
    m_pause_ms = FIRST_PAUSE_MS;
    if (m_told_down)
        tellUp();
}

void Connection::tellDown() {
    m_told_down = true;
    m_untold = 0;
    m_log(QString::fromLatin1("%1: line lost: %2").arg(m_channel.name(), m_channel.lastError()));
}

void Connection::tellUp() {
    m_told_down = false;
    m_log(QString::fromLatin1("%1: line open again, %2 further failures in between")
              .arg(m_channel.name())
              .arg(m_untold));
}

} // namespace host
