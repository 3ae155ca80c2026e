// What the driver learns from the panel project's database.
#include "runtime/base/fatal.h"
#include "runtime/drivers/addresstext.h"
#include "runtime/drivers/dmc50v3/dmc50v3.h"
#include "runtime/drivers/dmc50v3/validaddresses.h"
#include "runtime/drivers/projectdatabase.h"

#include <QDebug>
#include <QSqlQuery>
#include <QVariant>

#include <cstdio>

namespace {

bool openNewConnection(const QString& name) {
    QSqlDatabase database = QSqlDatabase::addDatabase(QString::fromLatin1("QSQLITE"), name);
    database.setDatabaseName(GetDatabaseName());
    database.setConnectOptions(QString::fromLatin1("QSQLITE_OPEN_READONLY"));
    return database.open();
}

} // namespace

bool DriverDMC50v3::readDB(const QString& device_text) {
    if (m_db_loaded)
        return true;
    if (!m_db_opened)
        m_db_opened = createDBConnection();
    if (!m_db_opened) {
        setCommError(QString::fromLatin1("can not open database"));
        return false;
    }
    int link_id = 0;
    if (!getLinkIdAndDefaultStationId(DevStrToHmiPort(device_text), link_id,
                                      m_default_station_id)) {
        setCommError(QString::fromLatin1("failed to get default station id"));
        return false;
    }
    if (!initValidAddressesMap(link_id, m_default_station_id)) {
        setCommError(QString::fromLatin1("failed to initialize valid addresses table"));
        return false;
    }
    m_db_loaded = true;
    QSqlDatabase::database(m_connection_name, false).close();
    m_db_opened = false;
    return true;
}

bool DriverDMC50v3::createDBConnection() {
    if (QSqlDatabase::contains(m_connection_name))
        return true;
    if (openNewConnection(m_connection_name))
        return true;
    // A connection that stayed would pass for an opened one at the next access,
    // which would then fail in the next step, and would keep a path that was right
    // only while there was no folder. So the next access opens anew.
    QSqlDatabase::removeDatabase(m_connection_name);
    return false;
}

bool DriverDMC50v3::getLinkIdAndDefaultStationId(int hmi_port, int& link_id, uchar& station_id) {
    return GetLinkIdAndDefaultStationId(m_connection_name, hmi_port, link_id, station_id);
}

bool DriverDMC50v3::initValidAddressesMap(int link_id, quint8 default_station) {
    QSqlQuery query(QSqlDatabase::database(m_connection_name));
    query.setForwardOnly(true);
    query.exec(QString::fromLatin1("SELECT address FROM custom_tag_table WHERE connector_id = ") +
               QString::number(link_id) +
               QString::fromLatin1(" AND address NOT LIKE '%INITDRV0' AND address NOT LIKE "
                                   "'WRITE_QUE_SIZE%' AND address NOT LIKE 'VVT_%';"));
    if (!query.isActive())
        return false;
    ValidAddresses valid;
    while (query.next())
        valid.addTag(query.value(0).toString(), default_station);
    valid.sort();
    m_valid_addresses_map.swap(valid.stations);
    m_low_latency_stations.insert(valid.low_latency.begin(), valid.low_latency.end());
    m_rcp_data_command_addr_list += valid.program_addresses;
    return true;
}

void DriverDMC50v3::dumpValidAddrMap() const {
    const auto it = m_valid_addresses_map.find(1);
    FATAL_CHECK(m_valid_addresses_map.end() != it, "m_valid_addresses_map.end() != it");
    qDebug("dumpValidAddrMap----------");
    for (quint32 address : it->second)
        qDebug("%08X", address);
}

void DriverDMC50v3::dumpCommAddressesAndDataIndexes() const {
    QMutexLocker lock(&m_scratch_mutex);
    qDebug("dumpCommAddressesAndDataIndexes---");
    for (std::size_t i = 0; i < m_comm_addresses.size(); ++i)
        qDebug("%08X, %u", m_comm_addresses[i], unsigned(m_data_indexes[i]));
}
