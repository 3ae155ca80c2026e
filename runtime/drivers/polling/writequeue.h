#ifndef RUNTIME_DRIVERS_POLLING_WRITEQUEUE_H
#define RUNTIME_DRIVERS_POLLING_WRITEQUEUE_H

#include "runtime/drivers/addrarg.h"

#include <QMutex>

#include <deque>
#include <map>
#include <vector>

class CommError;

/** Pairs that wait to be written, first in first out per station; never merged,
 *  so two writes of one address are both sent. Any thread appends, only the
 *  polling thread takes. */
class WriteQueue {
public:
    explicit WriteQueue(const CommError& error);

    /** False, and nothing is queued, while the link is in error; true means queued,
     *  not yet written. */
    bool push(quint8 station_id, const AddrArg* args, std::size_t count);

    /** Pairs that wait for @p station_id. */
    int size(quint8 station_id) const;
    bool isEmpty() const;

    /** Takes at most @p max pairs from the front of the lowest station that has
     *  any into @p batch. False when no station has. */
    bool takeBatch(std::size_t max, quint8& station_id, std::vector<AddrArg>& batch);

private:
    const CommError& m_error;

    mutable QMutex m_mutex; // guards m_stations
    std::map<quint8, std::deque<AddrArg>> m_stations;
};

#endif
