// What callers ask of the polling thread, and how it serves their queues.
#include "runtime/base/fatal.h"
#include "runtime/drivers/dmc50v3/dmc50_cpl.h"
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"

#include <algorithm>

namespace {

const quint32 ErrorPollMsecs = 10;
const quint32 ReadOncePollMsecs = 30;

} // namespace

bool PollingThread::readDataCacheMap(quint8 station_id, const AddressVector& addresses,
                                     const UCharVector& indexes, QByteArray& data,
                                     AddressVector& miss_addresses,
                                     UCharVector& miss_data_indexes) {
    const qint64 budget = waitBudgetMsecs();
    const qint64 start = m_clock.msecsSinceBoot();
    qint64 elapsed = 0;
    while (hasError() && elapsed < budget && !m_stop) {
        m_clock.sleepMsecs(ErrorPollMsecs);
        elapsed = m_clock.msecsSinceBoot() - start;
    }
    if (elapsed >= budget || m_stop)
        return false;
    m_data_cache.copyKnown(station_id, addresses, indexes, data, miss_addresses, miss_data_indexes);
    FATAL_CHECK(miss_addresses.size() == miss_data_indexes.size(),
                "miss_addresses.size() == miss_data_indexes.size()");
    return true;
}

bool PollingThread::readOnceData(quint8 station_id, QByteArray& data,
                                 const AddressVector& addresses, const UCharVector& indexes) {
    pushReadAddresses(station_id, addresses);
    const qint64 budget = waitBudgetMsecs();
    const qint64 start = m_clock.msecsSinceBoot();
    // Queues are fetched in order: with the last address the batch is complete.
    while (!addrInReadOnceDataMap(station_id, addresses.back())) {
        if (m_clock.msecsSinceBoot() - start >= budget || m_stop)
            return false;
        m_clock.sleepMsecs(ReadOncePollMsecs);
    }
    return m_read_once.takeAll(station_id, addresses, indexes, data);
}

void PollingThread::pushReadAddresses(quint8 station_id, const AddressVector& addresses) {
    m_read_queue.push(station_id, addresses);
}

bool PollingThread::readAddrQueueMapIsEmpty() const {
    return m_read_queue.isEmpty();
}

bool PollingThread::getDWordFromDataCacheMap(quint8 station_id, quint32 address,
                                             quint32& value) const {
    return m_data_cache.find(station_id, address, value);
}

bool PollingThread::addrInDataCache(quint8 station_id, quint32 address) const {
    return m_data_cache.contains(station_id, address);
}

bool PollingThread::addrInReadOnceDataMap(quint8 station_id, quint32 address) const {
    return m_read_once.contains(station_id, address);
}

void PollingThread::insertDWordToReadOnceDataMap(quint8 station_id, quint32 address,
                                                 quint32 value) {
    m_read_once.insert(station_id, address, value);
}

void PollingThread::readAddrQueueMapToReadOnceDataMap() {
    QMutexLocker lock(&m_read_queue.mutex());
    for (auto& station : m_read_queue.stationsLocked()) {
        if (m_stop)
            return;
        const AddressVector misses = takeUncachedAddresses(station.first, station.second);
        const int total = int(misses.size());
        for (int from = 0; from < total && !m_stop; from += CPLMaxReadAddresses)
            fetchRun(station.first, misses.data() + from,
                     std::min(CPLMaxReadAddresses, total - from));
    }
}

/** Empties @p queue; answers from the cache what it holds, returns the rest. */
AddressVector PollingThread::takeUncachedAddresses(quint8 station_id, AddressVector& queue) {
    AddressVector misses;
    for (quint32 address : queue) {
        quint32 value = 0;
        if (getDWordFromDataCacheMap(station_id, address, value))
            insertDWordToReadOnceDataMap(station_id, address, value);
        else
            misses.push_back(address);
    }
    queue.clear();
    return misses;
}

/** A run that fails after its retries is given up; its reader times out. */
void PollingThread::fetchRun(quint8 station_id, const quint32* addresses, int count) {
    for (quint32 attempt = 0;; ++attempt) {
        if (exchangeRead(station_id, addresses, count)) {
            readRspToReadOnceDataMap(station_id, addresses, count);
            clearError();
            return;
        }
        if (attempt >= m_retries)
            return;
    }
}

void PollingThread::readRspToDataCacheMap(quint8 station_id, const quint32* addresses,
                                          int num_of_addresses) {
    storeReply(m_data_cache, station_id, addresses, num_of_addresses);
}

void PollingThread::readRspToReadOnceDataMap(quint8 station_id, const quint32* addresses,
                                             int num_of_addresses) {
    storeReply(m_read_once, station_id, addresses, num_of_addresses);
}

void PollingThread::storeReply(DWordMap& map, quint8 station_id, const quint32* addresses,
                               int num_of_addresses) {
    FATAL_CHECK(addresses != nullptr, "addresses != 0");
    FATAL_CHECK(num_of_addresses > 0, "num_of_addresses > 0");
    quint32 values[CPLMaxReadAddresses];
    for (int i = 0; i < num_of_addresses; ++i)
        values[i] = CPLResponseDWord(m_rsp_buf.data(), i);
    map.store(station_id, addresses, values, num_of_addresses);
}

bool PollingThread::writeDWord(quint8 station_id, const AddrArg& arg) {
    if (hasError())
        return false;
    m_write_queue.push(station_id, &arg, 1);
    return true;
}

bool PollingThread::writeDWords(quint8 station_id, const std::vector<AddrArg>& args) {
    if (hasError())
        return false;
    m_write_queue.push(station_id, args.data(), args.size());
    return true;
}

int PollingThread::getAddrArgQueueSize(quint8 station_id) const {
    return m_write_queue.size(station_id);
}

bool PollingThread::addrArgQueueMapIsEmpty() const {
    return m_write_queue.isEmpty();
}

/** False when writes had to wait for an error to pass, or a batch was lost. */
bool PollingThread::addrArgQueueToDMC50() {
    if (hasError())
        return false;
    quint8 station_id = 0;
    while (m_write_queue.takeBatch(std::size_t(CPLMaxWritePairs), station_id, m_batch)) {
        if (!sendBatch(station_id, m_batch))
            return false;
    }
    return true;
}

/** Sends one batch, with its retries. A batch that fails is lost. */
bool PollingThread::sendBatch(quint8 station_id, const std::vector<AddrArg>& batch) {
    for (quint32 attempt = 0;; ++attempt) {
        m_clock.sleepMsecs(m_frame_interval_ms);
        clearError();
        if (exchangeWrite(station_id, batch))
            return true;
        if (attempt >= m_retries)
            return false;
    }
}
