#include "runtime/drivers/dmc50v3/transfer/programstick.h"

#include "runtime/drivers/dmc50v3/transfer/transferenvironment.h"
#include "runtime/panel/kcsvsaver.h"

#include <QFile>
#include <QTextStream>

QString ProgramStick::mountPath() const {
    return m_environment.usbMountPath();
}

bool ProgramStick::saveTable(const QList<QStringList>& rows, const QString& path,
                             KCSVSaver& saver) {
    if (!saver.saveFile(rows, path))
        return false;
    m_environment.syncStorage();
    return true;
}

void ProgramStick::saveLog(const QStringList& errors, const QString& path) {
    QFile log(path);
    if (!log.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    QTextStream(&log) << errors.join(QString::fromLatin1("\n"));
    log.close();
    m_environment.syncStorage();
}
