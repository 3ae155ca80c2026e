#include "runtime/drivers/polling/sessionaddresses.h"

#include "runtime/base/fatal.h"

#include <algorithm>

namespace {

void mergeStation(const std::set<quint32>& addresses, AddressVector& vector) {
    const int known = int(vector.size());
    for (quint32 address : addresses) {
        if (SearchIndex(vector, 0, known - 1, address) < 0)
            vector.push_back(address);
    }
    if (int(vector.size()) > known)
        std::sort(vector.begin(), vector.end());
}

} // namespace

void SessionAddresses::replace(const Stations& stations) {
    QMutexLocker lock(&m_mutex);
    m_stations = stations;
}

void SessionAddresses::clear() {
    QMutexLocker lock(&m_mutex);
    m_stations.clear();
}

void SessionAddresses::mergeInto(AddressVectorMap& cache_addresses) const {
    QMutexLocker lock(&m_mutex);
    for (const auto& station : m_stations) {
        AddressVector& vector = cache_addresses[quint8(station.first)];
        mergeStation(station.second, vector);
        FATAL_CHECK(!vector.empty(), "av.size() > 0");
    }
}
