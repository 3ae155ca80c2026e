#ifndef TESTS_PANELROOT_MOUNTPOINT_H
#define TESTS_PANELROOT_MOUNTPOINT_H

#include <QByteArray>
#include <QString>

/** A RAM disk that is mounted under the name of a disk's node, as an automounter
 *  does: the directory is made before and removed after. */
class MountPoint {
public:
    /** Mounts @p node at @p directory; @p options as mount -o takes them. */
    MountPoint(const QByteArray& node, const QByteArray& directory,
               const QByteArray& options = "size=1m");

    ~MountPoint();

    /** Unmounts, unless that has happened, and removes the directory if it was
     *  made here. */
    void takeAway();

    MountPoint(const MountPoint&) = delete;
    MountPoint& operator=(const MountPoint&) = delete;

    QString directory() const { return QString::fromLatin1(m_directory); }

    /** Whether the directory is a file system of its own. */
    bool isMounted() const;

private:
    QByteArray m_directory;
    bool m_made_directory;
};

#endif
