#include "tests/campaign/wire.h"

#include <algorithm>
#include <limits>

namespace campaign {

qint64 Wire::timeOf(int characters) const {
    constexpr qint64 BitsPerCharacter = 11; // start, 8 data, parity, stop
    return characters * BitsPerCharacter * 1000000 / m_baud;
}

qint64 Wire::send(qint64 now, int characters) {
    proceed(now);
    m_free = std::max(m_free, now) + timeOf(characters);
    return m_free;
}

void Wire::post(qint64 due, qint64 limit, const simulator::Transmission& transmission) {
    m_posted.insert({due, {limit, transmission}});
}

void Wire::arrive(qint64 usecs, const QByteArray& bytes) {
    m_arrived.emplace_back(usecs, bytes);
}

void Wire::proceed(qint64 now) {
    while (!m_posted.empty() && m_posted.begin()->first <= now) {
        const auto first = m_posted.begin();
        transmit(first->first, first->second);
        m_posted.erase(first);
    }
}

void Wire::transmit(qint64 due, const Posted& posted) {
    std::deque<std::pair<qint64, QByteArray>> arrivals;
    qint64 end = std::max(due, m_free);
    for (const simulator::Transmission::Piece& piece : posted.transmission.pieces) {
        end += 1000 * qint64(piece.pause_ms) + timeOf(piece.bytes.size());
        arrivals.emplace_back(end, piece.bytes);
    }
    if (end > posted.limit)
        return;
    m_free = end;
    m_arrived.insert(m_arrived.end(), arrivals.begin(), arrivals.end());
}

QByteArray Wire::take(qint64 now) {
    proceed(now);
    if (m_arrived.empty() || m_arrived.front().first > now)
        return QByteArray();
    const QByteArray bytes = m_arrived.front().second;
    m_arrived.pop_front();
    return bytes;
}

qint64 Wire::nextEvent() const {
    const qint64 never = std::numeric_limits<qint64>::max();
    return std::min(m_arrived.empty() ? never : m_arrived.front().first,
                    m_posted.empty() ? never : m_posted.begin()->first);
}

} // namespace campaign
