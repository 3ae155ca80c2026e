#include "simulator/filedescriptor.h"
#include "simulator/lineport.h"

#include <QFileInfo>
#include <QSerialPort>

namespace simulator {

namespace {

/** QSerialPort sets the device up and owns it; bytes go past its buffers, which
 *  need an event loop. */
class SerialPort : public LinePort {
public:
    SerialPort(const QString& device, int baud) : m_device(device), m_baud(baud) {}

    Result<void> open() override;
    void close() override { m_port.reset(); }
    bool isOpen() const override { return m_port != nullptr; }
    QString path() const override { return m_device; }
    QByteArray read(int timeout_ms) override;
    void write(const QByteArray& bytes) override { writeAvailable(m_port->handle(), bytes); }

private:
    bool configure();

    const QString m_device;
    const int m_baud;
    std::unique_ptr<QSerialPort> m_port;
};

Result<void> SerialPort::open() {
    m_port = std::make_unique<QSerialPort>(m_device);
    if (m_port->open(QIODevice::ReadWrite) && configure())
        return {};
    const Failure failure(m_device + QLatin1String(": ") + m_port->errorString());
    m_port.reset();
    return failure;
}

bool SerialPort::configure() {
    // A pseudo-terminal, which people use in place of a device, refuses parity.
    const bool has_parity =
        !QFileInfo(m_device).canonicalFilePath().startsWith(QLatin1String("/dev/pts/"));
    return m_port->setBaudRate(m_baud) && m_port->setDataBits(QSerialPort::Data8) &&
           (!has_parity || m_port->setParity(QSerialPort::EvenParity)) &&
           m_port->setStopBits(QSerialPort::OneStop);
}

QByteArray SerialPort::read(int timeout_ms) {
    if (!waitForInput(m_port->handle(), timeout_ms))
        return QByteArray();
    bool at_end = false;
    const QByteArray bytes = readAvailable(m_port->handle(), at_end);
    if (at_end)
        m_port.reset();
    return bytes;
}

} // namespace

std::unique_ptr<LinePort> makeSerialPort(const QString& device, int baud) {
    return std::make_unique<SerialPort>(device, baud);
}

} // namespace simulator
