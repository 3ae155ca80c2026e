#include "host/session/linkworker.h"

#include "runtime/base/clock.h"

#include <algorithm>

namespace host {

namespace {

constexpr int LongestWaitMsecs = 60000; // whatever comes wakes it

std::vector<TagId> tagsOf(const ValueBoard& board, const std::vector<TagId>& ids, bool polled) {
    std::vector<TagId> chosen;
    for (const TagId id : ids) {
        if ((board.tag(id).address.kind == AddressKind::Data) == polled)
            chosen.push_back(id);
    }
    return chosen;
}

std::set<int> stationsOf(const ValueBoard& board, const std::vector<TagId>& ids) {
    std::set<int> stations;
    for (const TagId id : ids)
        stations.insert(board.tag(id).station);
    return stations;
}

} // namespace

LinkWorker::LinkWorker(LinkSession& session, LineAttendance& attendance, ValueBoard& board,
                       const std::vector<TagId>& ids, const HubSetup& setup)
    : m_session(session)
    , m_attendance(attendance)
    , m_board(board)
    , m_clock(*setup.clock)
    , m_moments{[&session] { return session.port().usecs(); }, setup.utc_msecs}
    , m_polled(tagsOf(board, ids, true))
    , m_own(tagsOf(board, ids, false))
    , m_stations(stationsOf(board, m_polled))
    , m_desk(session, board, m_clock, m_moments, setup.journal_path)
    , m_reader(session, board, m_polled, m_moments)
    , m_thread([this] { run(); }) {}

LinkWorker::~LinkWorker() {
    stop();
    m_thread.join();
}

void LinkWorker::stop() {
    m_stopped = true;
    m_session.cancel();
    m_attendance.wake();
}

void LinkWorker::order(std::shared_ptr<WriteOrder> order) {
    m_desk.put(std::move(order));
    m_attendance.wake();
}

void LinkWorker::run() {
    QVector<TagDefinition> polled;
    for (const TagId id : m_polled)
        polled.append(m_board.tag(id));
    m_session.poll(polled);
    m_attendance.attend();
    while (!m_stopped && !startDriver())
        m_attendance.await(OwnTagsMsecs);
    while (!m_stopped)
        workOnce();
    m_attendance.leave();
    m_desk.close();
}

bool LinkWorker::startDriver() {
    const Result<void> started = m_session.start();
    if (!started && !m_stopped)
        m_reader.failAll(started.error());
    return started.has_value();
}

void LinkWorker::workOnce() {
    readOwnTagsWhenDue();
    const qint64 now = m_clock.msecsSinceBoot();
    qint64 due = now + LongestWaitMsecs;
    if (!m_own.empty())
        due = std::min(due, m_own_due);
    if (m_desk.hasOrders())
        due = std::min(due, m_write_due);
    if (m_attendance.await(int(std::max<qint64>(due - now, 0))))
        serveExchange();
    else if (!m_stopped && m_desk.hasOrders() && m_clock.msecsSinceBoot() >= m_write_due)
        carryOutWrite();
}

void LinkWorker::serveExchange() {
    m_reader.take(m_attendance.shown());
    m_reader.publish(m_attendance.release());
}

/** Meanwhile the session is another one and the driver is waited for. Then reading
 *  has the line for as long, before the next write. */
void LinkWorker::carryOutWrite() {
    const qint64 start = m_clock.msecsSinceBoot();
    m_attendance.leave();
    const TagDefinition* const written = m_desk.carryOutNext();
    if (written && written->address.kind == AddressKind::Data)
        m_reader.sessionWas(*written);
    m_attendance.attend();
    const qint64 end = m_clock.msecsSinceBoot();
    m_write_due = end + (end - start);
}

void LinkWorker::readOwnTagsWhenDue() {
    if (m_own.empty() || m_clock.msecsSinceBoot() < m_own_due)
        return;
    m_own_due = m_clock.msecsSinceBoot() + OwnTagsMsecs;
    for (const TagId id : m_own) {
        const TagResult result = m_session.read(m_board.tag(id));
        if (result.ok())
            m_board.bring(id, result.data, m_moments.now());
        else if (!m_stopped)
            m_board.fail(id, result.error);
    }
}

} // namespace host
