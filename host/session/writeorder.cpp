#include "host/session/writeorder.h"

#include "runtime/base/clock.h"

#include <chrono>

namespace host {

const char* outcomeName(WriteOutcome outcome) {
    switch (outcome) {
    case WriteOutcome::Confirmed:
        return "confirmed";
    case WriteOutcome::Expired:
        return "expired";
    case WriteOutcome::Refused:
        break;
    }
    return "refused";
}

WriteOrder::WriteOrder(TagId tag, QByteArray data, QString who, int within_ms, Clock& clock)
    : m_tag(tag)
    , m_data(std::move(data))
    , m_who(std::move(who))
    , m_clock(clock)
    , m_ordered(clock.msecsSinceBoot())
    , m_deadline(m_ordered + within_ms) {}

WriteResult WriteOrder::await() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_result) {
        const qint64 left = m_deadline - m_clock.msecsSinceBoot();
        if (left <= 0)
            m_result = expiredLocked();
        else
            m_ended.wait_for(lock, std::chrono::milliseconds(left));
    }
    return *m_result;
}

WriteResult WriteOrder::expiredLocked() const {
    const QString text = m_taken ? QStringLiteral("not confirmed within %1 ms; it may have arrived")
                                 : QStringLiteral("not sent within %1 ms");
    return {WriteOutcome::Expired, QByteArray(), text.arg(m_deadline - m_ordered)};
}

std::optional<WriteResult> WriteOrder::result() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_result;
}

bool WriteOrder::take() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_result && m_clock.msecsSinceBoot() >= m_deadline) {
        m_result = expiredLocked();
        m_ended.notify_all();
    }
    m_taken = !m_result;
    return m_taken;
}

bool WriteOrder::finish(const WriteResult& result) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_result)
        return false;
    m_result = result;
    m_ended.notify_all();
    return true;
}

} // namespace host
