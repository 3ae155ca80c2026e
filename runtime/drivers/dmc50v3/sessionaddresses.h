#ifndef RUNTIME_DRIVERS_DMC50V3_SESSIONADDRESSES_H
#define RUNTIME_DRIVERS_DMC50V3_SESSIONADDRESSES_H

#include "runtime/drivers/polling/addressvector.h"

#include <QList>
#include <QMutex>

#include <map>
#include <set>

class CommunicatorCommand;

/** The addresses that the host's current set of tags needs kept fresh. The
 *  host's thread replaces them, the polling thread takes them over. */
class SessionAddresses {
public:
    /** Replaces all by what @p commands name and @p valid_addresses holds. The
     *  driver's special tags are skipped. A malformed address, or a station that
     *  the project does not know, ends the program. */
    void replace(const QList<CommunicatorCommand>& commands,
                 const AddressVectorMap& valid_addresses, quint8 default_station_id);

    void clear();

    /** Merges into @p cache_addresses; its vectors stay ascending and unique. A
     *  station without any address ends the program. */
    void mergeInto(AddressVectorMap& cache_addresses) const;

private:
    void addCommand(const CommunicatorCommand& command, const AddressVectorMap& valid_addresses,
                    quint8 default_station_id);

    mutable QMutex m_mutex; // guards m_stations
    std::map<quint32, std::set<quint32>> m_stations;
};

/** The address and station of a tag; without a station prefix it is
 *  @p default_station_id. A text in no form ends the program. */
void parseSessionAddress(const QString& text, quint8 default_station_id, quint32& address,
                         quint8& station_id);

#endif
