#include "runtime/drivers/polling/pollingscan.h"

#include "runtime/drivers/polling/polleddata.h"
#include "runtime/drivers/polling/retry.h"
#include "runtime/drivers/polling/runreader.h"
#include "runtime/drivers/polling/threadrequests.h"
#include "runtime/drivers/polling/writesender.h"

PollingScan::PollingScan(RunReader& reader, WriteSender& writer, PolledData& data,
                         const ThreadRequests& requests, quint32 retries)
    : m_reader(reader), m_writer(writer), m_data(data), m_requests(requests), m_retries(retries) {}

bool PollingScan::run(const AddressVectorMap& addresses) {
    bool idle = true;
    for (const auto& station : addresses) {
        idle = station.second.empty();
        if (!pollStation(station.first, station.second))
            break;
    }
    return idle;
}

/** Returns whether the scan may go on. */
bool PollingScan::pollStation(quint8 station_id, const AddressVector& addresses) {
    const int total = int(addresses.size());
    for (int from = 0; from < total;) {
        const int count = m_reader.runLength(total - from);
        if (!pollRun(station_id, addresses.data() + from, count))
            return false;
        from += count;
    }
    return true;
}

/** Returns whether the scan may go on: no work came up at any attempt. */
bool PollingScan::pollRun(quint8 station_id, const quint32* addresses, int count) {
    bool go_on = true;
    tryRepeatedly(m_retries, [&] {
        m_writer.sendAll(); // writes go before every read request
        const bool ok = m_reader.read(station_id, addresses, count, m_data.cache());
        go_on = go_on && !otherWorkWaits();
        return ok;
    });
    return go_on;
}

bool PollingScan::otherWorkWaits() const {
    return m_requests.getFlag() != 0 || !m_data.queue().isEmpty() || m_requests.isStopped();
}
