#include "simulator/linesession.h"

#include "simulator/numbers.h"
#include "trace/escapedtext.h"

#include <algorithm>
#include <utility>

namespace simulator {

namespace {

constexpr qint64 Millisecond = 1000000; // of the clock
constexpr qint64 LongestSleep = 50 * Millisecond;

QString requestText(const Request& request) {
    return QString::fromLatin1("station %1: %2 %3 from %4")
        .arg(request.station)
        .arg(QLatin1String(commandName(request.command)))
        .arg(request.addresses.size())
        .arg(hexText(request.addresses.front()));
}

QString refusalText(const ParsedRequest& parsed) {
    return QString::fromLatin1("station %1: %2, refused with end code %3H")
        .arg(parsed.request.station)
        .arg(QLatin1String(parsed.reason))
        .arg(uint(parsed.end_code), 2, 16, QLatin1Char('0'));
}

} // namespace

LineSession::LineSession(SessionParts parts)
    : m_parts(std::move(parts)), m_start(m_parts.clock.now()), m_wire_free(m_start) {}

void LineSession::receive(const QByteArray& bytes) {
    const qint64 arrival = m_parts.clock.now();
    const quint64 dropped = m_reader.droppedBytes();
    count(&LineCounters::bytes_received, quint64(bytes.size()));
    // The client hands characters over in one go that follow each other on a
    // wire: each one begins when it was handed over and the wire is free.
    qint64 burst_start = std::max(m_wire_free, arrival);
    qint64 characters = 0;
    for (char byte : bytes) {
        m_wire_free = burst_start + m_parts.timing.wireTime(++characters);
        const std::optional<QByteArray> frame = m_reader.take(byte);
        if (!frame)
            continue;
        if (!waitUntil(m_wire_free))
            return;
        takeFrame(*frame);
        burst_start = m_wire_free;
        characters = 0;
    }
    count(&LineCounters::noise_bytes, m_reader.droppedBytes() - dropped);
}

LineCounters LineSession::counters() const {
    std::lock_guard<std::mutex> lock(m_counters_mutex);
    return m_counters;
}

qint64 LineSession::elapsed() const {
    return (m_parts.clock.now() - m_start) / Millisecond;
}

bool LineSession::waitUntil(qint64 time) {
    for (qint64 now = m_parts.clock.now(); now < time && !m_stop; now = m_parts.clock.now())
        m_parts.clock.sleepUntil(std::min(time, now + LongestSleep));
    return !m_stop;
}

void LineSession::takeFrame(const QByteArray& frame) {
    record(trace::Direction::Request, frame);
    const ParsedRequest parsed = parseRequest(frame);
    if (parsed.state == ParsedRequest::State::Unreadable) {
        count(parsed.bad_checksum ? &LineCounters::bad_checksums : &LineCounters::unreadable);
        log(QString::fromLatin1("%1, ignored: %2")
                .arg(QLatin1String(parsed.reason), QString::fromLatin1(trace::escapedText(frame))));
        return;
    }
    const auto station = m_parts.stations.find(parsed.request.station);
    if (station != m_parts.stations.end())
        answer(frame, parsed, *station->second);
    else
        count(&LineCounters::other_stations);
}

void LineSession::answer(const QByteArray& frame, const ParsedRequest& parsed, Station& station) {
    if (parsed.state == ParsedRequest::State::Refused) {
        count(&LineCounters::refused);
        log(refusalText(parsed));
        dispatch(station.id(),
                 plainTransmission(
                     {parsed.request.station, parsed.request.subaddress, parsed.end_code, {}}));
        return;
    }
    const Request& request = parsed.request;
    const bool reads = request.command == Command::ReadList;
    count(reads ? &LineCounters::reads : &LineCounters::writes);
    const std::optional<Fault> fault = m_parts.faults.next(request.station, request.command);
    if (fault)
        count(&LineCounters::faults);
    log(requestText(request) +
        (fault ? QLatin1String(", fault ") + describeFault(*fault) : QString()));
    dispatch(station.id(), carryOut(frame, parsed, fault, station));
}

/** A pause before the first byte is the station's, not the wire's. */
void LineSession::dispatch(quint8 station, const Transmission& transmission) {
    const int late_ms = transmission.pieces.empty() ? 0 : transmission.pieces.front().pause_ms;
    qint64 due = m_wire_free + late_ms * Millisecond;
    bool is_busy = false;
    for (const auto& [time, earlier] : m_postponed) {
        if (earlier.station != station)
            continue;
        is_busy = true;
        due = std::max(due, time + late_ms * Millisecond);
    }
    if (transmission.pieces.empty() || (late_ms == 0 && !is_busy)) {
        transmit(transmission);
        return;
    }
    Postponed postponed = {station, transmission};
    postponed.transmission.pieces.front().pause_ms = 0;
    m_postponed.emplace(due, postponed);
}

void LineSession::sendDue() {
    while (!m_postponed.empty() && !m_stop && m_postponed.begin()->first <= m_parts.clock.now()) {
        const auto next = m_postponed.extract(m_postponed.begin());
        m_wire_free = std::max(m_wire_free, next.key());
        transmit(next.mapped().transmission);
    }
}

int LineSession::msecsToDue(int longest) {
    if (m_postponed.empty())
        return longest;
    const qint64 wait = m_postponed.begin()->first - m_parts.clock.now();
    return int(std::clamp<qint64>((wait + Millisecond - 1) / Millisecond, 0, longest));
}

Transmission LineSession::carryOut(const QByteArray& frame, const ParsedRequest& parsed,
                                   const std::optional<Fault>& fault, Station& station) {
    const Request& request = parsed.request;
    if (fault && preventsAnswer(fault->kind))
        return faultyTransmission(*fault, frame, {request.station, request.subaddress, EndOk, {}});
    const Reply reply = station.answer(request, elapsed());
    return fault ? faultyTransmission(*fault, frame, reply) : plainTransmission(reply);
}

void LineSession::transmit(const Transmission& transmission) {
    m_sent.clear();
    if (!transmission.bytes().isEmpty() && !m_stop)
        count(&LineCounters::replies);
    send(transmission.echo);
    if (!transmission.pieces.empty())
        m_wire_free += qint64(m_parts.timing.turnaround_ms * double(Millisecond));
    for (const Transmission::Piece& piece : transmission.pieces) {
        m_wire_free += piece.pause_ms * Millisecond;
        sendPaced(piece.bytes);
    }
    if (!m_sent.isEmpty())
        record(trace::Direction::Reply, m_sent);
    if (transmission.closed_ms)
        closeLine(*transmission.closed_ms);
}

void LineSession::sendPaced(const QByteArray& bytes) {
    const LineTiming& timing = m_parts.timing;
    const int chunk = timing.baud > 0 ? timing.chunk() : std::max(1, bytes.size());
    const qint64 start = m_wire_free;
    for (int sent = 0; sent < bytes.size(); sent += chunk) {
        const QByteArray part = bytes.mid(sent, chunk);
        if (!waitUntil(start + timing.wireTime(sent + part.size())))
            return;
        send(part);
    }
    m_wire_free = start + timing.wireTime(bytes.size());
}

void LineSession::send(const QByteArray& bytes) {
    if (bytes.isEmpty() || m_stop)
        return;
    count(&LineCounters::bytes_sent, quint64(bytes.size()));
    m_parts.port.write(bytes);
    m_sent += bytes;
}

void LineSession::closeLine(int closed_ms) {
    m_parts.port.close();
    m_wire_free = m_parts.clock.now() + closed_ms * Millisecond;
    waitUntil(m_wire_free);
}

void LineSession::record(trace::Direction direction, const QByteArray& bytes) {
    if (m_parts.trace)
        m_parts.trace->record(direction, bytes, m_parts.clock.now() / 1000);
}

void LineSession::log(const QString& text) const {
    if (m_parts.log)
        m_parts.log(text);
}

void LineSession::count(Counter counter, quint64 amount) {
    std::lock_guard<std::mutex> lock(m_counters_mutex);
    m_counters.*counter += amount;
}

} // namespace simulator
