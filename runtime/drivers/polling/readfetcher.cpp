#include "runtime/drivers/polling/readfetcher.h"

#include "runtime/drivers/polling/polleddata.h"
#include "runtime/drivers/polling/retry.h"
#include "runtime/drivers/polling/runreader.h"
#include "runtime/drivers/polling/threadrequests.h"

ReadFetcher::ReadFetcher(RunReader& reader, PolledData& data, const ThreadRequests& requests,
                         quint32 retries)
    : m_reader(reader), m_data(data), m_requests(requests), m_retries(retries) {}

void ReadFetcher::fetchAll() {
    QMutexLocker lock(&m_data.queue().mutex());
    for (auto& station : m_data.queue().stationsLocked()) {
        if (m_requests.isStopped())
            return;
        fetch(station.first, takeUncached(station.first, station.second));
    }
}

/** Empties @p queue; answers from the cache what it holds, returns the rest. */
AddressVector ReadFetcher::takeUncached(quint8 station_id, AddressVector& queue) {
    AddressVector misses;
    for (quint32 address : queue) {
        quint32 value = 0;
        if (m_data.cache().find(station_id, address, value))
            m_data.readOnce().insert(station_id, address, value);
        else
            misses.push_back(address);
    }
    queue.clear();
    return misses;
}

/** A run that fails after its retries is given up; its reader times out. */
void ReadFetcher::fetch(quint8 station_id, const AddressVector& addresses) {
    const int total = int(addresses.size());
    for (int from = 0; from < total && !m_requests.isStopped();) {
        const quint32* const run = addresses.data() + from;
        const int count = m_reader.runLength(total - from);
        tryRepeatedly(m_retries,
                      [&] { return m_reader.read(station_id, run, count, m_data.readOnce()); });
        from += count;
    }
}
