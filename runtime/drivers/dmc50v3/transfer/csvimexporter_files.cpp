// The exporter's files on the USB stick.
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"

#include "runtime/drivers/dmc50v3/transfer/dialogwrapper.h"
#include "runtime/drivers/dmc50v3/transfer/programfiles.h"

#include <QCoreApplication>

namespace {

/** Asks the operator in the GUI thread and waits for the answer. */
QString chosenFile(const QStringList& files) {
    dialogWrapper* wrapper = new dialogWrapper;
    wrapper->moveToThread(QCoreApplication::instance()->thread());
    wrapper->showDialog(files);
    const QString file = wrapper->getSelectedFileName();
    wrapper->deleteLater();
    return file;
}

} // namespace

QString CSVImExporter::mountPathOrNotice(bool& ok) {
    const QString mount_path = getStorageMountPath();
    ok = !mount_path.isEmpty();
    if (!ok)
        notify(QString::fromLatin1("The system can't not detect the %1.")
                   .arg(QString::fromLatin1("USB Stick")));
    return mount_path;
}

QString CSVImExporter::transferFile(TransferDirection direction, int program_id, bool& ok) {
    const QString mount_path = mountPathOrNotice(ok);
    if (!ok)
        return QString();
    if (direction == TransferDirection::FromController)
        return ProgramFiles::programFile(mount_path, program_id);
    const QStringList files = ProgramFiles::matchingProgramFiles(mount_path, program_id);
    return files.size() > 1 ? chosenFile(files) : files.value(0);
}

QString CSVImExporter::errorLogFile(TransferDirection direction, bool& ok) {
    const QString mount_path = mountPathOrNotice(ok);
    return ok ? ProgramFiles::errorLogFile(mount_path, direction, progID()) : QString();
}

void CSVImExporter::logErrors(TransferDirection direction, const QStringList& errors) {
    bool ok = false;
    const QString path = errorLogFile(direction, ok);
    if (ok)
        m_stick.saveLog(errors, path);
    m_state.setError(direction);
}
