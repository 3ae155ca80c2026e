#include "tests/campaign/writebook.h"

#include <algorithm>

namespace campaign {

namespace {

QString about(const char* what, quint8 station, quint32 address, quint32 value) {
    return QString::fromLatin1("write of %1 to %2 of station %3: %4")
        .arg(value, 8, 16, QLatin1Char('0'))
        .arg(address, 0, 16)
        .arg(station)
        .arg(QLatin1String(what));
}

bool isSame(const simulator::Request& a, const simulator::Request& b) {
    return a.station == b.station && a.command == b.command && a.addresses == b.addresses &&
           a.values == b.values;
}

/** Double words that the driver writes of itself. */
bool isOwn(quint32 address) {
    return address >= 0x2012 && address <= 0x2015;
}

std::vector<quint32> callersValues(const simulator::Request& request) {
    std::vector<quint32> values;
    for (std::size_t i = 0; i < request.values.size(); ++i) {
        if (!isOwn(request.addresses[i]))
            values.push_back(request.values[i]);
    }
    return values;
}

} // namespace

void WriteBook::refused(quint32 value) {
    m_writes[value] = {0, 0, State::Refused, 0};
    ++m_figures.writes_refused;
}

void WriteBook::queued(quint8 station, quint32 address, quint32 value) {
    m_writes[value] = {station, address, State::Queued, 0};
    m_queues[station].push_back(value);
}

QString WriteBook::requested(const simulator::Request& request) {
    const bool again = m_attempts > 0 && isSame(request, m_request);
    if (again) {
        ++m_attempts;
        return m_attempts > m_retries + 1 ? QStringLiteral("a write is sent too often") : QString();
    }
    if (m_attempts > 0)
        return QString::fromLatin1("a write that failed is given up after %1 of %2 attempts")
            .arg(m_attempts)
            .arg(m_retries + 1);
    if (request.command == simulator::Command::ReadList)
        return QString();
    m_request = request;
    m_attempts = 1;
    return begin(request.station, callersValues(request));
}

/** The batch must be what has waited longest. */
QString WriteBook::begin(quint8 station, const std::vector<quint32>& values) {
    m_batch = values;
    std::deque<quint32>& queue = m_queues[station];
    for (quint32 value : values) {
        if (queue.empty() || queue.front() != value)
            return about("sent though it is not its turn", station, 0, value);
        queue.pop_front();
        m_writes[value].state = State::BeingSent;
    }
    return QString();
}

QString WriteBook::answered(bool good) {
    if (good)
        return endBatch(State::Confirmed);
    return m_attempts > m_retries ? endBatch(State::Failed) : QString();
}

QString WriteBook::endBatch(State state) {
    m_attempts = 0;
    QString wrong;
    for (quint32 value : m_batch) {
        Write& write = m_writes[value];
        write.state = state;
        if (state == State::Confirmed && write.applied == 0 && wrong.isEmpty())
            wrong = about("confirmed but never made", write.station, write.address, value);
        m_figures.writes_repeated += write.applied > 1;
    }
    (state == State::Confirmed ? m_figures.writes_confirmed : m_figures.writes_failed) +=
        m_batch.size();
    m_batch.clear();
    return wrong;
}

QString WriteBook::applied(quint8 station, quint32 address, quint32 value) {
    const auto found = m_writes.find(value);
    if (found == m_writes.end())
        return about("nobody asked for it", station, address, value);
    Write& write = found->second;
    if (write.state == State::Refused)
        return about("made though it was refused", station, address, value);
    if (write.station != station || write.address != address)
        return about("made in another place", station, address, value);
    if (write.state != State::BeingSent)
        return about(write.state == State::Failed ? "made after it had failed"
                                                  : "made out of its turn",
                     station, address, value);
    ++write.applied;
    return QString();
}

bool WriteBook::isIdle() const {
    return m_attempts == 0 && std::all_of(m_queues.begin(), m_queues.end(),
                                          [](const auto& queue) { return queue.second.empty(); });
}

} // namespace campaign
