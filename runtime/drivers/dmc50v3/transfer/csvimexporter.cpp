// The exporter itself: its thread, its state and its tags.
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"

#include "runtime/base/clock.h"
#include "runtime/base/connectchecked.h"
#include "runtime/drivers/dmc50v3/transfer/programtable.h"
#include "runtime/drivers/dmc50v3/transfer/transfertags.h"
#include "runtime/panel/kcsvloader.h"
#include "runtime/panel/kcsvsaver.h"
#include "runtime/panel/messagecenter.h"

#include <QThread>

namespace {

const unsigned long ThreadEndMsecs = 5000; // real time; a sleeping transfer needs up to 2000
const quint32 BeforeWriteMsecs = 500;      // the panel's pages settle
const char* const NoticeTitle = "DMC50";

/** The panel's tag names are part of longer addresses. */
bool isTag(const CommunicatorCommand& command, const char* tag) {
    return command.address().contains(QLatin1String(tag));
}

} // namespace

CSVImExporter::CSVImExporter(QObject* parent, TransferEnvironment& environment)
    : QObject(parent)
    , m_environment(environment)
    , m_writing_enable(false)
    , m_reading_enable(false)
    , m_writing_error(false)
    , m_reading_error(false)
    , m_writing_progress(0)
    , m_reading_progress(0)
    , m_prog_id(0)
    , m_prog_count(0)
    , m_thread(new QThread) {
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

void CSVImExporter::setRcpDataCommandAddrList(const QStringList& addresses) {
    m_rcp_data_command_addr_list += addresses;
    m_rcp_data_command_addr_list.removeDuplicates();
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

void CSVImExporter::detachDriver() {
    m_driver.detach();
}

void CSVImExporter::waitForDriverCalls() {
    m_driver.waitForCalls();
}

void CSVImExporter::processWriteCommand(const CommunicatorCommand& command,
                                        const QByteArray& data) {
    const bool is_set = !data.isEmpty() && data.at(0) != 0;
    const bool is_cleared = !data.isEmpty() && data.at(0) == 0;
    if (isTag(command, "VVT_ENABLE0") && is_set)
        writeDataToDMC50();
    else if (isTag(command, "VVT_ENABLE1") && is_set)
        readDataFromDMC50();
    else if (isTag(command, "VVT_ERROR0") && is_cleared)
        resetWritingToDMC50Error();
    else if (isTag(command, "VVT_ERROR1") && is_cleared)
        resetReadingFromDMC50Error();
    else if (isTag(command, "VVT_PROG_ID0"))
        setProgID(TransferTags::writtenValue(data));
    else if (isTag(command, "VVT_PROG_COUNT0"))
        setProgCount(TransferTags::writtenValue(data));
}

void CSVImExporter::processReadCommand(const CommunicatorCommand& command, QByteArray& data) {
    if (isTag(command, "VVT_ENABLE0"))
        TransferTags::storeFlag(m_writing_enable, data);
    else if (isTag(command, "VVT_ENABLE1"))
        TransferTags::storeFlag(m_reading_enable, data);
    else if (isTag(command, "VVT_ERROR0"))
        TransferTags::storeFlag(m_writing_error, data);
    else if (isTag(command, "VVT_ERROR1"))
        TransferTags::storeFlag(m_reading_error, data);
    else if (isTag(command, "VVT_PROG_ID0"))
        TransferTags::storeValue(m_prog_id, data);
    else if (isTag(command, "VVT_PROG_COUNT0"))
        TransferTags::storeValue(m_prog_count, data);
    else if (isTag(command, "VVT_PROGRESS0"))
        TransferTags::storeValue(m_writing_progress, data);
    else if (isTag(command, "VVT_PROGRESS1"))
        TransferTags::storeValue(m_reading_progress, data);
}

void CSVImExporter::setProgCount(int count) {
    if (quint32(count) <= quint32(ProgramTable::MaxPrograms))
        m_prog_count = count;
}

void CSVImExporter::writeDataToDMC50() {
    if (m_writing_enable)
        return;
    pause(BeforeWriteMsecs);
    emit writeDataToDMC50Signal();
}

void CSVImExporter::readDataFromDMC50() {
    if (m_reading_enable)
        return;
    m_driver.setProgramReading(true);
    emit readDataFromDMC50Signal();
}

void CSVImExporter::resetReadingFlag() {
    m_reading_progress = 0;
    m_reading_enable = false;
}

void CSVImExporter::initReadWriteCommandList() {
    if (!m_read_write_command_list.isEmpty())
        return;
    for (int slot = ProgramTable::FirstSlotAddress; slot <= ProgramTable::LastSlotAddress;
         slot += ProgramTable::SlotDistance) {
        const QString address = ProgramTable::slotTagAddress(slot);
        m_read_write_command_list.append(CommunicatorCommand(
            address, CommunicatorCommand::DoubleWord, ProgramTable::ProgramDoubleWords));
        if (!m_rcp_data_command_addr_list.contains(address) &&
            !m_rcp_data_command_addr_list.contains(address.toUpper()))
            m_unregistered_addr_list.append(address);
    }
    m_rcp_data_command_addr_list.clear();
}

bool CSVImExporter::isRegistered(const CommunicatorCommand& command) const {
    return !m_unregistered_addr_list.contains(command.address());
}

void CSVImExporter::notify(const QString& text) {
    emit showMessage(QString::fromLatin1(NoticeTitle), text, true);
}

void CSVImExporter::pause(quint32 msecs) {
    m_environment.clock().sleepMsecs(msecs);
}
