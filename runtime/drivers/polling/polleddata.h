#ifndef RUNTIME_DRIVERS_POLLING_POLLEDDATA_H
#define RUNTIME_DRIVERS_POLLING_POLLEDDATA_H

#include "runtime/drivers/polling/dwordmap.h"
#include "runtime/drivers/polling/readqueue.h"

class Clock;
class CommError;
class ThreadRequests;

/** The double words that the polling thread has read, and how its callers get
 *  them: at once from the cache, or fetched for them once. Callers wait here,
 *  never on the line. Any thread. */
class PolledData {
public:
    /** A caller waits at most @p wait_budget_ms, and not once the thread is asked
     *  to stop. */
    PolledData(Clock& clock, const CommError& error, const ThreadRequests& requests,
               qint64 wait_budget_ms);

    /** Waits out a communication error, then copies the cached values to their
     *  positions @p indexes in @p data and lists the others. False when the error
     *  lasted for the whole budget, or when the thread was stopped. */
    bool readDataCacheMap(quint8 station_id, const AddressVector& addresses,
                          const UCharVector& indexes, QByteArray& data,
                          AddressVector& miss_addresses, UCharVector& miss_data_indexes);

    /** Queues a read of @p addresses and waits until it has been made. */
    bool readOnceData(quint8 station_id, QByteArray& data, const AddressVector& addresses,
                      const UCharVector& indexes);

    DWordMap& cache() { return m_cache; }
    DWordMap& readOnce() { return m_read_once; }
    ReadQueue& queue() { return m_queue; }
    const DWordMap& cache() const { return m_cache; }
    const DWordMap& readOnce() const { return m_read_once; }
    const ReadQueue& queue() const { return m_queue; }

private:
    Clock& m_clock;
    const CommError& m_error;
    const ThreadRequests& m_requests;
    const qint64 m_wait_budget_ms;

    DWordMap m_cache;     // of session addresses; kept fresh
    DWordMap m_read_once; // results of queued reads; taken by their readers
    ReadQueue m_queue;
};

#endif
