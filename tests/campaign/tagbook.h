#ifndef TESTS_CAMPAIGN_TAGBOOK_H
#define TESTS_CAMPAIGN_TAGBOOK_H

#include "tests/campaign/scenario.h"

#include <deque>
#include <unordered_map>

namespace campaign {

/** One double word as the driver should know it. Times are microseconds. */
struct Tag {
    struct Brought {
        quint32 value;
        qint64 usecs; // the exchange's end
    };
    quint8 station;
    quint32 address;
    std::deque<Brought> brought; // by good exchanges of late, oldest first
    qint64 cached_since = -1;    // the take-over of the session that polls it; -1: none
    bool given_up = false;       // a read of it has once failed for its caller

    void bring(quint32 value, qint64 usecs);
    bool isFreshSince(qint64 usecs) const {
        return !brought.empty() && brought.back().usecs >= usecs;
    }
};

/** All tags of a scenario. */
class TagBook {
public:
    explicit TagBook(const Scenario& scenario);

    /** Null for a double word that is no tag. */
    Tag* find(quint8 station, quint32 address);
    std::vector<Tag>& tags() { return m_tags; }

private:
    std::vector<Tag> m_tags;
    std::unordered_map<quint64, std::size_t> m_index;
};

} // namespace campaign

#endif
