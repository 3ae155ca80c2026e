#include "host/line/tcpchannel.h"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace host {

namespace {

QString urlOf(const QString& host, quint16 port) {
    const bool is_ipv6 = host.contains(QLatin1Char(':'));
    return QString::fromLatin1(is_ipv6 ? "tcp://[%1]:%2" : "tcp://%1:%2").arg(host).arg(port);
}

/** Requests are small and answered one by one; a dead peer shall be noticed. */
void setLineOptions(int socket) {
    const int on = 1;
    setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    setsockopt(socket, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
}

} // namespace

TcpChannel::TcpChannel(const QString& host, quint16 port)
    : DescriptorChannel(urlOf(host, port))
    , m_host(host.toUtf8())
    , m_port(QByteArray::number(port)) {}

TcpChannel::~TcpChannel() {
    TcpChannel::close();
}

Result<void> TcpChannel::open() {
    close();
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int failure = getaddrinfo(m_host.constData(), m_port.constData(), &hints, &found);
    if (failure != 0)
        return Failure(QString::fromLocal8Bit(gai_strerror(failure)));
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(found, &freeaddrinfo);
    Result<void> connected = Failure(QStringLiteral("interrupted"));
    for (const addrinfo* address = found; address && !isCancelled(); address = address->ai_next) {
        connected = connectTo(*address);
        if (connected)
            break;
        close();
    }
    return connected;
}

Result<void> TcpChannel::connectTo(const addrinfo& address) {
    setDescriptor(socket(address.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (descriptor() >= 0 && connect(descriptor(), address.ai_addr, address.ai_addrlen) == 0) {
        setLineOptions(descriptor());
        return {};
    }
    if (errno != EINPROGRESS)
        return Failure(qt_error_string(errno));
    return awaitConnection();
}

Result<void> TcpChannel::awaitConnection() {
    const Result<Wait> wait = waitFor(POLLOUT, ConnectTimeoutMsecs);
    if (!wait || *wait != Wait::Ready)
        return Failure(QStringLiteral("no answer to the connection request"));
    int result = 0;
    socklen_t size = sizeof result;
    getsockopt(descriptor(), SOL_SOCKET, SO_ERROR, &result, &size);
    if (result != 0)
        return Failure(qt_error_string(result));
    setLineOptions(descriptor());
    return {};
}

void TcpChannel::close() {
    if (descriptor() >= 0)
        ::close(descriptor());
    setDescriptor(-1);
}

ssize_t TcpChannel::put(const char* buffer, size_t length) {
    return send(descriptor(), buffer, length, MSG_NOSIGNAL);
}

} // namespace host
