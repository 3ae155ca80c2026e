#include "simulator/filedescriptor.h"
#include "simulator/lineport.h"

#include <QHostAddress>
#include <QTcpServer>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace simulator {

namespace {

/** Keeps a new connection as a plain descriptor, so that one poll() serves the
 *  line whatever it is. */
class Listener : public QTcpServer {
public:
    explicit Listener(FileDescriptor& client) : m_client(client) {}

protected:
    void incomingConnection(qintptr descriptor) override {
        const int fd = int(descriptor);
        const int yes = 1;
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
        ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        m_client.reset(fd);
    }

private:
    FileDescriptor& m_client;
};

class TcpPort : public LinePort {
public:
    TcpPort(const QString& host, quint16 port) : m_host(host), m_port(port) {}

    Result<void> open() override;
    void close() override;
    bool isOpen() const override { return m_listener != nullptr; }
    QString path() const override {
        return QString::fromLatin1("tcp://%1:%2").arg(m_host).arg(m_port);
    }
    QByteArray read(int timeout_ms) override;
    void write(const QByteArray& bytes) override;

private:
    QByteArray readClient();

    const QString m_host;
    quint16 m_port;
    FileDescriptor m_client;
    std::unique_ptr<Listener> m_listener; // after m_client, which it fills
};

Result<void> TcpPort::open() {
    m_listener = std::make_unique<Listener>(m_client);
    if (m_listener->listen(QHostAddress(m_host), m_port)) {
        m_port = m_listener->serverPort();
        return {};
    }
    const Failure failure(path() + QLatin1String(": ") + m_listener->errorString());
    m_listener.reset();
    return failure;
}

void TcpPort::close() {
    // In this order: a client that sees its end must not reach the old listener.
    m_listener.reset();
    m_client.reset();
}

QByteArray TcpPort::read(int timeout_ms) {
    if (m_client.isOpen())
        return waitForInput(m_client.get(), timeout_ms) ? readClient() : QByteArray();
    if (waitForInput(int(m_listener->socketDescriptor()), timeout_ms))
        m_listener->waitForNewConnection(0);
    if (m_client.isOpen())
        log(path() + QLatin1String(": a client connected"));
    return QByteArray();
}

QByteArray TcpPort::readClient() {
    bool at_end = false;
    const QByteArray bytes = readAvailable(m_client.get(), at_end);
    if (at_end) {
        m_client.reset();
        log(path() + QLatin1String(": the client went"));
    }
    return bytes;
}

void TcpPort::write(const QByteArray& bytes) {
    if (m_client.isOpen())
        writeAvailable(m_client.get(), bytes);
}

} // namespace

std::unique_ptr<LinePort> makeTcpPort(const QString& host, quint16 port) {
    return std::make_unique<TcpPort>(host, port);
}

} // namespace simulator
