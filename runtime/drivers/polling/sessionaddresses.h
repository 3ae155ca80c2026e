#ifndef RUNTIME_DRIVERS_POLLING_SESSIONADDRESSES_H
#define RUNTIME_DRIVERS_POLLING_SESSIONADDRESSES_H

#include "runtime/drivers/polling/addressvector.h"

#include <QMutex>

#include <map>
#include <set>

/** The addresses that the host's current set of tags needs kept fresh. The
 *  host's thread replaces them, the polling thread takes them over. */
class SessionAddresses {
public:
    typedef std::map<quint32, std::set<quint32>> Stations;

    void replace(const Stations& stations);
    void clear();

    /** Merges into @p cache_addresses; its vectors stay ascending and unique. A
     *  station without any address ends the program. */
    void mergeInto(AddressVectorMap& cache_addresses) const;

private:
    mutable QMutex m_mutex; // guards m_stations
    Stations m_stations;
};

#endif
