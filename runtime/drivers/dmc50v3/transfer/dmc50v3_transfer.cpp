// How the driver serves the transfer tags, and how it leaves a running transfer.
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"
#include "runtime/drivers/dmc50v3/dmc50v3.h"
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"
#include "runtime/drivers/polling/pluginpin.h"

#include <QList>
#include <QMutexLocker>

namespace {

/** A new exporter, owned by this list to the end of the process: its transfer may
 *  still run when the driver goes, and its thread waits for work even then. So
 *  from here on the code must not go either. Ending the threads at unloading is no
 *  way out: the loader is locked then, and a transfer may be waiting for the
 *  operator. */
CSVImExporter* newExporter() {
    keepPluginLoaded();
    static QMutex* const mutex = new QMutex; // guards the list; never deleted, as the list
    static QList<CSVImExporter*>* const exporters = new QList<CSVImExporter*>;
    QMutexLocker lock(mutex);
    exporters->append(new CSVImExporter(nullptr));
    return exporters->last();
}

} // namespace

CSVImExporter& DriverDMC50v3::exporter(AbstractDeviceInterface* port) {
    if (!m_csv_im_exporter) {
        m_csv_im_exporter = newExporter();
        m_csv_im_exporter->setRcpDataCommandAddrList(m_rcp_data_command_addr_list);
        m_rcp_data_command_addr_list.clear();
        m_csv_im_exporter->setDriverDMC50v3_DeviceInterface(this, port);
    }
    return *m_csv_im_exporter;
}

QByteArray DriverDMC50v3::readTransferTag(AbstractDeviceInterface* port,
                                          const CommunicatorCommand& command) {
    QByteArray data(command.getDataSize(), '\0');
    exporter(port).processReadCommand(command, data);
    return data;
}

void DriverDMC50v3::writeTransferTag(AbstractDeviceInterface* port,
                                     const CommunicatorCommand& command, const QByteArray& data) {
    exporter(port).processWriteCommand(command, data);
}

/** The exporter may be inside a call: no other begins, a stopped polling thread
 *  lets that one fail soon, and it has returned before anything goes away. */
void DriverDMC50v3::stopThread() {
    if (m_csv_im_exporter)
        m_csv_im_exporter->detachDriver();
    if (m_thread)
        m_thread->stop();
    if (m_csv_im_exporter)
        m_csv_im_exporter->waitForDriverCalls();
    if (m_thread)
        m_thread->wait();
}
