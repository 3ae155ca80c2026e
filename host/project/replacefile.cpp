#include "host/project/replacefile.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace host {

namespace {

bool syncPath(const QString& path) {
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool synced = fsync(descriptor) == 0;
    const int sync_error = errno;
    close(descriptor);
    errno = sync_error;
    return synced;
}

} // namespace

Result<void> replaceFile(const QString& written, const QString& target) {
    const QByteArray from = QFile::encodeName(written);
    const QByteArray to = QFile::encodeName(target);
    if (syncPath(written) && rename(from.constData(), to.constData()) == 0 &&
        syncPath(QFileInfo(target).absolutePath()))
        return {};
    const Failure failure(QString::fromLatin1("%1: %2").arg(target, qt_error_string(errno)));
    unlink(from.constData());
    return failure;
}

} // namespace host
