// The exporter itself: its thread, its state and its tags.
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"

#include "runtime/base/clock.h"
#include "runtime/base/connectchecked.h"
#include "runtime/drivers/dmc50v3/transfer/transfertags.h"
#include "runtime/panel/kcsvloader.h"
#include "runtime/panel/kcsvsaver.h"
#include "runtime/panel/messagecenter.h"

#include <QThread>

namespace {

const unsigned long ThreadEndMsecs = 5000; // real time; a sleeping transfer needs up to 2000
const quint32 BeforeWriteMsecs = 500;      // the panel's pages settle
const char* const NoticeTitle = "DMC50";

} // namespace

CSVImExporter::CSVImExporter(QObject* parent, TransferEnvironment& environment)
    : QObject(parent), m_environment(environment), m_stick(environment), m_thread(new QThread) {
    if (MessageCenter* panel = MessageCenter::getInstance())
        connectChecked(this, SIGNAL(showMessage(QString, QString, bool)), panel,
                       SLOT(showMessageAsync(QString, QString, bool)));
}

CSVImExporter::~CSVImExporter() {
    detachDriver();
    m_thread->quit();
    if (!m_thread->wait(ThreadEndMsecs)) {
        m_thread->terminate();
        m_thread->wait();
    }
    m_thread->deleteLater();
}

void CSVImExporter::setDriverDMC50v3_DeviceInterface(DriverDMC50v3* driver,
                                                     AbstractDeviceInterface* port) {
    m_driver.attach(driver, port);
    moveToThread(m_thread);
    // Emitted by the driver's caller, so the slots run queued in m_thread.
    connectChecked(this, SIGNAL(readDataFromDMC50Signal()), this, SLOT(readDataFromDMC50Slot()));
    connectChecked(this, SIGNAL(writeDataToDMC50Signal()), this, SLOT(writeDataToDMC50Slot()));
    m_thread->start();
}

void CSVImExporter::processWriteCommand(const CommunicatorCommand& command,
                                        const QByteArray& data) {
    const bool is_set = !data.isEmpty() && data.at(0) != 0;
    if (TransferTags::isTag(command.address(), "VVT_ENABLE0") && is_set)
        writeDataToDMC50();
    else if (TransferTags::isTag(command.address(), "VVT_ENABLE1") && is_set)
        readDataFromDMC50();
    else
        m_state.writeTag(command.address(), data);
}

void CSVImExporter::processReadCommand(const CommunicatorCommand& command, QByteArray& data) {
    m_state.readTag(command.address(), data);
}

void CSVImExporter::writeDataToDMC50() {
    if (m_state.writing_enable)
        return;
    pause(BeforeWriteMsecs);
    emit writeDataToDMC50Signal();
}

void CSVImExporter::readDataFromDMC50() {
    if (m_state.reading_enable)
        return;
    m_driver.setProgramReading(true);
    emit readDataFromDMC50Signal();
}

void CSVImExporter::resetReadingFlag() {
    m_state.reading_progress = 0;
    m_state.reading_enable = false;
}

void CSVImExporter::notify(const QString& text) {
    emit showMessage(QString::fromLatin1(NoticeTitle), text, true);
}

void CSVImExporter::pause(quint32 msecs) {
    m_environment.clock().sleepMsecs(msecs);
}
