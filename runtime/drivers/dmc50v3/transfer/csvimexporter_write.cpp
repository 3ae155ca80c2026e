// From a file to the controller.
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"

#include "runtime/drivers/dmc50v3/transfer/programtable.h"
#include "runtime/drivers/dmc50v3/transfer/transferprogress.h"
#include "runtime/panel/kcsvloader.h"

namespace {

const quint32 EndShownMsecs = 2000;  // how long the panel shows the end
const quint32 DrainPollMsecs = 1000; // between two looks at the write queue
const int ReadFlagMsecs = 2000;      // until a read's display is ended, too

} // namespace

void CSVImExporter::writeDataToDMC50Slot() {
    m_state.writing_enable = true;
    m_state.writing_error = false;
    bool ok = false;
    const QString path = transferFile(TransferDirection::ToController, m_state.prog_id, ok);
    const FileVerdict verdict = ok ? writeFile(path) : FileAccepted;
    pause(EndShownMsecs);
    if (verdict == FileRefused)
        m_state.writing_error = true;
    m_state.writing_progress = 0;
    m_state.writing_enable = false;
}

CSVImExporter::FileVerdict CSVImExporter::writeFile(const QString& path) {
    QList<QStringList> rows;
    const FileVerdict verdict = loadRows(path, rows);
    if (verdict != FileAccepted)
        return verdict;
    const ProgramTable::Encoded encoded = ProgramTable::encodeRows(rows, m_state.prog_count);
    if (!encoded.errors.isEmpty()) {
        logErrors(TransferDirection::ToController, encoded.errors);
        return FileLogged;
    }
    writePrograms(encoded.images);
    m_state.writing_progress = 0;
    m_environment.callLater(ReadFlagMsecs, this, SLOT(resetReadingFlag()));
    watchWriteQueue();
    return FileAccepted;
}

/** The rows of the file without its header. Only the first of them is counted:
 *  the loader has filled the others up to the header's width. */
CSVImExporter::FileVerdict CSVImExporter::loadRows(const QString& path, QList<QStringList>& rows) {
    if (!m_csv_loader)
        m_csv_loader.reset(new KCSVLoader(nullptr));
    if (!m_csv_loader->openFile(path)) {
        m_csv_loader->fileContent(); // adds its report to the errors
        logErrors(TransferDirection::ToController, m_csv_loader->errorMessageList());
        return FileLogged;
    }
    rows = m_csv_loader->fileContent();
    if (rows.isEmpty()) {
        m_csv_loader->fileContent();
        notify(m_csv_loader->errorMessageList().join(QString::fromLatin1("\n")));
        return FileRefused;
    }
    rows.removeFirst();
    if (!rows.isEmpty() && rows.first().size() < ProgramTable::RowFields) {
        notify(QString::fromLatin1("The field Num is not 25."));
        return FileRefused;
    }
    return FileAccepted;
}

void CSVImExporter::writePrograms(const QList<QByteArray>& images) {
    m_slots.list();
    for (int i = 0; i < images.size(); ++i) {
        const CommunicatorCommand& command = m_slots.commands().at(i);
        if (m_slots.isRegistered(command))
            m_driver.writeProgram(command, images.at(i));
    }
}

void CSVImExporter::watchWriteQueue() {
    if (isWriteQueueStuck())
        logErrors(
            TransferDirection::ToController,
            QStringList(QString::fromLatin1("Writing Data Fail,No Response in communication.")));
}

/** Shows the queue's drain until it is empty, or until it has not moved for too
 *  long: then true. */
bool CSVImExporter::isWriteQueueStuck() {
    DrainWatch watch;
    quint32 initial = 0;
    quint32 left = 0;
    m_driver.readWriteQueueSize(initial);
    while (m_driver.readWriteQueueSize(left)) {
        if (left == 0) {
            m_state.writing_progress = 100;
            return false;
        }
        const float ratio = TransferProgress::drainRatio(initial, left);
        if (watch.isStalled(ratio))
            return true;
        m_state.writing_progress = TransferProgress::ratioPercent(ratio);
        pause(DrainPollMsecs);
    }
    return false; // the driver has gone, and with it who could be told
}
