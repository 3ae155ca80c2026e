#ifndef RUNTIME_DRIVERS_POLLING_POLLINGSCAN_H
#define RUNTIME_DRIVERS_POLLING_POLLINGSCAN_H

#include "runtime/drivers/polling/addressvector.h"

class PolledData;
class RunReader;
class ThreadRequests;
class WriteSender;

/** Keeps the data cache fresh, one pass over all addresses at a time. The polling
 *  thread only. */
class PollingScan {
public:
    PollingScan(RunReader& reader, WriteSender& writer, PolledData& data,
                const ThreadRequests& requests, quint32 retries);

    /** Polls @p addresses, run by run. Ends after the current run, its retries
     *  included, when other work waits. Returns whether the scan was idle: the
     *  last station it came to has no addresses. */
    bool run(const AddressVectorMap& addresses);

private:
    bool pollStation(quint8 station_id, const AddressVector& addresses);
    bool pollRun(quint8 station_id, const quint32* addresses, int count);
    bool otherWorkWaits() const;

    RunReader& m_reader;
    WriteSender& m_writer;
    PolledData& m_data;
    const ThreadRequests& m_requests;
    const quint32 m_retries;
};

#endif
