#include "tests/unit/line/ptypair.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cstdlib>

PtyPair::PtyPair() : m_master(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0)
        std::abort();
    char path[64] = {};
    ptsname_r(m_master, path, sizeof path);
    m_path = QString::fromLatin1(path);
}

PtyPair::~PtyPair() {
    unplug();
}

void PtyPair::send(const QByteArray& bytes) {
    if (write(m_master, bytes.constData(), size_t(bytes.size())) != bytes.size())
        std::abort();
}

QByteArray PtyPair::receive(int count) {
    QByteArray bytes;
    while (bytes.size() < count) {
        pollfd waited = {m_master, POLLIN, 0};
        char buffer[512];
        if (poll(&waited, 1, 10000) < 1)
            return QByteArray();
        const ssize_t got = read(m_master, buffer, sizeof buffer);
        if (got < 1)
            return QByteArray();
        bytes.append(buffer, int(got));
    }
    return bytes;
}

void PtyPair::unplug() {
    if (m_master >= 0)
        close(m_master);
    m_master = -1;
}
