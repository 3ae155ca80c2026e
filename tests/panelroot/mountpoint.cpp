#include "tests/panelroot/mountpoint.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

MountPoint::MountPoint(const QByteArray& node, const QByteArray& directory,
                       const QByteArray& options)
    : m_directory(directory), m_made_directory(!QFile::exists(QString::fromLatin1(directory))) {
    EXPECT_TRUE(QDir().mkpath(this->directory()));
    EXPECT_EQ(mount(node.constData(), directory.constData(), "tmpfs", 0, options.constData()), 0)
        << directory.constData() << ": " << std::strerror(errno);
}

MountPoint::~MountPoint() {
    takeAway();
}

void MountPoint::takeAway() {
    umount(m_directory.constData());
    if (m_made_directory)
        rmdir(m_directory.constData());
    m_made_directory = false;
}

bool MountPoint::isMounted() const {
    struct stat inside = {};
    struct stat above = {};
    return stat(m_directory.constData(), &inside) == 0 &&
           stat((m_directory + "/..").constData(), &above) == 0 && inside.st_dev != above.st_dev;
}
