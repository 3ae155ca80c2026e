// Stations marked for low latency: set up at start and every 9 minutes, checked
// every 30 seconds until they report the expected value.
#include "runtime/base/fatal.h"
#include "runtime/drivers/dmc50v3/dmc50_cpl.h"
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"

namespace {

const qint64 CheckPeriodMsecs = 30000;
const qint64 RenewAfterMsecs = 539999; // more than this, so from 540 s on

const quint32 CheckAddress = 0x2016;
const quint32 CheckValue = 200;

const AddrArg SetUp[] = {{0x2012, 1}, {0x2013, 5}, {0x2014, 200}, {0x2015, 5}};

} // namespace

void PollingThread::setLowLatency(const std::set<quint8>& stations) {
    QMutexLocker lock(&m_low_latency_mutex);
    m_low_latency_stations = stations;
}

int PollingThread::numOfLowLatencyStation() const {
    QMutexLocker lock(&m_low_latency_mutex);
    return int(m_low_latency_stations.size());
}

void PollingThread::initLowLatencyAddrArgs() {
    m_low_latency_addr_args.assign(SetUp, SetUp + sizeof SetUp / sizeof SetUp[0]);
}

/** Queues the set-up of every station; refused while the line is in error. */
void PollingThread::initLowLatencyStations() {
    FATAL_CHECK(!m_low_latency_addr_args.empty(), "m_low_latency_addr_args.size() > 0");
    QMutexLocker lock(&m_low_latency_mutex);
    for (quint8 station_id : m_low_latency_stations)
        writeDWords(station_id, m_low_latency_addr_args);
}

void PollingThread::kickLowLatencyWatchDog() {
    FATAL_CHECK(!m_low_latency_addr_args.empty(), "m_low_latency_addr_args.size() > 0");
    QMutexLocker lock(&m_low_latency_mutex);
    for (quint8 station_id : m_low_latency_stations)
        writeDWord(station_id, m_low_latency_addr_args[0]);
}

/** Reads the check value of every station, without retries. */
bool PollingThread::checkLowLatency() {
    FATAL_CHECK(!m_low_latency_addr_args.empty(), "m_low_latency_addr_args.size() > 0");
    QMutexLocker lock(&m_low_latency_mutex);
    for (quint8 station_id : m_low_latency_stations) {
        if (!exchangeRead(station_id, &CheckAddress, 1))
            return false;
        clearError();
        if (CPLResponseDWord(m_rsp_buf.data(), 0) != CheckValue)
            return false;
    }
    return true;
}

void PollingThread::startLowLatencyCare() {
    if (numOfLowLatencyStation() == 0)
        return;
    initLowLatencyAddrArgs();
    initLowLatencyStations();
    m_low_latency_init_ms = m_low_latency_check_ms = m_clock.msecsSinceBoot();
    m_check_low_latency = true;
}

void PollingThread::checkLowLatencyWhenDue() {
    if (!m_check_low_latency ||
        m_clock.msecsSinceBoot() - m_low_latency_check_ms < CheckPeriodMsecs)
        return;
    if (checkLowLatency()) {
        m_check_low_latency = false;
        return;
    }
    initLowLatencyStations();
    m_low_latency_check_ms = m_clock.msecsSinceBoot();
}

void PollingThread::renewLowLatencyWhenDue() {
    if (numOfLowLatencyStation() == 0 ||
        m_clock.msecsSinceBoot() - m_low_latency_init_ms <= RenewAfterMsecs)
        return;
    initLowLatencyStations();
    m_low_latency_init_ms = m_low_latency_check_ms = m_clock.msecsSinceBoot();
    m_check_low_latency = true;
}
