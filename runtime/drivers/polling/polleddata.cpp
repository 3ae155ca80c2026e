#include "runtime/drivers/polling/polleddata.h"

#include "runtime/base/clock.h"
#include "runtime/base/fatal.h"
#include "runtime/drivers/polling/commerror.h"
#include "runtime/drivers/polling/threadrequests.h"

namespace {

const quint32 ErrorPollMsecs = 10;
const quint32 ReadOncePollMsecs = 30;

} // namespace

PolledData::PolledData(Clock& clock, const CommError& error, const ThreadRequests& requests,
                       qint64 wait_budget_ms)
    : m_clock(clock), m_error(error), m_requests(requests), m_wait_budget_ms(wait_budget_ms) {}

bool PolledData::readDataCacheMap(quint8 station_id, const AddressVector& addresses,
                                  const UCharVector& indexes, QByteArray& data,
                                  AddressVector& miss_addresses, UCharVector& miss_data_indexes) {
    const qint64 start = m_clock.msecsSinceBoot();
    qint64 elapsed = 0;
    while (m_error.isSet() && elapsed < m_wait_budget_ms && !m_requests.isStopped()) {
        m_clock.sleepMsecs(ErrorPollMsecs);
        elapsed = m_clock.msecsSinceBoot() - start;
    }
    if (elapsed >= m_wait_budget_ms || m_requests.isStopped())
        return false;
    m_cache.copyKnown(station_id, addresses, indexes, data, miss_addresses, miss_data_indexes);
    FATAL_CHECK(miss_addresses.size() == miss_data_indexes.size(),
                "miss_addresses.size() == miss_data_indexes.size()");
    return true;
}

bool PolledData::readOnceData(quint8 station_id, QByteArray& data, const AddressVector& addresses,
                              const UCharVector& indexes) {
    m_queue.push(station_id, addresses);
    const qint64 start = m_clock.msecsSinceBoot();
    // Queues are fetched in order: with the last address the batch is complete.
    while (!m_read_once.contains(station_id, addresses.back())) {
        if (m_clock.msecsSinceBoot() - start >= m_wait_budget_ms || m_requests.isStopped())
            return false;
        m_clock.sleepMsecs(ReadOncePollMsecs);
    }
    return m_read_once.takeAll(station_id, addresses, indexes, data);
}
