#include "tests/unit/dmc50v3/transfer/transferfixture.h"

#include "runtime/base/connectchecked.h"
#include "tests/support/goldenprograms.h"
#include "tests/support/timepump.h"
#include "tests/support/workerbarrier.h"

#include <QCoreApplication>

#include <thread>

namespace {

const int Station = 1;
const int Programs = 32;
const quint32 ProgramDoubleWords = 24;

int programAt(quint32 address) {
    return address >= 0x1000 && address < 0x1400 ? int(address - 0x1000) / 0x20 + 1 : 0;
}

QString tag(quint32 address) {
    return QString::fromLatin1("NA%1").arg(address, 0, 16);
}

QByteArray littleEndian(int value) {
    QByteArray data;
    for (int shift = 0; shift < 32; shift += 8)
        data.append(char(quint32(value) >> shift & 0xFF));
    return data;
}

} // namespace

TransferFixture::TransferFixture()
    : m_environment(m_clock, m_stick.path())
    , m_driver(new DriverDMC50v3(m_clock))
    , m_exporter(new CSVImExporter(nullptr, m_environment))
    , m_started(false) {
    for (int number = 1; number <= Programs; ++number)
        m_slot_tags.append(tag(slotAddress(number)));
    m_port.setAnswer([this](const QByteArray& request) { return answer(request); });
    connectChecked(m_exporter.get(), SIGNAL(showMessage(QString, QString, bool)), &m_notices,
                   SLOT(keep(QString, QString, bool)), Qt::DirectConnection);
}

void TransferFixture::TearDown() {
    const TimePump pump(m_clock);
    if (m_exporter)
        m_exporter->detachDriver();
    m_driver.reset();
    m_exporter.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TransferFixture::leaveOut(int number) {
    m_slot_tags.removeAll(tag(slotAddress(number)));
}

QByteArray TransferFixture::answer(const QByteArray& request) {
    const bool is_program_read = requestCommand(request) == "RN" && m_on_program_read;
    const int number = programAt(requestItems(request).value(0));
    if (is_program_read && number > 0 && !m_on_program_read(number))
        return silence();
    return m_controller.answer(request);
}

QByteArray TransferFixture::silence() {
    while (m_transferring && m_clock.sleepers() == 0)
        std::this_thread::yield();
    m_clock.advance(m_port.m_timeout);
    return QByteArray();
}

void TransferFixture::start() {
    if (m_started)
        return;
    m_started = true;
    QStringList tags = m_slot_tags;
    for (int number = 1; number <= Programs; ++number) {
        for (quint32 i = 1; i < ProgramDoubleWords; ++i)
            tags.append(tag(slotAddress(number) + i));
    }
    m_project.create(Station, tags);
    m_driver->read(&m_port, CommunicatorCommand(QLatin1String("INITDRV0"), 1, 1));
    m_exporter->setRcpDataCommandAddrList(m_slot_tags);
    m_exporter->setDriverDMC50v3_DeviceInterface(m_driver.get(), &m_port);
    m_clock.setParticipants(2); // the polling thread and the transfer
}

void TransferFixture::writeTag(const char* address, int value) {
    start();
    m_transferring = m_transferring || QByteArray(address).startsWith("VVT_ENABLE");
    const CommunicatorCommand command(QLatin1String(address), CommunicatorCommand::DoubleWord, 1);
    m_exporter->processWriteCommand(command, littleEndian(value));
}

int TransferFixture::readTag(const char* address) {
    const CommunicatorCommand command(QLatin1String(address), CommunicatorCommand::DoubleWord, 1);
    QByteArray data(4, '\0');
    m_exporter->processReadCommand(command, data);
    quint32 value = 0;
    for (int i = 0; i < 4; ++i)
        value |= quint32(uchar(data.at(i))) << 8 * i;
    return int(value);
}

void TransferFixture::choose(int program_id, int count) {
    writeTag("VVT_PROG_ID0", program_id);
    writeTag("VVT_PROG_COUNT0", count);
}

void TransferFixture::read(int program_id, int count) {
    choose(program_id, count);
    writeTag("VVT_ENABLE1", 1);
    waitForWorker();
}

void TransferFixture::write(int program_id, int count) {
    choose(program_id, count);
    writeTag("VVT_ENABLE0", 1);
    waitForWorker();
}

void TransferFixture::expectIdle() {
    EXPECT_EQ(readTag("VVT_ENABLE0"), 0);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 0);
    EXPECT_EQ(readTag("VVT_PROGRESS0"), 0);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 0);
    EXPECT_FALSE(isProgramReading());
}

void TransferFixture::saveTable(int program_id, int rows) {
    QByteArray lines;
    for (int number = 1; number <= rows; ++number)
        lines += "row" + QByteArray("\t" + QByteArray::number(number)).repeated(24) + '\n';
    QByteArray utf16;
    for (int i = 0; i < lines.size(); ++i)
        utf16.append(lines.at(i)).append('\0');
    m_stick.write(file(program_id), goldenFile(QLatin1String("PROG_0.txt")) + utf16);
}

QByteArray TransferFixture::imageOf(quint32 value) {
    QList<quint32> values;
    for (quint32 i = 0; i < ProgramDoubleWords; ++i)
        values.append(value);
    return doubleWordImage(values);
}

void TransferFixture::waitForWorker() {
    WorkerBarrier(m_exporter->thread()).wait();
    m_transferring = false;
}

quint32 TransferFixture::slotAddress(int number) {
    return 0x1000 + 0x20 * quint32(number - 1);
}

void TransferFixture::setProgram(int number, const QByteArray& image) {
    for (int i = 0; i < int(ProgramDoubleWords); ++i) {
        quint32 value = 0;
        for (int byte = 3; byte >= 0; --byte)
            value = value << 8 | uchar(image.at(4 * i + byte));
        m_controller.setValue(Station, slotAddress(number) + quint32(i), value);
    }
}

QByteArray TransferFixture::program(int number) const {
    QByteArray image;
    for (quint32 i = 0; i < ProgramDoubleWords; ++i)
        image.append(littleEndian(int(m_controller.value(Station, slotAddress(number) + i))));
    return image;
}

QString TransferFixture::file(int program_id) const {
    return QString::fromLatin1("PROG_%1.txt").arg(program_id);
}
