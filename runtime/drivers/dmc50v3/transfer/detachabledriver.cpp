#include "runtime/drivers/dmc50v3/transfer/detachabledriver.h"

#include "runtime/drivers/dmc50v3/dmc50v3.h"
#include "runtime/drivers/tools.h"
#include "runtime/interfaces/abstractdeviceinterface.h"

/** Holds a pass of the gate, so that neither driver nor port goes away under it. */
class DetachableDriver::Call {
public:
    explicit Call(DetachableDriver& owner)
        : m_pass(owner.m_gate), m_driver(m_pass.isGranted() ? owner.m_driver : nullptr) {}

    bool isPossible() const { return m_driver != nullptr; }
    DriverDMC50v3* operator->() const { return m_driver; }

private:
    const DriverGate::Pass m_pass;
    DriverDMC50v3* const m_driver; // null: gone
};

DetachableDriver::DetachableDriver() : m_driver(nullptr), m_device(nullptr) {}

void DetachableDriver::attach(DriverDMC50v3* driver, AbstractDeviceInterface* port) {
    m_driver = driver;
    m_device = port;
}

void DetachableDriver::detach() {
    m_gate.close();
}

void DetachableDriver::waitForCalls() {
    m_gate.waitUntilEmpty();
}

bool DetachableDriver::isGone() {
    return !Call(*this).isPossible();
}

QByteArray DetachableDriver::readProgram(const CommunicatorCommand& command) {
    const Call driver(*this);
    if (!driver.isPossible())
        return QByteArray();
    const quint8 station_id = quint8(m_device->stationId());
    return driver->readDWords(station_id, driver->parseAddrStr(command.address()),
                              quint32(NumOfBytesToNumOfDWords(quint32(command.getDataSize()))));
}

void DetachableDriver::writeProgram(const CommunicatorCommand& command, const QByteArray& image) {
    const Call driver(*this);
    if (driver.isPossible())
        driver->write(m_device, command, image);
}

bool DetachableDriver::readWriteQueueSize(quint32& size) {
    const Call driver(*this);
    if (!driver.isPossible())
        return false;
    const CommunicatorCommand command(QString::fromLatin1("WRITE_QUE_SIZE0"),
                                      CommunicatorCommand::Word, 1);
    size = quint32(QByteArrayToShort(driver->read(m_device, command)));
    return true;
}

void DetachableDriver::setProgramReading(bool reading) {
    const Call driver(*this);
    if (driver.isPossible())
        driver->setProgramReading(reading);
}
