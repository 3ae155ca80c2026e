#include "simulator/filedescriptor.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace simulator {

namespace {

constexpr int ReadSize = 4096;

} // namespace

void FileDescriptor::reset(int descriptor) {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = descriptor;
}

short waitForInput(int descriptor, int timeout_ms) {
    pollfd entry = {descriptor, POLLIN, 0};
    return ::poll(&entry, 1, timeout_ms) > 0 ? entry.revents : short(0);
}

QByteArray readAvailable(int descriptor, bool& at_end) {
    QByteArray bytes(ReadSize, Qt::Uninitialized);
    const ssize_t count = ::read(descriptor, bytes.data(), std::size_t(bytes.size()));
    at_end = count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR);
    bytes.truncate(count > 0 ? int(count) : 0);
    return bytes;
}

void writeAvailable(int descriptor, const QByteArray& bytes) {
    int done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            ::write(descriptor, bytes.constData() + done, std::size_t(bytes.size() - done));
        if (count <= 0 && errno != EINTR)
            return;
        done += count > 0 ? int(count) : 0;
    }
}

} // namespace simulator
