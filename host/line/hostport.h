#ifndef HOST_LINE_HOSTPORT_H
#define HOST_LINE_HOSTPORT_H

#include "host/line/carefulexchange.h"
#include "host/line/portoptions.h"
#include "runtime/interfaces/abstractdeviceinterface.h"
#include "runtime/interfaces/driversetting.h"

#include <atomic>
#include <map>
#include <memory>

namespace host {

/** The driver's port on a PC, over any ByteChannel. What a request to a silent
 *  station costs is the port's to decide, and so is whether a reply is an answer: see
 *  CarefulExchange, and PatientExchange for a port without care.
 *
 *  Threads: readBytes, writeBytes and control belong to the driver's polling
 *  thread. open(), close() and lastError() belong to whoever made the port, before
 *  the driver's first access and after its end. Everything else may be called from
 *  any thread: the settings stay as they were given, station and state are
 *  atomic. cancel() makes the polling thread's present wait end at once. */
class HostPort : public AbstractDeviceInterface {
public:
    /** @p log receives the changes of the line's state and outlives the port. */
    HostPort(std::unique_ptr<ByteChannel> channel, const DeviceSetting& device,
             const DriverSetting& driver, LineLog log, const PortOptions& options = PortOptions());

    /** Before the driver's first access. */
    void setExchangeSink(ExchangeSink sink) { m_recorder.setSink(std::move(sink)); }

    /** One attempt now; on failure lastError() gives the reason with the port's
     *  name. Not needed: writeBytes opens a closed port. */
    bool open() override;
    void close() override;

    /** Ends the present and all later waits; the port is of no use afterwards. */
    void cancel();

    int readBytes(char* buffer, int max) override;

    /** Opens the line first if it is closed or lost, which takes at most one
     *  response timeout: an exchange on a dead line lasts as long as one with a
     *  dead controller. Returns @p length, also when the request is withheld, or 0
     *  when nothing can be sent. */
    int writeBytes(const char* buffer, int length) override;

    /** DiscardReceived throws away what has been received, and makes sure that nothing
     *  of the exchange before comes into the next. Other codes do nothing. */
    void control(int code, QVariant argument) override;

    const DeviceSetting* deviceSetting() override { return &m_device; }
    const DriverSetting* driverSetting() override { return &m_driver; }
    bool isOpen() override { return m_line.connection().isOpen(); }
    bool hasError() override { return !m_line.connection().isOpen(); }

    /** Why open() failed, with the port's name. */
    QString lastError() override;

    void setStationId(int station) override { m_station = station; }
    int stationId() override { return m_station; }
    int responseTimeout() override { return m_driver.timeout; }
    unsigned retryCount() override { return unsigned(m_driver.retry); }
    unsigned frameInterval() override { return unsigned(m_driver.delay); }

    /** What is known of a station, of all that were asked. Without care their state
     *  stays unknown. @{ */
    StationHealth stationHealth(int station) const { return m_care.health(station); }
    std::map<int, StationHealth> stations() const { return m_care.all(); }
    /** @} */

    /** A person asks for @p station: the next request to it is let through, and no
     *  station about which nothing is known is waited for before that. */
    void askFor(int station);

    LineStatistics statistics() const { return m_recorder.statistics(); }

    /** As LineRecorder: when @p station last answered without a fault; -1: never. */
    qint64 lastGoodReplyUsecs(int station) const { return m_recorder.lastGoodReplyUsecs(station); }

    /** Now, on the clock of all times above. */
    qint64 usecs() const { return m_usecs(); }

private:
    const DeviceSetting m_device;
    const DriverSetting m_driver;
    const std::function<qint64()> m_usecs;
    RawLine m_line;
    LineRecorder m_recorder;
    StationCare m_care;
    PatientExchange m_patient;
    CarefulExchange m_careful;
    ExchangePolicy& m_policy; // one of the two
    std::atomic<int> m_station;
    QString m_open_error; // of the last open()
};

} // namespace host

#endif
