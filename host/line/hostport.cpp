#include "host/line/hostport.h"

#include <QElapsedTimer>

#include <algorithm>

namespace host {

namespace {

constexpr int ShortestQuietMsecs = 20;

int bitsPerCharacter(const DeviceSetting& device) {
    const int start = 1;
    const int parity = device.parity == DeviceSetting::NoParity ? 0 : 1;
    const int stop = device.stopbits == DeviceSetting::OneStopBit ? 1 : 2;
    return start + device.databits + parity + stop;
}

} // namespace

HostPort::HostPort(std::unique_ptr<ByteChannel> channel, const DeviceSetting& device,
                   const DriverSetting& driver, LineLog log, trace::FrameTrace* frame_trace,
                   Clock& clock)
    : m_device(device)
    , m_driver(driver)
    , m_channel(std::move(channel))
    , m_connection(*m_channel, clock, std::move(log))
    , m_recorder(frame_trace)
    , m_station(driver.stationid) {}

bool HostPort::open() {
    const Result<void> opened = m_connection.open();
    m_open_error = opened ? QString() : opened.error();
    return opened.has_value();
}

void HostPort::close() {
    m_connection.close();
}

QString HostPort::lastError() {
    return QString::fromLatin1("%1: %2").arg(m_channel->name(), m_open_error);
}

void HostPort::cancel() {
    m_channel->cancel();
}

int HostPort::readBytes(char* buffer, int max) {
    if (!m_connection.isOpen())
        return 0;
    const Result<int> count = m_channel->read(buffer, max, m_driver.timeout);
    if (!count) {
        m_connection.lost(count.error());
        return 0;
    }
    if (*count > 0) {
        m_connection.proveWorking();
        m_recorder.bytesReceived(buffer, *count);
    }
    return *count;
}

int HostPort::writeBytes(const char* buffer, int length) {
    if (!m_connection.awaitOpen(m_driver.timeout))
        return 0;
    const Result<void> sent = m_channel->write(buffer, length, m_driver.timeout);
    if (!sent) {
        if (!m_channel->isCancelled())
            m_connection.lost(sent.error());
        return 0;
    }
    m_recorder.requestSent(buffer, length);
    return length;
}

void HostPort::control(int code, QVariant) {
    if (code != DiscardReceived)
        return;
    const bool reply_owed = m_recorder.isReplyOwed();
    m_recorder.exchangeEnded();
    if (!m_connection.isOpen())
        return;
    m_recorder.bytesDiscarded(m_channel->discard());
    if (reply_owed)
        awaitQuiet();
}

void HostPort::awaitQuiet() {
    QElapsedTimer waited;
    waited.start();
    char late[512];
    while (!waited.hasExpired(m_driver.timeout)) {
        const Result<int> count = m_channel->read(late, sizeof late, quietMsecs());
        if (!count)
            m_connection.lost(count.error());
        if (count.value_or(0) < 1)
            return;
        m_recorder.bytesDiscarded(QByteArray(late, *count));
    }
}

int HostPort::quietMsecs() const {
    const qint64 bits_times_two = 7 * bitsPerCharacter(m_device); // of 3.5 characters
    const qint64 baud = std::max(1, m_device.baudrate);
    return int(
        std::max<qint64>(ShortestQuietMsecs, (bits_times_two * 1000 + 2 * baud - 1) / (2 * baud)));
}

} // namespace host
