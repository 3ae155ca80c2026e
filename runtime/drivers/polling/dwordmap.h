#ifndef RUNTIME_DRIVERS_POLLING_DWORDMAP_H
#define RUNTIME_DRIVERS_POLLING_DWORDMAP_H

#include "runtime/drivers/polling/addressvector.h"

#include <QByteArray>
#include <QMutex>

#include <map>

/** Double words by station and address, shared between the polling thread,
 *  which stores, and its callers, which read. Storing over a known address
 *  allocates nothing. Any thread. */
class DWordMap {
public:
    /** Stores @p count values, at least one, each under its address. No addresses
     *  end the program. */
    void store(quint8 station_id, const quint32* addresses, const quint32* values, int count);
    void insert(quint8 station_id, quint32 address, quint32 value);

    bool find(quint8 station_id, quint32 address, quint32& value) const;
    bool contains(quint8 station_id, quint32 address) const;

    /** Copies what is known of @p addresses to their positions @p indexes in
     *  @p data and appends the rest to the two miss lists. */
    void copyKnown(quint8 station_id, const AddressVector& addresses, const UCharVector& indexes,
                   QByteArray& data, AddressVector& miss_addresses,
                   UCharVector& miss_data_indexes) const;

    /** All or nothing: copies every one of @p addresses to its position in
     *  @p data and forgets them, or returns false and forgets none. */
    bool takeAll(quint8 station_id, const AddressVector& addresses, const UCharVector& indexes,
                 QByteArray& data);

    void clear();

private:
    typedef std::map<quint32, quint32> StationMap;

    mutable QMutex m_mutex; // guards m_stations
    std::map<quint8, StationMap> m_stations;
};

#endif
