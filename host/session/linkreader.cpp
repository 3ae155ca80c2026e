#include "host/session/linkreader.h"

namespace host {

LinkReader::LinkReader(LinkSession& session, ValueBoard& board, const std::vector<TagId>& ids,
                       MomentSource moments)
    : m_session(session)
    , m_board(board)
    , m_moments(std::move(moments))
    , m_attempts(int(session.port().retryCount()) + 1)
    , m_ids(ids) {
    std::map<int, std::vector<PolledStation::Tag>> tags;
    for (const TagId id : ids)
        tags[board.tag(id).station].push_back({id, &board.tag(id)});
    for (const auto& [station, own] : tags)
        m_stations.emplace(station, own);
}

void LinkReader::take(const std::vector<Exchange>& shown) {
    const QString text = m_session.lookForError();
    if (const std::optional<DriverError> error = readDriverError(text)) {
        countFailure(text, *error);
        return;
    }
    // Any other error is an old one of the driver's start, which the next read ends.
    for (const Exchange& exchange : shown) {
        if (!exchange.is_write && !mayBeForgotten(exchange))
            takeFrame(exchange);
    }
}

/** At most one read of the former session ends after the new one was set; the
 *  driver then forgets what it brought. */
bool LinkReader::mayBeForgotten(const Exchange& exchange) {
    const TagDefinition* const tag = m_session_was;
    m_session_was = nullptr;
    if (!tag || exchange.station != tag->station)
        return false;
    for (const quint32 address : exchange.addresses) {
        if (address - tag->address.dword >= quint32(tag->dwords()))
            return false;
    }
    return true;
}

void LinkReader::takeFrame(const Exchange& exchange) {
    const auto station = m_stations.find(exchange.station);
    if (station == m_stations.end())
        return;
    const std::optional<int> frame = station->second.frameOf(exchange.addresses);
    if (!frame)
        return; // not of the session
    QByteArray dwords;
    for (const PolledStation::Run& run : station->second.runs(*frame)) {
        const QByteArray bytes = m_session.readDwords(exchange.station, run.address, run.dwords);
        if (bytes.isEmpty())
            return;
        dwords += bytes;
    }
    m_taken.push_back({&station->second, *frame, dwords, m_moments.at(exchange.done_usecs)});
    m_failures.erase({exchange.station, *frame});
}

void LinkReader::publish(bool is_sure) {
    for (const Taken& taken : m_taken) {
        if (!is_sure)
            break;
        taken.station->store(taken.frame, taken.dwords, taken.when);
        for (const PolledStation::Value& value : taken.station->values(taken.frame))
            m_board.bring(value.id, value.data, value.when);
    }
    m_taken.clear();
}

void LinkReader::countFailure(const QString& text, const DriverError& error) {
    const auto station = m_stations.find(error.station);
    if (!error.read_from || station == m_stations.end())
        return;
    const std::optional<int> frame = station->second.frameAt(*error.read_from);
    if (!frame || ++m_failures[{error.station, *frame}] < m_attempts)
        return;
    for (const TagId id : station->second.tags(*frame))
        m_board.fail(id, text);
}

void LinkReader::failAll(const QString& text) {
    for (const TagId id : m_ids)
        m_board.fail(id, text);
}

} // namespace host
