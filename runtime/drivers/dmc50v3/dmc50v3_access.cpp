// How the host's reads and writes of tags become double words, and back.
#include "runtime/base/fatal.h"
#include "runtime/drivers/dmc50v3/addresssyntax.h"
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"
#include "runtime/drivers/dmc50v3/dmc50v3.h"
#include "runtime/drivers/tools.h"
#include "runtime/interfaces/abstractdeviceinterface.h"

#include <algorithm>

namespace {

const int DWordSize = 4;

bool startsWith(const QString& address, const char* prefix) {
    return address.startsWith(QLatin1String(prefix), Qt::CaseInsensitive);
}

/** The host's counts are signed; none is asked for by a negative one. */
quint32 unsignedCount(int count) {
    return quint32(std::max(count, 0));
}

quint8 portStation(AbstractDeviceInterface* port) {
    return quint8(port->stationId());
}

bool isBits(int data_type) {
    return data_type == CommunicatorCommand::Bit || data_type == CommunicatorCommand::BitBlock;
}

bool isDWordImage(int data_type) {
    return data_type == CommunicatorCommand::Byte || data_type == CommunicatorCommand::Word ||
           data_type == CommunicatorCommand::DoubleWord || data_type == CommunicatorCommand::Block;
}

} // namespace

quint32 DriverDMC50v3::parseAddrStr(const QString& text) const {
    TagAddress tag;
    const bool well_formed = TagAddress::parse(text, tag) && !tag.has_station;
    FATAL_CHECK(well_formed, "0");
    return tag.address;
}

bool DriverDMC50v3::parseBitAddr(const QString& text, quint32& address, quint32& bit) const {
    TagAddress tag;
    const bool well_formed = TagAddress::parse(text, tag) && !tag.has_station && tag.has_bit;
    FATAL_CHECK(well_formed, "0");
    address = tag.address;
    bit = tag.bit;
    return true;
}

DriverDMC50v3::SpecialTag DriverDMC50v3::specialTag(const QString& address) {
    if (startsWith(address, "INITDRV") || startsWith(address, "LOWLATENCY"))
        return IgnoredTag;
    if (startsWith(address, "VVT_"))
        return TransferTag;
    if (startsWith(address, "WRITE_QUE_SIZE"))
        return WriteQueueSizeTag;
    return NoSpecialTag;
}

bool DriverDMC50v3::prepare(AbstractDeviceInterface* port) {
    if (!m_db_loaded && !readDB(port->deviceSetting()->string))
        return false;
    if (!m_thread)
        createThread(port);
    return true;
}

void DriverDMC50v3::createThread(AbstractDeviceInterface* port) {
    m_thread.reset(new PollingThread(port, &m_valid_addresses_map, m_default_station_id, m_clock));
    if (!m_session_commands.isEmpty())
        m_thread->setSessionCommand(m_session_commands);
    m_session_commands.clear();
    if (!m_low_latency_stations.empty())
        m_thread->setLowLatency(m_low_latency_stations);
    m_low_latency_stations.clear();
    m_thread->start();
}

QByteArray DriverDMC50v3::read(AbstractDeviceInterface* port, const CommunicatorCommand& command) {
    if (!prepare(port))
        return QByteArray();
    switch (specialTag(command.address())) {
    case IgnoredTag:
        return QByteArray(command.getDataSize(), '\0');
    case TransferTag:
        return readTransferTag(port, command);
    case WriteQueueSizeTag:
        return writeQueueSize(port, command);
    case NoSpecialTag:
        break;
    }
    if (m_program_reading)
        return QByteArray();
    clearError();
    return readController(port, command);
}

/** Pairs that wait for the port's station, as a 16-bit number. */
QByteArray DriverDMC50v3::writeQueueSize(AbstractDeviceInterface* port,
                                         const CommunicatorCommand& command) {
    const int size = m_thread->getAddrArgQueueSize(portStation(port));
    const QByteArray word = wordToByteArray(quint16(size));
    QByteArray data(command.getDataSize(), '\0');
    return data.replace(0, std::min(word.size(), data.size()), word.left(data.size()));
}

QByteArray DriverDMC50v3::readController(AbstractDeviceInterface* port,
                                         const CommunicatorCommand& command) {
    if (isBits(command.dataType()))
        return readBits(portStation(port), command.address(), command.count());
    if (!isDWordImage(command.dataType()))
        return QByteArray();
    const quint32 start = parseAddrStr(command.address());
    const int size = command.getDataSize();
    QByteArray data =
        readDWords(portStation(port), start, quint32(NumOfBytesToNumOfDWords(std::max(size, 0))));
    if (!data.isEmpty())
        data.resize(size);
    return data;
}

QByteArray DriverDMC50v3::readBits(quint8 station_id, const QString& address, int count) {
    quint32 start = 0, bit = 0;
    const bool rc = parseBitAddr(address, start, bit);
    FATAL_CHECK(rc, "rc");
    QByteArray data =
        readDWords(station_id, start, quint32(NumOfBitsToNumOfDWords(bit, unsignedCount(count))));
    if (data.isEmpty())
        return data;
    RightShiftNBits(data, bit);
    FitBitArray(data, unsignedCount(count));
    clearUnnecessaryBits(data, unsignedCount(count));
    return data;
}

