#include "runtime/drivers/dmc50v3/sessionaddresses.h"

#include "runtime/base/fatal.h"
#include "runtime/drivers/dmc50v3/addresssyntax.h"
#include "runtime/interfaces/communicatorcommand.h"

#include <algorithm>

namespace {

bool isSpecialTag(const QString& address) {
    const char* const prefixes[] = {"INITDRV", "WRITE_QUE_SIZE", "LOW", "VVT_"};
    for (const char* prefix : prefixes) {
        if (address.startsWith(QLatin1String(prefix), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

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

void parseSessionAddress(const QString& text, quint8 default_station_id, quint32& address,
                         quint8& station_id) {
    TagAddress parsed;
    const bool well_formed = TagAddress::parse(text, parsed);
    FATAL_CHECK(well_formed, "0");
    address = parsed.address;
    station_id = parsed.has_station ? parsed.station : default_station_id;
}

void SessionAddresses::replace(const QList<CommunicatorCommand>& commands,
                               const AddressVectorMap& valid_addresses, quint8 default_station_id) {
    QMutexLocker lock(&m_mutex);
    m_stations.clear();
    for (int i = 0; i < commands.size(); ++i) {
        if (!isSpecialTag(commands.at(i).address()))
            addCommand(commands.at(i), valid_addresses, default_station_id);
    }
}

void SessionAddresses::addCommand(const CommunicatorCommand& command,
                                  const AddressVectorMap& valid_addresses,
                                  quint8 default_station_id) {
    quint32 start = 0;
    quint8 station_id = 0;
    parseSessionAddress(command.address(), default_station_id, start, station_id);
    const auto lookup = valid_addresses.find(station_id);
    FATAL_CHECK(lookup != valid_addresses.end(), "m_valid_addresses_map->end() != lookup_map_it");

    const AddressVector& valid = lookup->second;
    std::set<quint32>& wanted = m_stations[station_id];
    int from = 0; // addresses ascend, so each search starts at the last hit
    for (int k = 0; k < command.count(); ++k) {
        const int found = SearchIndex(valid, from, int(valid.size()) - 1, start + quint32(k));
        if (found < 0)
            continue;
        wanted.insert(valid[std::size_t(found)]);
        from = found;
    }
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
