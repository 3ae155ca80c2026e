#include "tests/campaign/tagbook.h"

namespace campaign {

namespace {

constexpr qint64 KeptUsecs = 150000000; // longer than any caller waits

quint64 keyOf(quint8 station, quint32 address) {
    return quint64(station) << 32 | address;
}

} // namespace

void Tag::bring(quint32 value, qint64 usecs) {
    while (brought.size() > 1 && brought[1].usecs < usecs - KeptUsecs)
        brought.pop_front();
    brought.push_back({value, usecs});
}

TagBook::TagBook(const Scenario& scenario) {
    for (const Block& block : scenario.blocks) {
        for (int i = 0; i < block.count; ++i) {
            m_index[keyOf(block.station, block.first + quint32(i))] = m_tags.size();
            Tag tag;
            tag.station = block.station;
            tag.address = block.first + quint32(i);
            m_tags.push_back(tag);
        }
    }
}

Tag* TagBook::find(quint8 station, quint32 address) {
    const auto found = m_index.find(keyOf(station, address));
    return found == m_index.end() ? nullptr : &m_tags[found->second];
}

} // namespace campaign
