#include "tests/unit/simulator/lineclient.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int connectTo(quint16 port) {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return socket;
    ::close(socket);
    return -1;
}

} // namespace

bool LineClient::open(const QString& path) {
    close();
    if (path.startsWith(QLatin1String("tcp://")))
        m_descriptor = connectTo(path.section(QLatin1Char(':'), -1).toUShort());
    else
        m_descriptor = ::open(qPrintable(path), O_RDWR | O_NOCTTY | O_CLOEXEC);
    return m_descriptor >= 0;
}

void LineClient::close() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

void LineClient::write(const QByteArray& bytes) {
    // A short write would show as a missing answer.
    static_cast<void>(!::write(m_descriptor, bytes.constData(), std::size_t(bytes.size())));
}

QByteArray LineClient::read(int count, int quiet_ms) {
    QByteArray all;
    pollfd entry = {m_descriptor, POLLIN, 0};
    std::array<char, 1024> part = {};
    while (all.size() < count && ::poll(&entry, 1, quiet_ms) > 0) {
        const auto wanted = std::min(part.size(), std::size_t(count - all.size()));
        const ssize_t got = ::read(m_descriptor, part.data(), wanted);
        if (got <= 0)
            break;
        all.append(part.data(), int(got));
    }
    return all;
}

bool LineClient::seesTheEnd() {
    pollfd entry = {m_descriptor, POLLIN, 0};
    char byte = 0;
    return ::poll(&entry, 1, 5000) > 0 && ::read(m_descriptor, &byte, 1) <= 0;
}
