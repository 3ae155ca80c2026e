#include "simulator/filedescriptor.h"
#include "simulator/lineport.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>

namespace simulator {

namespace {

// How often a line without a client looks for one.
constexpr int ClientCheckMsecs = 2;

/** Makes the client's end what a new adapter is: no echo, no line editing, not
 *  reserved by anyone, nothing received. What a new client may already have
 *  sent is kept. False when it cannot be opened. */
bool resetClientEnd(const QByteArray& path) {
    const FileDescriptor client(::open(path.constData(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    termios mode = {};
    if (::tcgetattr(client.get(), &mode) != 0)
        return false;
    ::cfmakeraw(&mode);
    ::ioctl(client.get(), TIOCNXCL);
    return ::tcsetattr(client.get(), TCSANOW, &mode) == 0 && ::tcflush(client.get(), TCIFLUSH) == 0;
}

class PtyPort : public LinePort {
public:
    explicit PtyPort(const QString& link) : m_link(link) {}
    ~PtyPort() override { close(); }

    Result<void> open() override;
    void close() override;
    bool isOpen() const override { return m_master.isOpen(); }
    QString path() const override {
        return m_link.isEmpty() ? QString::fromLocal8Bit(m_client_path) : m_link;
    }
    QByteArray read(int timeout_ms) override;
    void write(const QByteArray& bytes) override;

private:
    Result<void> placeLink();
    void noteClient(bool present);
    bool hasClientNow() const { return (waitForInput(m_master.get(), 0) & POLLHUP) == 0; }
    void waitForClient();

    const QString m_link;
    FileDescriptor m_master;
    QByteArray m_client_path;
    bool m_has_client = false;
};

Result<void> PtyPort::open() {
    std::array<char, 64> path = {};
    m_has_client = false;
    m_master.reset(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    const int fd = m_master.get();
    if (fd < 0 || ::grantpt(fd) != 0 || ::unlockpt(fd) != 0 ||
        ::ptsname_r(fd, path.data(), path.size()) != 0 || !resetClientEnd(path.data())) {
        m_master.reset();
        return Failure(QString::fromLatin1("no pseudo-terminal: %1")
                           .arg(QString::fromLocal8Bit(std::strerror(errno))));
    }
    m_client_path = path.data();
    const Result<void> placed = m_link.isEmpty() ? Result<void>() : placeLink();
    if (!placed)
        m_master.reset();
    return placed;
}

Result<void> PtyPort::placeLink() {
    const QFileInfo existing(m_link);
    if (existing.isSymLink())
        QFile::remove(m_link);
    else if (existing.exists())
        return Failure(
            QString::fromLatin1("%1: there is a file of this name; it is left alone").arg(m_link));
    QFile target(QString::fromLocal8Bit(m_client_path));
    if (!target.link(m_link))
        return Failure(QString::fromLatin1("%1: %2").arg(m_link, target.errorString()));
    return {};
}

void PtyPort::close() {
    if (!isOpen())
        return;
    m_master.reset();
    const QFileInfo link(m_link);
    if (link.isSymLink() && link.symLinkTarget() == QString::fromLocal8Bit(m_client_path))
        QFile::remove(m_link);
}

QByteArray PtyPort::read(int timeout_ms) {
    const short events = waitForInput(m_master.get(), timeout_ms);
    bool at_end = false;
    const QByteArray bytes = events & POLLIN ? readAvailable(m_master.get(), at_end) : QByteArray();
    if (bytes.isEmpty() && events & POLLHUP)
        waitForClient();
    else
        noteClient(true);
    return bytes;
}

void PtyPort::waitForClient() {
    if (m_has_client) {
        // Whatever the client left set or unread goes with it. Where it left the
        // terminal reserved for itself, only a new terminal helps.
        const bool is_reset = resetClientEnd(m_client_path);
        noteClient(false);
        if (!is_reset && !hasClientNow()) {
            close();
            return;
        }
    }
    waitForInput(-1, ClientCheckMsecs);
}

void PtyPort::noteClient(bool present) {
    if (present != m_has_client)
        log(path() + QLatin1String(present ? ": opened" : ": no longer open"));
    m_has_client = present;
}

void PtyPort::write(const QByteArray& bytes) {
    // Without a client nothing may stay behind for the next one.
    if (hasClientNow())
        writeAvailable(m_master.get(), bytes);
}

} // namespace

std::unique_ptr<LinePort> makePtyPort(const QString& link) {
    return std::make_unique<PtyPort>(link);
}

} // namespace simulator
