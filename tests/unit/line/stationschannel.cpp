#include "tests/unit/line/stationschannel.h"

#include "runtime/base/clock.h"

#include <cstring>

Result<void> StationsChannel::open() {
    if (is_lost)
        return Failure(QStringLiteral("no such device"));
    return {};
}

Result<int> StationsChannel::read(char* buffer, int max, int timeout_ms) {
    if (is_lost)
        return Failure(QStringLiteral("it hung up"));
    const qint64 now = m_clock.msecsSinceBoot();
    const qint64 next = m_pieces.empty() ? now + timeout_ms + 1 : m_pieces.begin()->first;
    m_clock.sleepMsecs(quint32(std::clamp<qint64>(next - now, 0, timeout_ms)));
    if (next > now + timeout_ms)
        return 0;
    const QByteArray piece = m_pieces.begin()->second.left(max);
    memcpy(buffer, piece.constData(), size_t(piece.size()));
    m_pieces.erase(m_pieces.begin());
    return piece.size();
}

Result<void> StationsChannel::write(const char* buffer, int length, int) {
    const QByteArray request(buffer, length);
    sent.append(request);
    if (is_half_duplex)
        m_pieces.clear();
    const auto found = stations.find(requestStation(request));
    if (found == stations.end() || found->second.delay_ms < 0)
        return {};
    Station& station = found->second;
    const QByteArray reply = memory.answer(request);
    station.busy_until = std::max(station.busy_until, m_clock.msecsSinceBoot()) + station.delay_ms;
    put(station.busy_until, station.changed ? station.changed(reply) : reply);
    return {};
}

QByteArray StationsChannel::discard() {
    QByteArray bytes;
    while (!m_pieces.empty() && m_pieces.begin()->first <= m_clock.msecsSinceBoot()) {
        bytes += m_pieces.begin()->second;
        m_pieces.erase(m_pieces.begin());
    }
    return bytes;
}
