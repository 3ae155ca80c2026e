// The exporter's calls of the driver and the port. Each holds a pass of the
// gate, so that neither goes away under it.
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"

#include "runtime/drivers/dmc50v3/dmc50v3.h"
#include "runtime/interfaces/abstractdeviceinterface.h"

#include <QtEndian>

QByteArray CSVImExporter::readProgram(const CommunicatorCommand& command) {
    const DriverGate::Pass pass(m_driver_gate);
    if (!pass.isGranted())
        return QByteArray();
    const quint8 station_id = quint8(m_device->stationId());
    const quint32 double_words = quint32(command.getDataSize() + 3) / 4;
    return m_driver->readDWords(station_id, m_driver->parseAddrStr(command.address()),
                                double_words);
}

bool CSVImExporter::writeProgram(const CommunicatorCommand& command, const QByteArray& image) {
    const DriverGate::Pass pass(m_driver_gate);
    if (pass.isGranted())
        m_driver->write(m_device, command, image); // a refused write shows in the queue
    return pass.isGranted();
}

/** The pairs that wait for the port's station. False when the driver has gone. */
bool CSVImExporter::readWriteQueueSize(quint32& size) {
    const DriverGate::Pass pass(m_driver_gate);
    if (!pass.isGranted())
        return false;
    const CommunicatorCommand command(QString::fromLatin1("WRITE_QUE_SIZE0"),
                                      CommunicatorCommand::Word, 1);
    QByteArray word = m_driver->read(m_device, command);
    word.resize(2);
    // The word is signed: a queue beyond 32767 pairs counts as an enormous one.
    size = quint32(qFromLittleEndian<qint16>(reinterpret_cast<const uchar*>(word.constData())));
    return true;
}

void CSVImExporter::setProgramReading(bool reading) {
    const DriverGate::Pass pass(m_driver_gate);
    if (pass.isGranted())
        m_driver->setProgramReading(reading);
}
