#ifndef HOST_LINE_HOSTPORT_H
#define HOST_LINE_HOSTPORT_H

#include "host/line/bytechannel.h"
#include "host/line/connection.h"
#include "host/line/linerecorder.h"
#include "runtime/base/clock.h"
#include "runtime/interfaces/abstractdeviceinterface.h"
#include "runtime/interfaces/driversetting.h"

#include <atomic>
#include <memory>

namespace host {

/** The driver's port on a PC, over any ByteChannel.
 *
 *  Threads: readBytes, writeBytes and control belong to the driver's polling
 *  thread. open(), close() and lastError() belong to whoever made the port, before
 *  the driver's first access and after its end. Everything else may be called from
 *  any thread: the settings stay as they were given, station and state are
 *  atomic. cancel() makes the polling thread's present wait end at once. */
class HostPort : public AbstractDeviceInterface {
public:
    /** @p log receives the changes of the line's state, @p frame_trace (may be
     *  null) every frame; both, and the clock, outlive the port. */
    HostPort(std::unique_ptr<ByteChannel> channel, const DeviceSetting& device,
             const DriverSetting& driver, LineLog log, trace::FrameTrace* frame_trace = nullptr,
             Clock& clock = Clock::system());

    /** One attempt now; on failure lastError() gives the reason with the port's
     *  name. Not needed: writeBytes opens a closed port. */
    bool open() override;
    void close() override;

    /** Ends the present and all later waits; the port is of no use afterwards. */
    void cancel();

    int readBytes(char* buffer, int max) override;

    /** Opens the line first if it is closed or lost, which takes at most one
     *  response timeout: an exchange on a dead line lasts as long as one with a
     *  dead controller. Returns @p length, or 0 when nothing was sent. */
    int writeBytes(const char* buffer, int length) override;

    /** DiscardReceived throws away what has been received. When the exchange before it
     *  brought no complete line, the rest of a late reply may be under way, and
     *  the frames name only the station: so it first waits until the line has been
     *  quiet for quietMsecs(), at most one response timeout. Other codes do
     *  nothing. */
    void control(int code, QVariant argument) override;

    const DeviceSetting* deviceSetting() override { return &m_device; }
    const DriverSetting* driverSetting() override { return &m_driver; }
    bool isOpen() override { return m_connection.isOpen(); }
    bool hasError() override { return !m_connection.isOpen(); }

    /** Why open() failed, with the port's name. */
    QString lastError() override;

    void setStationId(int station) override { m_station = station; }
    int stationId() override { return m_station; }
    int responseTimeout() override { return m_driver.timeout; }
    unsigned retryCount() override { return unsigned(m_driver.retry); }
    unsigned frameInterval() override { return unsigned(m_driver.delay); }

    /** The longer of 3.5 characters of this port and 20 ms. */
    int quietMsecs() const;

    LineStatistics statistics() const { return m_recorder.statistics(); }

    /** As LineRecorder: when @p station last answered without a fault; -1: never. */
    qint64 lastGoodReplyUsecs(int station) const { return m_recorder.lastGoodReplyUsecs(station); }

private:
    void awaitQuiet();

    const DeviceSetting m_device;
    const DriverSetting m_driver;
    const std::unique_ptr<ByteChannel> m_channel;
    Connection m_connection;
    LineRecorder m_recorder;
    std::atomic<int> m_station;
    QString m_open_error; // of the last open()
};

} // namespace host

#endif
