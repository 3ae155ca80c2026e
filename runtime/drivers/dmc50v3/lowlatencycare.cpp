#include "runtime/drivers/dmc50v3/lowlatencycare.h"

#include "runtime/base/clock.h"
#include "runtime/base/fatal.h"
#include "runtime/drivers/polling/commerror.h"
#include "runtime/drivers/polling/controllerline.h"
#include "runtime/drivers/polling/writequeue.h"

namespace {

const qint64 CheckPeriodMsecs = 30000;
const qint64 RenewAfterMsecs = 539999; // more than this, so from 540 s on

const quint32 CheckAddress = 0x2016;
const quint32 CheckValue = 200;

const AddrArg SetUp[] = {{0x2012, 1}, {0x2013, 5}, {0x2014, 200}, {0x2015, 5}};

} // namespace

LowLatencyCare::LowLatencyCare(Clock& clock, ControllerLine& line, CommError& error,
                               WriteQueue& writes)
    : m_clock(clock)
    , m_line(line)
    , m_error(error)
    , m_writes(writes)
    , m_low_latency_init_ms(0)
    , m_low_latency_check_ms(0)
    , m_check_low_latency(false) {}

void LowLatencyCare::setLowLatency(const std::set<quint8>& stations) {
    QMutexLocker lock(&m_mutex);
    m_stations = stations;
}

int LowLatencyCare::numOfLowLatencyStation() const {
    QMutexLocker lock(&m_mutex);
    return int(m_stations.size());
}

void LowLatencyCare::initLowLatencyAddrArgs() {
    m_low_latency_addr_args.assign(SetUp, SetUp + sizeof SetUp / sizeof SetUp[0]);
}

void LowLatencyCare::initLowLatencyStations() {
    FATAL_CHECK(!m_low_latency_addr_args.empty(), "m_low_latency_addr_args.size() > 0");
    QMutexLocker lock(&m_mutex);
    for (quint8 station_id : m_stations)
        m_writes.push(station_id, m_low_latency_addr_args.data(), m_low_latency_addr_args.size());
}

void LowLatencyCare::kickLowLatencyWatchDog() {
    FATAL_CHECK(!m_low_latency_addr_args.empty(), "m_low_latency_addr_args.size() > 0");
    QMutexLocker lock(&m_mutex);
    for (quint8 station_id : m_stations)
        m_writes.push(station_id, m_low_latency_addr_args.data(), 1);
}

bool LowLatencyCare::checkLowLatency() {
    FATAL_CHECK(!m_low_latency_addr_args.empty(), "m_low_latency_addr_args.size() > 0");
    QMutexLocker lock(&m_mutex);
    for (quint8 station_id : m_stations) {
        quint32 value = 0;
        m_line.pause();
        if (!m_line.read(station_id, &CheckAddress, 1, &value))
            return false;
        m_error.clear();
        if (value != CheckValue)
            return false;
    }
    return true;
}

void LowLatencyCare::start() {
    if (numOfLowLatencyStation() == 0)
        return;
    initLowLatencyAddrArgs();
    setUpNow();
}

void LowLatencyCare::checkWhenDue() {
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

void LowLatencyCare::renewWhenDue() {
    if (numOfLowLatencyStation() == 0 ||
        m_clock.msecsSinceBoot() - m_low_latency_init_ms <= RenewAfterMsecs)
        return;
    setUpNow();
}

void LowLatencyCare::setUpNow() {
    initLowLatencyStations();
    m_low_latency_init_ms = m_low_latency_check_ms = m_clock.msecsSinceBoot();
    m_check_low_latency = true;
}
