#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"

#include "runtime/base/fatal.h"
#include "runtime/drivers/dmc50v3/dmc50_cpl.h"
#include "runtime/interfaces/abstractdeviceinterface.h"

#include <algorithm>

namespace {

const quint32 MinFrameIntervalMsecs = 10;
const int MinTimeoutMsecs = 3000;
const quint32 IdlePauseMsecs = 10;

AbstractDeviceInterface* checkedPort(AbstractDeviceInterface* port) {
    FATAL_CHECK(port != nullptr, "m_interface != 0");
    return port;
}

} // namespace

PollingThread::PollingThread(AbstractDeviceInterface* port, const AddressVectorMap* valid_addresses,
                             quint8 default_station_id, Clock& clock)
    : m_interface(checkedPort(port))
    , m_valid_addresses_map(valid_addresses)
    , m_clock(clock)
    , m_default_station_id(default_station_id)
    , m_frame_interval_ms(std::max<quint32>(port->frameInterval(), MinFrameIntervalMsecs))
    , m_timeout_ms(std::max(port->responseTimeout(), MinTimeoutMsecs))
    , m_retries(port->retryCount())
    , m_stop(0)
    , m_flags(0)
    , m_rsp_len(0)
    , m_low_latency_init_ms(0)
    , m_low_latency_check_ms(0)
    , m_check_low_latency(false) {
    FATAL_CHECK(m_valid_addresses_map, "m_valid_addresses_map");
    FATAL_CHECK(m_default_station_id > 0, "m_default_station_id > 0");
}

void PollingThread::stop() {
    m_stop = 1;
}

void PollingThread::run() {
    prepare();
    while (!m_stop)
        cycle();
}

void PollingThread::prepare() {
    m_request_buf.resize(CPLBufferSize);
    m_rsp_buf.resize(CPLBufferSize);
    startLowLatencyCare();
}

void PollingThread::cycle() {
    takeOverSession();
    if (!addrArgQueueMapIsEmpty())
        addrArgQueueToDMC50();
    checkLowLatencyWhenDue();
    const bool idle = pollingScan();
    if (!readAddrQueueMapIsEmpty()) {
        readAddrQueueMapToReadOnceDataMap();
        renewLowLatencyWhenDue();
        return;
    }
    renewLowLatencyWhenDue();
    if (idle) {
        clearError();
        m_clock.sleepMsecs(IdlePauseMsecs);
    }
}

void PollingThread::takeOverSession() {
    if (!(getFlag() & NewSession))
        return;
    clearFlag(NewSession | ClearedSession);
    m_cache_addresses.clear();
    sessionAddrMapToCacheAddrMap();
    clearDataCacheMap();
}

/** Polls every run of addresses once. Returns whether there was none to poll. */
bool PollingThread::pollingScan() {
    bool idle = true;
    bool end_early = false;
    for (auto it = m_cache_addresses.begin(); it != m_cache_addresses.end() && !end_early; ++it) {
        const AddressVector& addresses = it->second;
        const int total = int(addresses.size());
        idle = addresses.empty();
        for (int from = 0; from < total && !end_early; from += CPLMaxReadAddresses) {
            const int count = std::min(CPLMaxReadAddresses, total - from);
            end_early = pollRun(it->first, addresses.data() + from, count);
        }
    }
    return idle;
}

/** Polls one run, with its retries. Returns whether the scan must end after it,
 *  because other work waits. */
bool PollingThread::pollRun(quint8 station_id, const quint32* addresses, int count) {
    bool end_early = false;
    for (quint32 attempt = 0;; ++attempt) {
        if (!addrArgQueueMapIsEmpty()) // writes go before every read request
            addrArgQueueToDMC50();
        const bool ok = exchangeRead(station_id, addresses, count);
        if (ok) {
            readRspToDataCacheMap(station_id, addresses, count);
            clearError();
        }
        if (getFlag() != 0 || !readAddrQueueMapIsEmpty() || m_stop)
            end_early = true;
        if (ok || attempt >= m_retries)
            return end_early;
    }
}

void PollingThread::setSessionCommand(const QList<CommunicatorCommand>& commands) {
    m_session.replace(commands, *m_valid_addresses_map, m_default_station_id);
    setFlag(NewSession);
}

void PollingThread::clearSessionCommand() {
    setFlag(ClearedSession);
}

void PollingThread::clearSessionAddrMap() {
    m_session.clear();
}

bool PollingThread::parseAddrStr(const QString& text, quint32& address, quint8& station_id) const {
    parseSessionAddress(text, m_default_station_id, address, station_id);
    return true;
}

void PollingThread::sessionAddrMapToCacheAddrMap() {
    m_session.mergeInto(m_cache_addresses);
}

void PollingThread::clearDataCacheMap() {
    m_data_cache.clear();
}

void PollingThread::setCommError(const QString& text) {
    m_error.set(text);
}

bool PollingThread::hasError() const {
    return m_error.isSet();
}

QString PollingThread::getLastError() const {
    return m_error.text();
}

void PollingThread::clearError() {
    m_error.clear();
}

void PollingThread::setFlag(quint8 bits) {
    QMutexLocker lock(&m_flags_mutex);
    m_flags = quint8(m_flags | bits);
}

quint8 PollingThread::getFlag() const {
    QMutexLocker lock(&m_flags_mutex);
    return m_flags;
}

void PollingThread::clearFlag(quint8 bits) {
    QMutexLocker lock(&m_flags_mutex);
    m_flags = quint8(m_flags & ~bits);
}

qint64 PollingThread::waitBudgetMsecs() const {
    return m_timeout_ms * (qint64(m_retries) + 1);
}
