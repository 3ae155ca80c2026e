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

Result<DescriptorChannel::Wait> DescriptorChannel::waitFor(short events, int timeout_ms) {
    const auto deadline = SteadyClock::now() + std::chrono::milliseconds(timeout_ms);
    for (;;) {
        pollfd waited[] = {{m_descriptor, events, 0}, {m_cancel_event, POLLIN, 0}};
        const int ready = poll(waited, 2, msecsUntil(deadline));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready < 0)
            return Failure(qt_error_string(errno));
        if (waited[1].revents)
            return Wait::Cancelled;
        return ready > 0 ? Wait::Ready : Wait::TimedOut;
    }
}

Result<int> DescriptorChannel::read(char* buffer, int max, int timeout_ms) {
    if (m_descriptor < 0)
        return Failure(qt_error_string(ENOTCONN));
    for (;;) {
        const Result<Wait> wait = waitFor(POLLIN, timeout_ms);
        if (!wait)
            return Failure(wait.error());
        if (*wait != Wait::Ready)
            return 0;
        const ssize_t count = ::read(m_descriptor, buffer, size_t(max));
        if (count > 0)
            return int(count);
        // Readable without a byte: end of file, or a terminal that hung up.
        if (count == 0)
            return Failure(QStringLiteral("the other end has closed the line"));
        if (errno != EINTR && errno != EAGAIN)
            return Failure(qt_error_string(errno));
    }
}

ssize_t DescriptorChannel::put(const char* buffer, size_t length) {
    return ::write(m_descriptor, buffer, length);
}

Result<void> DescriptorChannel::write(const char* buffer, int length, int timeout_ms) {
    const auto deadline = SteadyClock::now() + std::chrono::milliseconds(timeout_ms);
    int sent = 0;
    while (sent < length) {
        const ssize_t count = put(buffer + sent, size_t(length - sent));
        if (count > 0) {
            sent += int(count);
            continue;
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN)
            return Failure(qt_error_string(errno));
        const Result<Wait> wait = waitFor(POLLOUT, msecsUntil(deadline));
        if (!wait)
            return Failure(wait.error());
        if (*wait != Wait::Ready)
            return Failure(*wait == Wait::TimedOut ? QStringLiteral("the line takes no more bytes")
                                                   : QStringLiteral("interrupted"));
    }
    return {};
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
