#ifndef RUNTIME_DRIVERS_POLLING_READFETCHER_H
#define RUNTIME_DRIVERS_POLLING_READFETCHER_H

#include "runtime/drivers/polling/addressvector.h"

class PolledData;
class RunReader;
class ThreadRequests;

/** Serves the queue of reads that callers want made once. The polling thread
 *  only. */
class ReadFetcher {
public:
    ReadFetcher(RunReader& reader, PolledData& data, const ThreadRequests& requests,
                quint32 retries);

    /** Empties the queue, station by station: what the cache holds is copied, the
     *  rest is read. Callers that queue meanwhile wait until it is over; a stop
     *  ends it between two runs. */
    void fetchAll();

private:
    AddressVector takeUncached(quint8 station_id, AddressVector& queue);
    void fetch(quint8 station_id, const AddressVector& addresses);

    RunReader& m_reader;
    PolledData& m_data;
    const ThreadRequests& m_requests;
    const quint32 m_retries;
};

#endif
