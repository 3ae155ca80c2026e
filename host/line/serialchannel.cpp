#include "host/line/serialchannel.h"

#include <QFileInfo>
#include <QSerialPort>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace host {

namespace {

constexpr unsigned ForeignGroup = 65534; // any that has no name in this name space

QSerialPort::Parity parityOf(int code) {
    switch (code) {
    case DeviceSetting::OddParity:
        return QSerialPort::OddParity;
    case DeviceSetting::EvenParity:
        return QSerialPort::EvenParity;
    default:
        return QSerialPort::NoParity;
    }
}

/** A pty has neither speed nor frame. The kernel ignores a parity and refuses it
 *  when that leaves nothing else to change. */
bool isPseudoTerminal(const QString& path) {
    constexpr unsigned FirstSlaveMajor = 136;
    constexpr unsigned LastSlaveMajor = 143;
    struct stat status = {};
    return stat(qPrintable(path), &status) == 0 && S_ISCHR(status.st_mode) &&
           major(status.st_rdev) >= FirstSlaveMajor && major(status.st_rdev) <= LastSlaveMajor;
}

} // namespace

SerialChannel::SerialChannel(const QString& path, const DeviceSetting& setting)
    : DescriptorChannel(path), m_setting(setting) {}

SerialChannel::~SerialChannel() = default;

bool SerialChannel::configure(QSerialPort& port) const {
    const bool set =
        port.setBaudRate(m_setting.baudrate) && port.setFlowControl(QSerialPort::NoFlowControl);
    if (!set || isPseudoTerminal(name()))
        return set;
    return port.setDataBits(QSerialPort::DataBits(m_setting.databits)) &&
           port.setParity(parityOf(m_setting.parity)) &&
           port.setStopBits(m_setting.stopbits == DeviceSetting::OneStopBit ? QSerialPort::OneStop
                                                                            : QSerialPort::TwoStop);
}

Result<void> SerialChannel::open() {
    close();
    auto port = std::make_unique<QSerialPort>(name());
    if (!configure(*port) || !port->open(QIODevice::ReadWrite))
        return Failure(openFailure(*port));
    // Locked and set up by QSerialPort, used through its descriptor: the port
    // may then be used from any one thread, with or without an event loop. Its
    // notifier would take bytes away wherever a loop runs, so it is left without
    // a thread.
    port->moveToThread(nullptr);
    setDescriptor(port->handle());
    m_port = std::move(port);
    return {};
}

void SerialChannel::close() {
    setDescriptor(-1);
    m_port.reset();
}

QString SerialChannel::openFailure(const QSerialPort& port) const {
    const QFileInfo file(name());
    if (!file.exists())
        return QString::fromLatin1("no such device");
    if (faccessat(AT_FDCWD, qPrintable(name()), R_OK | W_OK, AT_EACCESS) != 0)
        return file.groupId() == ForeignGroup
                   ? QString::fromLatin1("permission denied; the device's group may use it")
                   : QString::fromLatin1("permission denied; the group %1 may use it")
                         .arg(file.group());
    const bool lock_failed = port.errorString().contains(QLatin1String("creating lock file"));
    if (port.error() == QSerialPort::PermissionError && !lock_failed)
        return QString::fromLatin1("in use by another program");
    return port.errorString();
}

} // namespace host
