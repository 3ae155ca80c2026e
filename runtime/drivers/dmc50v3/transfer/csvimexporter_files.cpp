// The exporter's files on the USB stick.
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"

#include "runtime/drivers/dmc50v3/transfer/dialogwrapper.h"
#include "runtime/drivers/dmc50v3/transfer/programfiles.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

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

QString CSVImExporter::getStorageMountPath() {
    return m_environment.usbMountPath();
}

QString CSVImExporter::mountPathOrNotice(bool& ok) {
    const QString mount_path = getStorageMountPath();
    ok = !mount_path.isEmpty();
    if (!ok)
        notify(QString::fromLatin1("The system can't not detect the %1.")
                   .arg(QString::fromLatin1("USB Stick")));
    return mount_path;
}

QString CSVImExporter::getFileName(const int& progID, bool& ok, int mode) {
    const QString mount_path = mountPathOrNotice(ok);
    if (!ok)
        return QString();
    if (mode == 0)
        return ProgramFiles::programFile(mount_path, progID);
    const QStringList files = ProgramFiles::matchingProgramFiles(mount_path, progID);
    return files.size() > 1 ? chosenFile(files) : files.value(0);
}

QString CSVImExporter::getErrorLogFileName(int type, bool& ok) {
    const QString mount_path = mountPathOrNotice(ok);
    return ok ? ProgramFiles::errorLogFile(mount_path, type, m_prog_id) : QString();
}

void CSVImExporter::outputErrorLog(const QStringList& errors, const int& type) {
    bool ok = false;
    const QString path = getErrorLogFileName(type, ok);
    QFile log(path);
    if (ok && log.open(QIODevice::WriteOnly | QIODevice::Text)) {
        QTextStream(&log) << errors.join(QString::fromLatin1("\n"));
        log.close();
        m_environment.syncStorage();
    }
    if (type == 1)
        m_writing_error = true;
    else if (type == 0)
        m_reading_error = true;
}
