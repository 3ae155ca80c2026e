#include "tests/unit/panel/recordingfram.h"

#include <cstring>
#include <fcntl.h>

int RecordingFram::open(const QByteArray& path, int flags) {
    const char* mode = flags == O_RDONLY ? "r" : flags == O_WRONLY ? "w" : "?";
    calls << QString::fromLatin1("open %1 %2")
                 .arg(QString::fromLatin1(path), QString::fromLatin1(mode));
    return descriptor;
}

int RecordingFram::ioctl(int fd, unsigned long request, int argument) {
    calls << QString::fromLatin1("ioctl %1 0x%2 %3").arg(fd).arg(request, 0, 16).arg(argument);
    return 0;
}

ssize_t RecordingFram::pwrite(int fd, const void* buffer, size_t length, off_t offset) {
    calls << QString::fromLatin1("pwrite %1 %2@%3").arg(fd).arg(length).arg(offset);
    m_offsets << QString::number(offset);
    const ssize_t count = ssize_t(length) - short_by;
    std::memcpy(image.data() + offset, buffer, size_t(count));
    return count;
}

ssize_t RecordingFram::pread(int fd, void* buffer, size_t length, off_t offset) {
    calls << QString::fromLatin1("pread %1 %2@%3").arg(fd).arg(length).arg(offset);
    const ssize_t count = ssize_t(length) - short_by;
    std::memcpy(buffer, image.constData() + offset, size_t(count));
    return count;
}

int RecordingFram::close(int fd) {
    calls << QString::fromLatin1("close %1").arg(fd);
    return 0;
}
