#include "host/session/polledstation.h"

#include "host/session/tagvalue.h"

#include <algorithm>
#include <cstring>

namespace host {

namespace {

constexpr int DwordBytes = 4;

std::vector<quint32> addressesOf(const std::vector<PolledStation::Tag>& tags) {
    std::vector<quint32> addresses;
    for (const PolledStation::Tag& tag : tags) {
        for (int i = 0; i < tag.definition->dwords(); ++i)
            addresses.push_back(tag.definition->address.dword + quint32(i));
    }
    std::sort(addresses.begin(), addresses.end());
    addresses.erase(std::unique(addresses.begin(), addresses.end()), addresses.end());
    return addresses;
}

} // namespace

PolledStation::PolledStation(const std::vector<Tag>& tags)
    : m_addresses(addressesOf(tags))
    , m_dwords(int(m_addresses.size()) * DwordBytes, '\0')
    , m_when(m_addresses.size())
    , m_parts((m_addresses.size() + FrameAddresses - 1) / FrameAddresses) {
    for (const Tag& tag : tags) {
        const Placed placed = {tag, placeOf(tag.definition->address.dword),
                               tag.definition->dwords(), QByteArray()};
        for (int frame = placed.first / FrameAddresses; frame <= placed.last() / FrameAddresses;
             ++frame)
            m_parts[std::size_t(frame)].push_back(int(m_tags.size()));
        m_tags.push_back(placed);
    }
}

int PolledStation::placeOf(quint32 address) const {
    return int(std::lower_bound(m_addresses.begin(), m_addresses.end(), address) -
               m_addresses.begin());
}

int PolledStation::endOf(int frame) const {
    return std::min((frame + 1) * FrameAddresses, int(m_addresses.size()));
}

std::optional<int> PolledStation::frameAt(quint32 address) const {
    const int place = placeOf(address);
    if (place == int(m_addresses.size()) || m_addresses[std::size_t(place)] != address ||
        place % FrameAddresses != 0)
        return std::nullopt;
    return place / FrameAddresses;
}

std::optional<int> PolledStation::frameOf(const std::vector<quint32>& addresses) const {
    const auto frame = addresses.empty() ? std::nullopt : frameAt(addresses.front());
    if (!frame)
        return std::nullopt;
    const auto begin = m_addresses.begin() + *frame * FrameAddresses;
    const auto end = m_addresses.begin() + endOf(*frame);
    return std::equal(begin, end, addresses.begin(), addresses.end()) ? frame : std::nullopt;
}

std::vector<PolledStation::Run> PolledStation::runs(int frame) const {
    std::vector<Run> runs;
    for (int place = frame * FrameAddresses; place < endOf(frame); ++place) {
        const quint32 address = m_addresses[std::size_t(place)];
        if (runs.empty() || runs.back().address + quint32(runs.back().dwords) != address)
            runs.push_back({address, 0});
        ++runs.back().dwords;
    }
    return runs;
}

/** Most of what comes is what is there already. */
void PolledStation::store(int frame, const QByteArray& dwords, const Moment& when) {
    const int first = frame * FrameAddresses;
    const int bytes = (endOf(frame) - first) * DwordBytes;
    std::fill(m_when.begin() + first, m_when.begin() + endOf(frame), when);
    char* const there = m_dwords.data() + first * DwordBytes;
    if (std::memcmp(there, dwords.constData(), std::size_t(bytes)) == 0)
        return;
    std::memcpy(there, dwords.constData(), std::size_t(bytes));
    for (const int part : m_parts[std::size_t(frame)])
        m_tags[std::size_t(part)].data.clear();
}

Moment PolledStation::oldestPart(const Placed& placed) const {
    const auto begin = m_when.begin() + placed.first;
    return *std::min_element(begin, begin + placed.dwords, [](const Moment& a, const Moment& b) {
        return a.monotonic_usecs < b.monotonic_usecs;
    });
}

std::vector<PolledStation::Value> PolledStation::values(int frame) {
    std::vector<Value> values;
    for (const int part : m_parts[std::size_t(frame)]) {
        Placed& placed = m_tags[std::size_t(part)];
        const Moment oldest = oldestPart(placed);
        if (placed.last() >= endOf(frame) || oldest.monotonic_usecs < 0)
            continue;
        if (placed.data.isEmpty())
            placed.data = tagData(*placed.tag.definition, m_dwords.mid(placed.first * DwordBytes,
                                                                       placed.dwords * DwordBytes));
        values.push_back({placed.tag.id, placed.data, oldest});
    }
    return values;
}

std::vector<TagId> PolledStation::tags(int frame) const {
    std::vector<TagId> ids;
    for (const int part : m_parts[std::size_t(frame)])
        ids.push_back(m_tags[std::size_t(part)].tag.id);
    return ids;
}

} // namespace host
