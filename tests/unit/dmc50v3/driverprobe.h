#ifndef TESTS_UNIT_DMC50V3_DRIVERPROBE_H
#define TESTS_UNIT_DMC50V3_DRIVERPROBE_H

#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"
#include "runtime/drivers/dmc50v3/dmc50v3.h"

/** What the tests look at inside a driver. */
class DriverProbe {
public:
    explicit DriverProbe(DriverDMC50v3& driver) : m_driver(driver) {}

    AddressVectorMap& validAddresses() { return m_driver.m_valid_addresses_map; }
    const std::set<quint8>& lowLatencyStations() const { return m_driver.m_low_latency_stations; }
    QStringList programAddresses() const { return m_driver.m_rcp_data_command_addr_list; }
    QList<CommunicatorCommand> keptSession() const { return m_driver.m_session_commands; }
    AddressVector commAddresses() const { return m_driver.m_comm_addresses; }
    UCharVector dataIndexes() const { return m_driver.m_data_indexes; }
    quint8 defaultStation() const { return m_driver.m_default_station_id; }
    QString connectionName() const { return m_driver.m_connection_name; }
    CSVImExporter* exporter() const { return m_driver.m_csv_im_exporter; }
    void setExporter(CSVImExporter* exporter) { m_driver.m_csv_im_exporter = exporter; }
    bool isProgramReading() const { return m_driver.m_program_reading; }
    bool isDatabaseOpened() const { return m_driver.m_db_opened; }
    bool debugMode() const { return m_driver.m_debug_mode; }
    PollingThread* thread() { return m_driver.m_thread.get(); }
    /** In place of the one that the first access would make and start. */
    void setThread(PollingThread* thread) { m_driver.m_thread.reset(thread); }
    void createThread(AbstractDeviceInterface* port) { m_driver.createThread(port); }
    bool writeDWords(quint8 station_id, quint32 start, const QByteArray& dwords) {
        return m_driver.writeDWords(station_id, start, dwords);
    }

private:
    DriverDMC50v3& m_driver;
};

#endif
