#include "host/session/writedesk.h"

#include "host/session/tagvalue.h"
#include "runtime/base/clock.h"

namespace host {

namespace {

const WriteResult Closing = {WriteOutcome::Refused, QByteArray(), QStringLiteral("interrupted")};

} // namespace

WriteDesk::WriteDesk(LinkSession& session, ValueBoard& board, Clock& clock, MomentSource moments,
                     QString journal_path)
    : m_session(session)
    , m_board(board)
    , m_clock(clock)
    , m_moments(std::move(moments))
    , m_journal_path(std::move(journal_path)) {}

void WriteDesk::put(std::shared_ptr<WriteOrder> order) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_closed)
        order->finish(Closing);
    else
        m_orders.push_back(std::move(order));
}

bool WriteDesk::hasOrders() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return !m_orders.empty();
}

const TagDefinition* WriteDesk::carryOutNext() {
    std::shared_ptr<WriteOrder> order;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_orders.empty())
            return nullptr;
        order = m_orders.front();
        m_orders.pop_front();
    }
    carryOut(*order);
    return &m_board.tag(order->tag());
}

void WriteDesk::close() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_closed = true;
    }
    while (carryOutNext()) {
    }
}

bool WriteDesk::isClosed() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_closed;
}

/** The journal has a line before the driver hears of the write, and the outcome
 *  before its owner does. */
void WriteDesk::carryOut(WriteOrder& order) {
    const Result<qint64> line = beginLine(order);
    if (!line) {
        order.finish({WriteOutcome::Refused, QByteArray(), line.error()});
        return;
    }
    const WriteResult result = order.take() ? write(order) : *order.result();
    endLine(*line, order, result);
    if (!order.finish(result) && order.result()->outcome != result.outcome)
        endLine(*line, order, *order.result()); // its deadline has come meanwhile
}

WriteResult WriteDesk::write(WriteOrder& order) {
    if (isClosed())
        return Closing;
    const TagDefinition& tag = m_board.tag(order.tag());
    const StationHealth health = m_session.port().stationHealth(tag.station);
    if (tag.address.kind == AddressKind::Data &&
        (health.held_off || health.state == StationHealth::State::Down))
        return refusedByDownStation(tag);
    const TagResult written = m_session.write(tag, order.data(), true, order.deadline());
    if (written.ok())
        return {WriteOutcome::Confirmed, written.data, QString()};
    const bool late = m_clock.msecsSinceBoot() >= order.deadline();
    return {late ? WriteOutcome::Expired : WriteOutcome::Refused, written.data, written.error};
}

/** The next request to it goes out, so that one which is back takes the next
 *  write. */
WriteResult WriteDesk::refusedByDownStation(const TagDefinition& tag) {
    m_session.port().askFor(tag.station);
    const QString text = m_session.stationError(tag.station);
    return {WriteOutcome::Refused, QByteArray(),
            text.isEmpty() ? QString::fromLatin1("station %1 is down").arg(tag.station) : text};
}

Result<qint64> WriteDesk::beginLine(const WriteOrder& order) {
    if (!m_journal) {
        Result<std::unique_ptr<WriteJournal>> opened = WriteJournal::open(m_journal_path);
        if (!opened)
            return Failure(opened.error());
        m_journal = std::move(*opened);
    }
    const TagDefinition& tag = m_board.tag(order.tag());
    const QByteArray old_data = m_board.read(order.tag()).data;
    return m_journal->begin({m_moments.now().utc_msecs, order.who(), tag.name,
                             formatValue(tag, old_data, ValueFormat::Natural),
                             formatValue(tag, order.data(), ValueFormat::Natural)});
}

/** An end that cannot be written leaves the line begun: the outcome is unknown to
 *  who reads the journal, not to who ordered the write. */
void WriteDesk::endLine(qint64 line, const WriteOrder& order, const WriteResult& result) {
    m_journal->end(line,
                   {m_moments.now().utc_msecs, QLatin1String(outcomeName(result.outcome)),
                    formatValue(m_board.tag(order.tag()), result.read_back, ValueFormat::Natural),
                    result.why});
}

} // namespace host
