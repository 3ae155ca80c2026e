#include "runtime/panel/mountlisting.h"

#include "runtime/panel/panelpaths.h"
#include "runtime/panel/storagesystem.h"

#include <QFile>

namespace {

// A real mount table has some kilobytes; what lies behind is garbage.
const qint64 MaxListingBytes = 1024 * 1024;

void runShellCommand(StorageSystem& system, const QString& command) {
    const QStringList arguments = QStringList() << QString::fromLatin1("-c") << command;
    const QString line = QString::fromLatin1("sh %1").arg(arguments.join(QString::fromLatin1(" ")));
    system.runShell(line.toLocal8Bit());
}

} // namespace

QStringList mountListing(StorageSystem& system, const QString& command) {
    const QString listing = panelPaths().mount_listing;
    runShellCommand(system, command + QString::fromLatin1(" > ") + listing);
    QFile file(listing);
    if (!file.open(QIODevice::ReadOnly))
        return QStringList();
    return nonEmptyParts(QString::fromLocal8Bit(file.read(MaxListingBytes)), '\n');
}

QStringList splitAtBlanks(const QString& line) {
    return nonEmptyParts(line, ' ');
}

QStringList nonEmptyParts(const QString& text, char separator) {
    QStringList parts =
        text.split(QLatin1Char(separator)); // the flag to skip differs by Qt version
    parts.removeAll(QString());
    return parts;
}
