#include "runtime/drivers/dmc50v3/sessioncommands.h"

#include "runtime/base/fatal.h"
#include "runtime/drivers/dmc50v3/addresssyntax.h"
#include "runtime/interfaces/communicatorcommand.h"

namespace {

bool isSpecialTag(const QString& address) {
    const char* const prefixes[] = {"INITDRV", "WRITE_QUE_SIZE", "LOW", "VVT_"};
    for (const char* prefix : prefixes) {
        if (address.startsWith(QLatin1String(prefix), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

/** Adds the double words from @p start on that @p valid, ascending, holds. */
void addRange(quint32 start, int count, const AddressVector& valid, std::set<quint32>& wanted) {
    int from = 0; // addresses ascend, so each search starts at the last hit
    for (int k = 0; k < count; ++k) {
        const int found = SearchIndex(valid, from, int(valid.size()) - 1, start + quint32(k));
        if (found < 0)
            continue;
        wanted.insert(valid[std::size_t(found)]);
        from = found;
    }
}

} // namespace

SessionAddresses::Stations addressesOfSession(const QList<CommunicatorCommand>& commands,
                                              const AddressVectorMap& valid_addresses,
                                              quint8 default_station_id) {
    SessionAddresses::Stations stations;
    for (int i = 0; i < commands.size(); ++i) {
        const CommunicatorCommand& command = commands.at(i);
        if (isSpecialTag(command.address()))
            continue;
        quint32 start = 0;
        quint8 station_id = 0;
        parseSessionAddress(command.address(), default_station_id, start, station_id);
        const auto lookup = valid_addresses.find(station_id);
        FATAL_CHECK(lookup != valid_addresses.end(),
                    "m_valid_addresses_map->end() != lookup_map_it");
        addRange(start, command.count(), lookup->second, stations[station_id]);
    }
    return stations;
}

void parseSessionAddress(const QString& text, quint8 default_station_id, quint32& address,
                         quint8& station_id) {
    TagAddress parsed;
    const bool well_formed = TagAddress::parse(text, parsed);
    FATAL_CHECK(well_formed, "0");
    address = parsed.address;
    station_id = parsed.has_station ? parsed.station : default_station_id;
}
