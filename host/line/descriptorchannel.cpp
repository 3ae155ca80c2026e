#include "host/line/descriptorchannel.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace host {

namespace {

using SteadyClock = std::chrono::steady_clock;

int msecsUntil(SteadyClock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
    return int(std::max<qint64>(0, left.count()));
}

} // namespace

DescriptorChannel::DescriptorChannel(const QString& name)
    : m_name(name), m_cancel_event(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

DescriptorChannel::~DescriptorChannel() {
    ::close(m_cancel_event);
}

void DescriptorChannel::cancel() {
    m_cancelled = true;
    const quint64 one = 1;
    // A full counter, the only failure, means that the event is raised already.
    [[maybe_unused]] const ssize_t written = ::write(m_cancel_event, &one, sizeof one);
}

DescriptorChannel::Wait DescriptorChannel::waitFor(short events, int timeout_ms) {
    const auto deadline = SteadyClock::now() + std::chrono::milliseconds(timeout_ms);
    for (;;) {
        pollfd waited[] = {{m_descriptor, events, 0}, {m_cancel_event, POLLIN, 0}};
        const int ready = poll(waited, 2, msecsUntil(deadline));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready < 0) {
            m_error = qt_error_string(errno);
            return Wait::Failed;
        }
        if (waited[1].revents)
            return Wait::Cancelled;
        return ready > 0 ? Wait::Ready : Wait::TimedOut;
    }
}

int DescriptorChannel::failRead(int error_number) {
    m_error = error_number ? qt_error_string(error_number)
                           : QString::fromLatin1("the other end has closed the line");
    return -1;
}

int DescriptorChannel::read(char* buffer, int max, int timeout_ms) {
    if (m_descriptor < 0)
        return failRead(ENOTCONN);
    for (;;) {
        const Wait wait = waitFor(POLLIN, timeout_ms);
        if (wait != Wait::Ready)
            return wait == Wait::Failed ? -1 : 0;
        const ssize_t count = ::read(m_descriptor, buffer, size_t(max));
        if (count > 0)
            return int(count);
        // Readable without a byte: end of file, or a terminal that hung up.
        if (count == 0)
            return failRead(0);
        if (errno != EINTR && errno != EAGAIN)
            return failRead(errno);
    }
}

ssize_t DescriptorChannel::put(const char* buffer, size_t length) {
    return ::write(m_descriptor, buffer, length);
}

bool DescriptorChannel::write(const char* buffer, int length, int timeout_ms) {
    const auto deadline = SteadyClock::now() + std::chrono::milliseconds(timeout_ms);
    int sent = 0;
    while (sent < length) {
        const ssize_t count = put(buffer + sent, size_t(length - sent));
        if (count > 0) {
            sent += int(count);
            continue;
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            m_error = qt_error_string(errno);
            return false;
        }
        const Wait wait = waitFor(POLLOUT, msecsUntil(deadline));
        if (wait == Wait::TimedOut)
            m_error = QString::fromLatin1("the line takes no more bytes");
        if (wait != Wait::Ready)
            return false;
    }
    return true;
}

QByteArray DescriptorChannel::discard() {
    QByteArray dropped;
    char buffer[512];
    for (;;) {
        pollfd waited = {m_descriptor, POLLIN, 0};
        if (m_descriptor < 0 || poll(&waited, 1, 0) < 1)
            return dropped;
        const ssize_t count = ::read(m_descriptor, buffer, sizeof buffer);
        if (count < 1)
            return dropped; // a lost line is reported by the next read or write
        dropped.append(buffer, int(count));
    }
}

} // namespace host
