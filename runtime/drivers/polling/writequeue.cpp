#include "runtime/drivers/polling/writequeue.h"

#include "runtime/drivers/polling/commerror.h"

#include <algorithm>

WriteQueue::WriteQueue(const CommError& error) : m_error(error) {}

bool WriteQueue::push(quint8 station_id, const AddrArg* args, std::size_t count) {
    if (m_error.isSet())
        return false;
    QMutexLocker lock(&m_mutex);
    std::deque<AddrArg>& queue = m_stations[station_id];
    queue.insert(queue.end(), args, args + count);
    return true;
}

int WriteQueue::size(quint8 station_id) const {
    QMutexLocker lock(&m_mutex);
    const auto station = m_stations.find(station_id);
    return station == m_stations.end() ? 0 : int(station->second.size());
}

bool WriteQueue::isEmpty() const {
    QMutexLocker lock(&m_mutex);
    for (const auto& station : m_stations) {
        if (!station.second.empty())
            return false;
    }
    return true;
}

bool WriteQueue::takeBatch(std::size_t max, quint8& station_id, std::vector<AddrArg>& batch) {
    QMutexLocker lock(&m_mutex);
    for (auto& station : m_stations) {
        std::deque<AddrArg>& queue = station.second;
        if (queue.empty())
            continue;
        const auto end = queue.begin() + std::ptrdiff_t(std::min(max, queue.size()));
        batch.assign(queue.begin(), end);
        queue.erase(queue.begin(), end);
        station_id = station.first;
        return true;
    }
    return false;
}
