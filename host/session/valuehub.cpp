#include "host/session/valuehub.h"

#include <algorithm>
#include <numeric>

namespace host {

ValueHub::ValueHub(PanelSession& session, const QVector<TagDefinition>& tags, const HubSetup& setup)
    : m_clock(*setup.clock), m_board(tags, *setup.clock) {
    std::map<int, std::vector<TagId>> by_link;
    for (TagId id = 0; id < m_board.size(); ++id) {
        by_link[tag(id).link_id].push_back(id);
        m_names.insert(tag(id).name, id);
    }
    for (const auto& [link_id, ids] : by_link)
        m_workers[link_id] = std::make_unique<LinkWorker>(
            session.link(link_id), session.attendance(link_id), m_board, ids, setup);
}

ValueHub::~ValueHub() {
    stop(); // all at once, not one after the other
}

void ValueHub::stop() {
    for (const auto& [link_id, worker] : m_workers)
        worker->stop();
}

std::optional<TagId> ValueHub::find(const QString& name) const {
    const auto found = m_names.constFind(name);
    if (found == m_names.constEnd())
        return std::nullopt;
    return *found;
}

std::vector<TagId> ValueHub::allTags() const {
    std::vector<TagId> ids(std::size_t(m_board.size()));
    std::iota(ids.begin(), ids.end(), 0);
    return ids;
}

bool ValueHub::hasTriedAll() const {
    const std::vector<TagId> ids = allTags();
    return std::all_of(ids.begin(), ids.end(), [this](TagId id) { return read(id).sequence > 0; });
}

std::unique_ptr<Subscription> ValueHub::subscribe(const std::vector<TagId>& ids,
                                                  const SubscriptionOptions& options) {
    return std::make_unique<Subscription>(m_board, ids, options);
}

std::shared_ptr<WriteOrder> ValueHub::write(TagId id, const QByteArray& data, const QString& who,
                                            int within_ms) {
    auto order = std::make_shared<WriteOrder>(id, data, who, within_ms, m_clock);
    m_workers.at(tag(id).link_id)->order(order);
    return order;
}

std::vector<StationStatus> ValueHub::stations() const {
    std::vector<StationStatus> stations;
    for (const auto& [link_id, worker] : m_workers) {
        for (const int station : worker->stations())
            stations.push_back({link_id, station, worker->port().stationHealth(station)});
    }
    return stations;
}

LineStatistics ValueHub::statistics(int link_id) const {
    return m_workers.at(link_id)->port().statistics();
}

} // namespace host