const AddressVector& DriverDMC50v3::stationAddresses(quint8 station_id) const {
    const auto it = m_valid_addresses_map.find(station_id);
    FATAL_CHECK(it != m_valid_addresses_map.end(), "it != m_valid_addresses_map.end()");
    return it->second;
}

int DriverDMC50v3::getCommAddressesAndDataIndexes(quint32 start, quint8 count,
                                                  const AddressVector& valid_addresses) {
    QMutexLocker lock(&m_scratch_mutex);
    return collectCommAddresses(start, count, valid_addresses);
}

int DriverDMC50v3::collectCommAddresses(quint32 start, quint8 count,
                                        const AddressVector& valid_addresses) {
    m_comm_addresses.clear();
    m_data_indexes.clear();
    for (quint8 i = 0; i < count; ++i) {
        if (SearchIndex(valid_addresses, start + i) < 0)
            continue;
        m_comm_addresses.push_back(start + i);
        m_data_indexes.push_back(i);
    }
    return int(m_comm_addresses.size());
}

QByteArray DriverDMC50v3::readDWords(quint8 station_id, quint32 start, quint32 count) {
    AddressVector addresses, once_addresses;
    UCharVector indexes, once_indexes;
    {
        QMutexLocker lock(&m_scratch_mutex);
        const int rc = collectCommAddresses(start, quint8(count), stationAddresses(station_id));
        FATAL_CHECK(rc > 0, "rc > 0");
        addresses = m_comm_addresses;
        indexes = m_data_indexes;
    }
    QByteArray result(DWordSize * int(count), '\0');
    FATAL_CHECK(m_thread.get() != nullptr, "m_thread.get()");
    bool ok = m_thread->readDataCacheMap(station_id, addresses, indexes, result, once_addresses,
                                         once_indexes);
    if (ok && !once_addresses.empty())
        ok = m_thread->readOnceData(station_id, result, once_addresses, once_indexes);
    return ok ? result : QByteArray();
}

bool DriverDMC50v3::write(AbstractDeviceInterface* port, const CommunicatorCommand& command,
                          const QByteArray& data) {
    if (!prepare(port))
        return false;
    switch (specialTag(command.address())) {
    case IgnoredTag:
    case WriteQueueSizeTag:
        return true;
    case TransferTag:
        writeTransferTag(port, command, data);
        return true;
    case NoSpecialTag:
        break;
    }
    return writeController(port, command, data);
}

/** A write while the line is in error is accepted and dropped: the host does not
 *  see write failures of a link that is already down. */
bool DriverDMC50v3::writeController(AbstractDeviceInterface* port,
                                    const CommunicatorCommand& command, const QByteArray& data) {
    bool result = true;
    for (int attempt = 0;; ++attempt) {
        clearError();
        if (hasError())
            return result;
        bool supported = true;
        result = writeOnce(portStation(port), command, data, supported);
        if (result || !supported || attempt >= int(port->retryCount()))
            return result;
    }
}

bool DriverDMC50v3::writeOnce(quint8 station_id, const CommunicatorCommand& command,
                              const QByteArray& data, bool& supported) {
    if (isBits(command.dataType()))
        return writeBits(station_id, command.address(), data, command.count());
    supported = isDWordImage(command.dataType());
    if (!supported)
        return false;
    return writeDWords(station_id, parseAddrStr(command.address()),
                       To32bitsData(ToSafeData(command, data)));
}

bool DriverDMC50v3::writeBits(quint8 station_id, const QString& address, const QByteArray& data,
                              int count) {
    quint32 start = 0, bit = 0;
    parseBitAddr(address, start, bit);
    const quint32 bits = unsignedCount(count);
    QByteArray current = readDWords(station_id, start, quint32(NumOfBitsToNumOfDWords(bit, bits)));
    if (current.isEmpty())
        return false;
    CopyBits(current, data, bit, bits);
    return writeDWords(station_id, start, current);
}

bool DriverDMC50v3::writeDWords(quint8 station_id, quint32 start, const QByteArray& dwords) {
    FATAL_CHECK(dwords.size() > 0 && dwords.size() % DWordSize == 0,
                "dwords.size() > 0 && dwords.size()%4==0");
    const AddressVector& valid_addresses = stationAddresses(station_id);
    std::vector<AddrArg> args;
    for (int i = 0; i < dwords.size() / DWordSize; ++i) {
        const quint32 address = start + quint32(i);
        if (SearchIndex(valid_addresses, address) < 0)
            continue;
        const AddrArg arg = {address,
                             quint32(QByteArrayToInt(dwords.mid(DWordSize * i, DWordSize)))};
        args.push_back(arg);
    }
    FATAL_CHECK(m_thread.get() != nullptr, "m_thread.get()");
    m_thread->writeDWords(station_id, args); // a refusal is not the host's to see
    return true;
}
