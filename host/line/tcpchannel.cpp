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

bool TcpChannel::open() {
    close();
    addrinfo hints = {};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int failure = getaddrinfo(m_host.constData(), m_port.constData(), &hints, &found);
    if (failure != 0) {
        setError(QString::fromLocal8Bit(gai_strerror(failure)));
        return false;
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(found, &freeaddrinfo);
    for (const addrinfo* address = found; address && !isCancelled(); address = address->ai_next) {
        if (connectTo(*address))
            return true;
        close();
    }
    return false;
}

bool TcpChannel::connectTo(const addrinfo& address) {
    setDescriptor(socket(address.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (descriptor() >= 0 && connect(descriptor(), address.ai_addr, address.ai_addrlen) == 0) {
        setLineOptions(descriptor());
        return true;
    }
    if (errno != EINPROGRESS) {
        setError(qt_error_string(errno));
        return false;
    }
    return awaitConnection();
}

bool TcpChannel::awaitConnection() {
    if (waitFor(POLLOUT, CONNECT_TIMEOUT_MS) != Wait::Ready) {
        setError(QString::fromLatin1("no answer to the connection request"));
        return false;
    }
    int result = 0;
    socklen_t size = sizeof result;
    getsockopt(descriptor(), SOL_SOCKET, SO_ERROR, &result, &size);
    if (result != 0) {
        setError(qt_error_string(result));
        return false;
    }
    setLineOptions(descriptor());
    return true;
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
