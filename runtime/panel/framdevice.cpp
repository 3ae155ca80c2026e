#include "runtime/panel/framdevice.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

int FramDevice::open(const QByteArray& path, int flags) {
    return ::open(path.constData(), flags | O_CLOEXEC);
}

int FramDevice::ioctl(int fd, unsigned long request, int argument) {
    return ::ioctl(fd, request, argument);
}

ssize_t FramDevice::pwrite(int fd, const void* buffer, size_t length, off_t offset) {
    return ::pwrite(fd, buffer, length, offset);
}

ssize_t FramDevice::pread(int fd, void* buffer, size_t length, off_t offset) {
    return ::pread(fd, buffer, length, offset);
}

int FramDevice::close(int fd) {
    return ::close(fd);
}

FramDevice& FramDevice::system() {
    static FramDevice* const device = new FramDevice; // outlives every use
    return *device;
}
