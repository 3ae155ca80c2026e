#include "runtime/panel/storagesystem.h"

#include <QProcess>
#include <QStringList>

#include <cstdlib>
#include <sys/mount.h>
#include <sys/stat.h>

void StorageSystem::runShell(const QByteArray& command_line) {
    const int status = std::system(command_line.constData());
    Q_UNUSED(status); // an empty or missing listing tells as much
}

bool StorageSystem::readProgram(const QString& program, int timeout_msecs, QByteArray& output) {
    output.clear();
    QProcess process;
    process.start(program, QStringList());
    if (!process.waitForStarted(timeout_msecs) || !process.waitForFinished(timeout_msecs))
        return false;
    output = process.readAll();
    return true;
}

void StorageSystem::unmount(const QByteArray& directory) {
    ::umount(directory.constData()); // fails when the device is gone already, which is fine
}

bool StorageSystem::exists(const QByteArray& directory) {
    struct stat info = {};
    return ::stat(directory.constData(), &info) == 0;
}

bool StorageSystem::measure(const QByteArray& directory, struct statvfs& info) {
    if (::statvfs(directory.constData(), &info) == 0)
        return true;
    info = {};
    return false;
}

StorageSystem& StorageSystem::real() {
    static StorageSystem* const system = new StorageSystem; // outlives the monitor's thread
    return *system;
}
