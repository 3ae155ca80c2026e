#ifndef RUNTIME_DRIVERS_DMC50V3_DMC50V3_H
#define RUNTIME_DRIVERS_DMC50V3_DMC50V3_H

#include "runtime/base/clock.h"
#include "runtime/base/qtcompat.h"
#include "runtime/drivers/polling/addressvector.h"
#include "runtime/interfaces/communicatorcommand.h"
#include "runtime/interfaces/driverinterface.h"

#include <QList>
#include <QMutex>
#include <QObject>
#include <QStringList>

#include <atomic>
#include <memory>
#include <set>

class CSVImExporter;
class PollingThread;

/** The plug-in's root object: the host's view of the DMC50 controllers on one
 *  serial link.
 *
 *  The host's communication thread calls it; while programs are transferred the
 *  exporter's thread also calls read, write, readDWords and parseAddrStr. It
 *  never touches the port itself: the polling thread does. */
class DriverDMC50v3 : public QObject, public DriverInterface {
    Q_OBJECT
    Q_INTERFACES(DriverInterface)
    PANEL_PLUGIN_METADATA("com.halvoric.drivers.DriverInterface/1.1")

public:
    explicit DriverDMC50v3(Clock& clock = Clock::system());
    /** Stops the polling thread and waits for it without limit. The exporter
     *  stays: it lives to the end of the process. A transfer that runs ends
     *  without touching this object again. */
    ~DriverDMC50v3() override;

    // DriverInterface, in the host's order.
    int totalSize() override;
    bool write(AbstractDeviceInterface* port, const CommunicatorCommand& command,
               const QByteArray& data) override;
    QByteArray read(AbstractDeviceInterface* port, const CommunicatorCommand& command) override;
    bool initialize(AbstractDeviceInterface* port) override;
    bool validation(const QString& address) override;
    QString name() override;
    QString vender() override;
    QString getVersionNumber() override;
    DeviceSetting* getDefaultSerialDeviceSetting() override;
    DriverSetting* getDefaultDriverSetting() override;
    QString getStringBasedDefaultDriverSetting() override;
    int supportedCommunicationFlags() override;
    void setDebugMode(bool on) override;
    int getBlockAccessSize() override;
    int getBitBlockAccessSize() override;
    bool hasError() override;
    QString getLastError() override;
    QObject* getThisObject() override;
    bool isSupportSessionCommand() override;
    void setSessionCommand(QList<CommunicatorCommand> commands) override;
    void clearSessionCommand() override;

    /** The driver's own error, beside the polling thread's. @{ */
    void setCommError(const QString& text);
    /** The text stays. */
    void clearError();
    /** Puts @p text before the error's text, unless that holds a ":". */
    void addStrToFrontOfErrorDescription(const QString& text);
    /** @} */

    /** Double-word address of a tag without station prefix; a malformed text ends
     *  the program. */
    quint32 parseAddrStr(const QString& text) const;
    /** The same for a bit tag; @p bit may lie beyond the double word. True. */
    bool parseBitAddr(const QString& text, quint32& address, quint32& bit) const;

    /** @p count double words from @p start, 4 bytes each with the least
     *  significant first; addresses that the project does not use read as 0.
     *  Empty on a communication failure. A station that the project does not
     *  know, or a range without any address of it, ends the program; so does a
     *  range of exactly 256 double words, since only the low 8 bits of the count
     *  are looked at. */
    QByteArray readDWords(quint8 station_id, quint32 start, quint32 count);

    /** Set by the exporter while it reads programs: ordinary reads then fail. */
    void setProgramReading(bool reading) { m_program_reading = reading; }

    // The project database (dmc50v3_database.cpp).
    bool readDB(const QString& device_text);
    bool createDBConnection();
    /** Both outputs stay untouched when there is no such link. */
    bool getLinkIdAndDefaultStationId(int hmi_port, int& link_id, uchar& station_id);
    bool initValidAddressesMap(int link_id, quint8 default_station);
    /** Debug output of station 1's addresses; always station 1. */
    void dumpValidAddrMap() const;
    /** Fills the scratch vectors with those of @p count addresses from @p start
     *  that @p valid_addresses holds. Returns how many. */
    int getCommAddressesAndDataIndexes(quint32 start, quint8 count,
                                       const AddressVector& valid_addresses);
    void dumpCommAddressesAndDataIndexes() const;

private:
    friend class DriverProbe; // the tests' door to the members

    enum SpecialTag { NoSpecialTag, IgnoredTag, WriteQueueSizeTag, TransferTag };
    static SpecialTag specialTag(const QString& address);

    bool prepare(AbstractDeviceInterface* port);
    void createThread(AbstractDeviceInterface* port);

    // The transfer of programs (dmc50v3_transfer.cpp).
    CSVImExporter& exporter(AbstractDeviceInterface* port);
    QByteArray readTransferTag(AbstractDeviceInterface* port, const CommunicatorCommand& command);
    void writeTransferTag(AbstractDeviceInterface* port, const CommunicatorCommand& command,
                          const QByteArray& data);
    void stopThread();

    QByteArray readController(AbstractDeviceInterface* port, const CommunicatorCommand& command);
    QByteArray readBits(quint8 station_id, const QString& address, int count);
    QByteArray writeQueueSize(AbstractDeviceInterface* port, const CommunicatorCommand& command);

    bool writeController(AbstractDeviceInterface* port, const CommunicatorCommand& command,
                         const QByteArray& data);
    bool writeOnce(quint8 station_id, const CommunicatorCommand& command, const QByteArray& data,
                   bool& supported);
    bool writeBits(quint8 station_id, const QString& address, const QByteArray& data, int count);
    bool writeDWords(quint8 station_id, quint32 start, const QByteArray& dwords);
    const AddressVector& stationAddresses(quint8 station_id) const;
    int collectCommAddresses(quint32 start, quint8 count, const AddressVector& valid_addresses);

    Clock& m_clock; // constant after construction

    std::atomic<bool> m_has_error;
    bool m_debug_mode;
    bool m_db_opened; // host's thread only
    std::atomic<bool> m_db_loaded;
    quint8 m_default_station_id;
    const QString m_connection_name; // of this driver's SQL connection
    QString m_error_description;     // host's thread only

    AddressVectorMap m_valid_addresses_map; // constant once m_db_loaded
    QStringList m_rcp_data_command_addr_list;
    std::set<quint8> m_low_latency_stations; // until the polling thread has them

    mutable QMutex m_scratch_mutex; // guards the two scratch vectors
    AddressVector m_comm_addresses;
    UCharVector m_data_indexes;

    std::unique_ptr<PollingThread> m_thread;       // made on first use, constant from then on
    QList<CommunicatorCommand> m_session_commands; // until the polling thread has them
    CSVImExporter* m_csv_im_exporter;              // made on first use; never deleted
    std::atomic<bool> m_program_reading;
};

#endif
