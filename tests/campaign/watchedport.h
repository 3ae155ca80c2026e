#ifndef TESTS_CAMPAIGN_WATCHEDPORT_H
#define TESTS_CAMPAIGN_WATCHEDPORT_H

#include "runtime/interfaces/abstractdeviceinterface.h"
#include "tests/campaign/virtualtime.h"

namespace campaign {

/** One exchange as the driver sees it. Times are microseconds. */
struct SeenExchange {
    QByteArray request;
    QByteArray reply;
    qint64 sent = 0; // when this request was first sent: repetitions do not count
    qint64 done = 0;
};

/** Told of every step of every exchange, on the polling thread. */
class ExchangeWatcher {
public:
    virtual ~ExchangeWatcher() = default;
    virtual void beginning() = 0;
    virtual void requested(const QByteArray& request) = 0;
    /** Returns whether the driver will take the reply for good. */
    virtual bool replied(const SeenExchange& exchange) = 0;
};

/** Stands between the driver and its port. */
class WatchedPort : public AbstractDeviceInterface {
public:
    WatchedPort(AbstractDeviceInterface& port, const VirtualTime& time, ExchangeWatcher& watcher)
        : m_port(port), m_time(time), m_watcher(watcher) {}

    int readBytes(char* buffer, int max) override;
    int writeBytes(const char* buffer, int length) override;
    void control(int code, QVariant argument) override;
    const DeviceSetting* deviceSetting() override { return m_port.deviceSetting(); }
    const DriverSetting* driverSetting() override { return m_port.driverSetting(); }
    int responseTimeout() override { return m_port.responseTimeout(); }
    unsigned retryCount() override { return m_port.retryCount(); }
    void setStationId(int station) override { m_port.setStationId(station); }
    int stationId() override { return m_port.stationId(); }
    unsigned frameInterval() override { return m_port.frameInterval(); }

private:
    void endReply();

    AbstractDeviceInterface& m_port;
    const VirtualTime& m_time;
    ExchangeWatcher& m_watcher;
    SeenExchange m_exchange;
    bool m_failed = false; // the last exchange
};

} // namespace campaign

#endif
