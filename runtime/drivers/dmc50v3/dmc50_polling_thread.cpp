#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"

#include "runtime/base/fatal.h"
#include "runtime/drivers/dmc50v3/sessioncommands.h"
#include "runtime/interfaces/communicatorcommand.h"

namespace {

const quint32 IdlePauseMsecs = 10;

AbstractDeviceInterface& checkedPort(AbstractDeviceInterface* port) {
    FATAL_CHECK(port != nullptr, "m_interface != 0");
    return *port;
}

} // namespace

PollingThread::PollingThread(AbstractDeviceInterface* port, const AddressVectorMap* valid_addresses,
                             quint8 default_station_id, Clock& clock)
    : m_valid_addresses_map(valid_addresses)
    , m_clock(clock)
    , m_default_station_id(default_station_id)
    , m_settings(checkedPort(port))
    , m_data(clock, m_error, m_requests, m_settings.waitBudgetMsecs())
    , m_write_queue(m_error)
    , m_line(*port, clock, m_settings.frame_interval_ms, m_error)
    , m_reader(m_line, m_error)
    , m_writer(m_line, m_error, m_write_queue, m_settings.retries)
    , m_fetcher(m_reader, m_data, m_requests, m_settings.retries)
    , m_scan(m_reader, m_writer, m_data, m_requests, m_settings.retries)
    , m_low_latency(clock, m_line, m_error, m_write_queue) {
    FATAL_CHECK(m_valid_addresses_map, "m_valid_addresses_map");
    FATAL_CHECK(m_default_station_id > 0, "m_default_station_id > 0");
}

void PollingThread::run() {
    m_low_latency.start();
    while (!m_requests.isStopped())
        cycle();
}

void PollingThread::cycle() {
    takeOverSession();
    m_writer.sendAll();
    m_low_latency.checkWhenDue();
    const bool idle = m_scan.run(m_cache_addresses);
    const bool fetching = !m_data.queue().isEmpty();
    if (fetching)
        m_fetcher.fetchAll();
    m_low_latency.renewWhenDue();
    if (idle && !fetching) {
        m_error.clear();
        m_clock.sleepMsecs(IdlePauseMsecs);
    }
}

/** The flags are cleared first: a session that is set meanwhile is not lost. */
void PollingThread::takeOverSession() {
    if (!(getFlag() & NewSession))
        return;
    clearFlag(NewSession | ClearedSession);
    m_cache_addresses.clear();
    m_session.mergeInto(m_cache_addresses);
    m_data.cache().clear();
}

void PollingThread::setSessionCommand(const QList<CommunicatorCommand>& commands) {
    m_session.replace(addressesOfSession(commands, *m_valid_addresses_map, m_default_station_id));
    setFlag(NewSession);
}

bool PollingThread::parseAddrStr(const QString& text, quint32& address, quint8& station_id) const {
    parseSessionAddress(text, m_default_station_id, address, station_id);
    return true;
}
