#ifndef RUNTIME_DRIVERS_POLLING_READQUEUE_H
#define RUNTIME_DRIVERS_POLLING_READQUEUE_H

#include "runtime/drivers/polling/addressvector.h"

#include <QMutex>

#include <map>

/** Addresses that callers want read once, first in first out per station. The
 *  polling thread holds mutex() for a whole fetch, so that callers which queue
 *  meanwhile wait until it is over. */
class ReadQueue {
public:
    typedef std::map<quint8, AddressVector> Stations; // in order of queueing

    void push(quint8 station_id, const AddressVector& addresses) {
        QMutexLocker lock(&m_mutex);
        AddressVector& queue = m_stations[station_id];
        queue.insert(queue.end(), addresses.begin(), addresses.end());
    }

    bool isEmpty() const {
        QMutexLocker lock(&m_mutex);
        for (const auto& station : m_stations) {
            if (!station.second.empty())
                return false;
        }
        return true;
    }

    QMutex& mutex() { return m_mutex; }
    Stations& stationsLocked() { return m_stations; } // the caller holds mutex()

private:
    mutable QMutex m_mutex; // guards m_stations
    Stations m_stations;
};

#endif
