#include "runtime/panel/platforminterface.h"

#include <QProcess>

int PlatformInterface::runCommand(const QString& program, const QStringList& arguments) {
    return QProcess::execute(program, arguments);
}

bool PlatformInterface::runCommandDetached(const QString& program, const QStringList& arguments) {
    return QProcess::startDetached(program, arguments);
}
