#include "runtime/drivers/polling/dwordmap.h"

#include "runtime/base/fatal.h"

#include <cstring>

namespace {

const int DWordSize = 4;

void storeDWord(QByteArray& data, quint8 index, quint32 value) {
    const int offset = DWordSize * index;
    FATAL_CHECK(offset + DWordSize <= data.size(), "offset + DWordSize <= data.size()");
    std::memcpy(data.data() + offset, &value, DWordSize); // all our machines are little-endian
}

} // namespace

void DWordMap::store(quint8 station_id, const quint32* addresses, const quint32* values,
                     int count) {
    FATAL_CHECK(addresses != nullptr, "addresses != 0");
    FATAL_CHECK(count > 0, "num_of_addresses > 0");
    QMutexLocker lock(&m_mutex);
    StationMap& station = m_stations[station_id];
    for (int i = 0; i < count; ++i)
        station[addresses[i]] = values[i];
}

void DWordMap::insert(quint8 station_id, quint32 address, quint32 value) {
    QMutexLocker lock(&m_mutex);
    m_stations[station_id][address] = value;
}

bool DWordMap::find(quint8 station_id, quint32 address, quint32& value) const {
    QMutexLocker lock(&m_mutex);
    const auto station = m_stations.find(station_id);
    if (station == m_stations.end())
        return false;
    const auto found = station->second.find(address);
    if (found == station->second.end())
        return false;
    value = found->second;
    return true;
}

bool DWordMap::contains(quint8 station_id, quint32 address) const {
    quint32 ignored = 0;
    return find(station_id, address, ignored);
}

void DWordMap::copyKnown(quint8 station_id, const AddressVector& addresses,
                         const UCharVector& indexes, QByteArray& data,
                         AddressVector& miss_addresses, UCharVector& miss_data_indexes) const {
    QMutexLocker lock(&m_mutex);
    const auto station = m_stations.find(station_id);
    if (station == m_stations.end()) {
        miss_addresses = addresses;
        miss_data_indexes = indexes;
        return;
    }
    for (std::size_t i = 0; i < addresses.size(); ++i) {
        const auto found = station->second.find(addresses[i]);
        if (found != station->second.end()) {
            storeDWord(data, indexes.at(i), found->second);
        } else {
            miss_addresses.push_back(addresses[i]);
            miss_data_indexes.push_back(indexes.at(i));
        }
    }
}

bool DWordMap::takeAll(quint8 station_id, const AddressVector& addresses,
                       const UCharVector& indexes, QByteArray& data) {
    QMutexLocker lock(&m_mutex);
    const auto station = m_stations.find(station_id);
    if (station == m_stations.end())
        return false;
    StationMap& known = station->second;
    for (std::size_t i = 0; i < addresses.size(); ++i) {
        const auto found = known.find(addresses[i]);
        if (found == known.end())
            return false;
        storeDWord(data, indexes.at(i), found->second);
    }
    for (quint32 address : addresses)
        known.erase(address);
    return true;
}

void DWordMap::clear() {
    QMutexLocker lock(&m_mutex);
    m_stations.clear();
}
