#include "tests/campaign/virtualline.h"

#include <algorithm>

namespace campaign {

namespace {

using Kind = LineFault::Kind;

constexpr quint64 LineDice = 3, StationDice = 100; // streams
constexpr qint64 LateMarginUsecs = 20000;          // before the response timeout
constexpr std::size_t KeptFrames = 200;

std::map<quint8, std::vector<quint32>> addressesOf(const Scenario& scenario) {
    std::map<quint8, std::vector<quint32>> addresses;
    for (const Block& block : scenario.blocks) {
        for (int i = 0; i < block.count; ++i)
            addresses[block.station].push_back(block.first + quint32(i));
    }
    return addresses;
}

qint64 usecs(int msecs) {
    return 1000 * qint64(msecs);
}

/** Shortens the pauses so that they take @p most milliseconds together. */
void limitPauses(simulator::Transmission& transmission, qint64 most) {
    qint64 all = 0;
    for (const simulator::Transmission::Piece& piece : transmission.pieces)
        all += piece.pause_ms;
    for (simulator::Transmission::Piece& piece : transmission.pieces) {
        if (all > most)
            piece.pause_ms = int(std::max<qint64>(0, most) * piece.pause_ms / all);
    }
}

} // namespace

VirtualLine::VirtualLine(const Scenario& scenario, VirtualTime& time, WriteSink sink)
    : m_scenario(scenario)
    , m_time(time)
    , m_sink(std::move(sink))
    , m_dice(scenario.seed, LineDice)
    , m_wire(scenario.baud) {
    for (const auto& [station, addresses] : addressesOf(scenario))
        m_controllers[station] = std::make_unique<Controller>(
            station, addresses, Dice(scenario.seed, StationDice + station), time.now());
}

void VirtualLine::send(const QByteArray& bytes) {
    m_journal.note(m_time.now(), "request", bytes);
    for (char byte : bytes) {
        if (const std::optional<QByteArray> frame = m_reader.take(byte))
            hear(*frame);
    }
}

void VirtualLine::hear(const QByteArray& frame) {
    ++m_requests;
    const LineFault* const fault = nextFault();
    const qint64 heard = m_wire.send(m_time.now(), frame.size());
    const simulator::ParsedRequest parsed = simulator::parseRequest(frame);
    const auto found = m_controllers.find(parsed.request.station);
    if (parsed.state != simulator::ParsedRequest::State::Good || found == m_controllers.end())
        return;
    if (fault)
        strike(*fault, *found->second);
    if (found->second->offUntil() <= heard)
        answer(frame, parsed.request, heard, fault);
}

const LineFault* VirtualLine::nextFault() {
    const FaultScript& script = m_scenario.faults;
    while (m_next_fault < script.size() && script[m_next_fault].request < m_requests)
        ++m_next_fault;
    const bool due =
        !m_calm && m_next_fault < script.size() && script[m_next_fault].request == m_requests;
    return due ? &script[m_next_fault] : nullptr;
}

void VirtualLine::strike(const LineFault& fault, Controller& controller) {
    const qint64 now = m_time.now();
    m_journal.note(now, "fault", faultLine(fault).toLatin1());
    m_faults.add(
        {fault, controller.id(), now, now + usecs(fault.ms) + 2 * usecs(m_scenario.timeout_ms)});
    if (fault.kind == Kind::PowerLoss)
        controller.restart(now);
    if (fault.kind == Kind::Dead || fault.kind == Kind::PowerLoss)
        controller.switchOff(now + usecs(fault.ms));
    if (fault.kind == Kind::Close)
        unplug(now, fault.ms);
    if (fault.kind == Kind::Unplugged)
        unplug(now + usecs(fault.at), fault.ms);
}

void VirtualLine::unplug(qint64 from, int msecs) {
    if (m_unplugs > 0 && from < m_plugged)
        return; // it is out, or about to be
    ++m_unplugs;
    m_unplugged = from;
    m_plugged = from + usecs(msecs);
}

bool VirtualLine::isPlugged() const {
    return m_time.now() < m_unplugged || m_time.now() >= m_plugged;
}

int VirtualLine::unplugs() const {
    return m_unplugs - int(m_time.now() < m_unplugged);
}

void VirtualLine::answer(const QByteArray& frame, const simulator::Request& request, qint64 heard,
                         const LineFault* fault) {
    AnswerParts parts;
    parts.request = frame;
    parts.reply = {request.station, request.subaddress, simulator::EndOk, {}};
    if (!fault || !isUnheard(fault->kind))
        parts.reply = controller(request.station).answer(request, heard, m_sink);
    const QByteArray good = simulator::packReply(parts.reply);
    parts.before = m_last_frame[request.station];
    if (fault && fault->kind == Kind::OtherStation)
        parts.foreign = foreignAnswer(request, heard);
    noteGenuine(request.station, good);
    if (fault && fault->kind == Kind::Completed) {
        m_carried = good.left(fault->at % good.size());
        m_carried_replaces = fault->value % 2 == 1;
        m_carried_until = limitFromNow();
        m_carried_station = request.station;
        return;
    }
    const bool damaged = fault && fault->kind != Kind::Unplugged;
    const simulator::Transmission sent =
        damaged ? faultyAnswer(*fault, parts, m_dice) : inPieces(good);
    if (damaged && fault->kind == Kind::Forged)
        m_forged = sent.bytes();
    transmit(request.station, heard, sent);
}

QByteArray VirtualLine::foreignAnswer(const simulator::Request& request, qint64 heard) {
    const quint8 drawn = m_dice.pick(m_scenario.stations);
    const quint8 other = drawn == request.station ? quint8(drawn + 1) : drawn;
    const auto found = m_controllers.find(other);
    simulator::Reply reply = {other, request.subaddress, simulator::EndOk, {}};
    if (request.command == simulator::Command::ReadList && found != m_controllers.end())
        reply = found->second->answer(request, heard, m_sink);
    reply.station = other;
    return simulator::packReply(reply);
}

/** Adapters hand bytes over as it suits them. */
simulator::Transmission VirtualLine::inPieces(const QByteArray& frame) {
    simulator::Transmission transmission;
    const int cut = m_dice.chance(0.3) ? m_dice.between(1, frame.size() - 1) : frame.size();
    transmission.pieces.push_back({0, frame.left(cut)});
    if (cut < frame.size())
        transmission.pieces.push_back({0, frame.mid(cut)});
    return transmission;
}

void VirtualLine::transmit(quint8 station, qint64 heard, simulator::Transmission transmission) {
    if (!transmission.echo.isEmpty())
        m_wire.arrive(heard, transmission.echo);
    if (transmission.pieces.empty())
        return;
    simulator::Transmission::Piece& first = transmission.pieces.front();
    const QByteArray carried = std::exchange(m_carried, QByteArray());
    if (heard + m_wire.timeOf(carried.size() + first.bytes.size()) < m_carried_until)
        first.bytes = withCarried(carried, first.bytes);
    const qint64 limit = limitFromNow();
    const qint64 ready = std::max(heard + usecs(m_scenario.turnaround_ms), m_busy_until[station]);
    const qint64 length = m_wire.timeOf(transmission.bytes().size());
    limitPauses(transmission, (limit - ready - length) / 1000);
    const qint64 due = ready + usecs(transmission.pieces.front().pause_ms);
    transmission.pieces.front().pause_ms = 0;
    m_busy_until[station] = due;
    if (!carried.isEmpty())
        m_busy_until[m_carried_station] = std::max(due, m_busy_until[m_carried_station]);
    m_wire.post(due, limit, transmission);
}

QByteArray VirtualLine::withCarried(const QByteArray& carried, const QByteArray& bytes) {
    if (!carried.isEmpty())
        m_faults.prolong(Kind::Completed, m_time.now() + 2 * usecs(m_scenario.timeout_ms));
    // Of two glued replies the second one would stand alone, as if it were new.
    const bool replaces = m_carried_replaces && bytes.count('\n') == 1;
    return carried + (replaces ? bytes.mid(carried.size()) : bytes);
}

/** When the answer to what is asked now must have come. */
qint64 VirtualLine::limitFromNow() const {
    return m_time.now() + usecs(m_scenario.timeout_ms) - LateMarginUsecs;
}

void VirtualLine::noteGenuine(quint8 station, const QByteArray& frame) {
    m_last_frame[station] = frame;
    m_genuine.push_back(frame);
    if (m_genuine.size() > KeptFrames)
        m_genuine.pop_front();
}

bool VirtualLine::isGenuine(const QByteArray& frame) const {
    return frame != m_forged &&
           std::find(m_genuine.begin(), m_genuine.end(), frame) != m_genuine.end();
}

QByteArray VirtualLine::take() {
    const QByteArray bytes = m_wire.take(m_time.now());
    if (!bytes.isEmpty())
        m_journal.note(m_time.now(), "arrived", bytes);
    return bytes;
}

qint64 VirtualLine::nextEvent() const {
    qint64 next = m_wire.nextEvent();
    if (m_unplugged > m_time.now())
        next = std::min(next, m_unplugged);
    return next;
}

void VirtualLine::calm() {
    m_calm = true;
    m_carried.clear();
    m_unplugged = std::min(m_unplugged, m_time.now());
    m_plugged = std::min(m_plugged, m_time.now());
    for (auto& [station, controller] : m_controllers)
        controller->switchOff(0);
}

} // namespace campaign
