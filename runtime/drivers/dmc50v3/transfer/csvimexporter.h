#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_CSVIMEXPORTER_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_CSVIMEXPORTER_H

#include "runtime/drivers/dmc50v3/transfer/detachabledriver.h"
#include "runtime/drivers/dmc50v3/transfer/programslots.h"
#include "runtime/drivers/dmc50v3/transfer/programstick.h"
#include "runtime/drivers/dmc50v3/transfer/transferdirection.h"
#include "runtime/drivers/dmc50v3/transfer/transferenvironment.h"
#include "runtime/drivers/dmc50v3/transfer/transferstate.h"
#include "runtime/interfaces/communicatorcommand.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class KCSVLoader;
class KCSVSaver;
class NarrowCodecScope;
class QThread;

/** Moves programs (recipes) between the controller and text files on the USB
 *  stick, as the panel's "VVT_" tags ask.
 *
 *  Threads: the host's communication thread makes it and serves the tags; the
 *  transfers run in the exporter's own thread, one after the other. Flags and
 *  numbers are atomics; a tag may show them one step late.
 *
 *  The driver never deletes it. A driver that goes calls detachDriver(), stops
 *  its polling thread so that a running call fails soon, and then
 *  waitForDriverCalls(); a running transfer ends by itself without touching the
 *  driver or the port again. */
class CSVImExporter : public QObject {
    Q_OBJECT
public:
    /** @p environment must outlive the object. Notices go to the message panel
     *  that exists now. */
    explicit CSVImExporter(QObject* parent,
                           TransferEnvironment& environment = TransferEnvironment::panel());

    /** Ends the worker thread, after the running transfer, which is cut short. A
     *  thread that does not end within some seconds (its question to the operator
     *  cannot be answered any more) is terminated. */
    ~CSVImExporter() override;

    /** Adds the project's tag addresses, each once. Before the first transfer. */
    void setRcpDataCommandAddrList(const QStringList& addresses) { m_slots.addTags(addresses); }

    /** Starts the worker thread. Neither object is owned; both must stay until
     *  waitForDriverCalls() has returned. Once. */
    void setDriverDMC50v3_DeviceInterface(DriverDMC50v3* driver, AbstractDeviceInterface* port);

    /** After this no call of the driver or the port begins. Any thread. */
    void detachDriver() { m_driver.detach(); }

    /** Blocks until no such call runs. A transfer that waits for the operator's
     *  choice is not in one. Any thread but the worker, with no lock held that
     *  the driver's read or write takes. */
    void waitForDriverCalls() { m_driver.waitForCalls(); }

    /** The tags. The first test that an address passes decides. @p data of a read
     *  comes zero-filled in the tag's size. @{ */
    void processWriteCommand(const CommunicatorCommand& command, const QByteArray& data);
    void processReadCommand(const CommunicatorCommand& command, QByteArray& data);
    /** @} */

    /** State, any thread. "Writing" is from a file to the controller. @{ */
    bool writingToDMC50Enable() const { return m_state.writing_enable; }
    bool readingFromDMC50Enable() const { return m_state.reading_enable; }
    bool writingToDMC50Error() const { return m_state.writing_error; }
    bool readingFromDMC50Error() const { return m_state.reading_error; }
    void resetWritingToDMC50Error() { m_state.writing_error = false; }
    void resetReadingFromDMC50Error() { m_state.reading_error = false; }
    int writingToDMC50Progress() const { return m_state.writing_progress; }
    int readingFromDM50Progress() const { return m_state.reading_progress; } // the panel's spelling
    int progID() const { return m_state.prog_id; }
    void setProgID(int id) { m_state.prog_id = id; }
    int progCount() const { return m_state.prog_count; }
    /** Ignored unless 0 <= count <= 32. */
    void setProgCount(int count) { m_state.setProgCount(count); }
    /** @} */

    /** Start a transfer, unless one of the same kind runs. The first sleeps 500 ms
     *  before. Not from the worker thread. @{ */
    void writeDataToDMC50();
    void readDataFromDMC50();
    /** @} */

    /** Lists the 32 program slots and those the project has no tag for. Once; a
     *  further call does nothing. */
    void initReadWriteCommandList() { m_slots.list(); }
    const QList<CommunicatorCommand>& readWriteCommandList() const { return m_slots.commands(); }
    const QStringList& unregisteredAddrList() const { return m_slots.unregistered(); }

    /** Mount directory of the USB stick; empty when there is none. */
    QString getStorageMountPath() const { return m_stick.mountPath(); }

    /** For mode 0 the file that a read makes, otherwise the one to write to the
     *  controller; the operator chooses among several, and the name is empty when
     *  there is none. @p ok turns false without a stick, which the operator is
     *  told. */
    QString getFileName(const int& progID, bool& ok, int mode) {
        return transferFile(transferDirection(mode), progID, ok);
    }

    /** Type 1 is the log of writes, any other that of reads. */
    QString getErrorLogFileName(int type, bool& ok) {
        return errorLogFile(transferDirection(type), ok);
    }

    /** Writes @p errors to the stick, replacing the log before, and sets the error
     *  flag of @p type (0 reading, 1 writing), the latter also without a stick. */
    void outputErrorLog(const QStringList& errors, const int& type) {
        logErrors(transferDirection(type), errors);
    }

signals:
    /** A notice for the operator. */
    void showMessage(QString title, QString text, bool show_instant);
    void readDataFromDMC50Signal();
    void writeDataToDMC50Signal();

public slots:
    /** Ends what a read transfer shows. Also due after a write transfer, which so
     *  ends the display of a read before it. */
    void resetReadingFlag();

    /** The transfers; worker thread. @{ */
    void readDataFromDMC50Slot();
    void writeDataToDMC50Slot();
    /** @} */

private:
    enum ReadEnd { ReadComplete, ReadTimedOut, DriverGone };
    enum FileVerdict { FileAccepted, FileLogged, FileRefused }; // the last by a notice only

    void notify(const QString& text);
    QString mountPathOrNotice(bool& ok);
    void pause(quint32 msecs);

    // Files. What is public takes the direction as a number.
    QString transferFile(TransferDirection direction, int program_id, bool& ok);
    QString errorLogFile(TransferDirection direction, bool& ok);
    void logErrors(TransferDirection direction, const QStringList& errors);

    // Controller to file.
    void savePrograms(const NarrowCodecScope& codec, const QString& path);
    void saveTemplate(const NarrowCodecScope& codec, const QString& path);
    ReadEnd readPrograms(const NarrowCodecScope& codec, QList<QStringList>& rows,
                         QStringList& errors);

    // File to controller.
    FileVerdict writeFile(const QString& path);
    FileVerdict loadRows(const QString& path, QList<QStringList>& rows);
    void writePrograms(const QList<QByteArray>& images);
    void watchWriteQueue();
    bool isWriteQueueStuck();

    TransferEnvironment& m_environment; // constant after construction
    DetachableDriver m_driver;
    TransferState m_state;
    ProgramStick m_stick; // worker thread
    ProgramSlots m_slots; // worker thread, once it runs

    std::unique_ptr<KCSVLoader> m_csv_loader; // worker thread, made on first use
    std::unique_ptr<KCSVSaver> m_csv_saver;   // likewise

    QThread* m_thread; // owned; deletes itself in the end
};

#endif
