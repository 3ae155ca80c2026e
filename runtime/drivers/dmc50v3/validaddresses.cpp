#include "runtime/drivers/dmc50v3/validaddresses.h"

#include "runtime/base/fatal.h"
#include "runtime/drivers/dmc50v3/addresssyntax.h"

#include <algorithm>

namespace {

/** "3-LOWLATENCY" is station 3, a text without a number in front the default. */
quint8 lowLatencyStation(const QString& text, quint8 default_station) {
    if (!text.at(0).isDigit())
        return default_station;
    const int id_str_len = text.indexOf(QLatin1Char('-'));
    FATAL_CHECK(id_str_len >= 1, "id_str_len >= 1");
    return quint8(text.left(id_str_len).toUInt());
}

} // namespace

void ValidAddresses::addTag(const QString& text, quint8 default_station) {
    // In capitals, as the project compiler writes it. Only what a person types, an
    // address or a tag that the host asks for, may be in either case.
    if (text.contains(QLatin1String("LOWLATENCY"))) {
        low_latency.insert(lowLatencyStation(text, default_station));
        return;
    }
    TagAddress tag;
    if (TagAddress::parse(text, tag)) {
        if (tag.form == TagAddress::NA)
            program_addresses.append(text);
        stations[tag.has_station ? tag.station : default_station].push_back(tag.address);
        return;
    }
    FATAL_CHECK(text.contains(QLatin1String("VVT_")), "0");
}

void ValidAddresses::sort() {
    for (auto& station : stations)
        std::sort(station.second.begin(), station.second.end());
}
