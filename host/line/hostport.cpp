#include "host/line/hostport.h"

#include <algorithm>
#include <cstring>

namespace host {

namespace {

constexpr int ShortestIntervalMsecs = 10; // that the driver leaves between frames

ExchangeTiming exchangeTiming(const DriverSetting& driver) {
    return {driver.retry, std::max(driver.delay, ShortestIntervalMsecs)};
}

} // namespace

HostPort::HostPort(std::unique_ptr<ByteChannel> channel, const DeviceSetting& device,
                   const DriverSetting& driver, LineLog log, const PortOptions& options)
    : m_device(device)
    , m_driver(driver)
    , m_usecs(options.usecs)
    , m_line(std::move(channel), *options.clock, std::move(log), driver.timeout)
    , m_recorder(options)
    , m_care(driver.timeout)
    , m_patient(m_line, m_recorder, WireTime(device))
    , m_careful(m_line, m_recorder, m_care, WireTime(device), exchangeTiming(driver), m_usecs)
    , m_policy(options.care ? static_cast<ExchangePolicy&>(m_careful) : m_patient)
    , m_station(driver.stationid) {}

bool HostPort::open() {
    const Result<void> opened = m_line.connection().open();
    m_open_error = opened ? QString() : opened.error();
    return opened.has_value();
}

void HostPort::close() {
    m_line.connection().close();
}

QString HostPort::lastError() {
    return QString::fromLatin1("%1: %2").arg(m_line.name(), m_open_error);
}

void HostPort::cancel() {
    m_line.cancel();
}

int HostPort::readBytes(char* buffer, int max) {
    const QByteArray bytes = m_policy.reply(max);
    std::memcpy(buffer, bytes.constData(), size_t(bytes.size()));
    return bytes.size();
}

int HostPort::writeBytes(const char* buffer, int length) {
    return m_policy.request(QByteArray(buffer, length)) ? length : 0;
}

void HostPort::control(int code, QVariant) {
    if (code == DiscardReceived)
        m_policy.begin();
}

void HostPort::askFor(int station) {
    m_care.askFor(station);
    m_careful.hurry(station);
}

} // namespace host
