#include "host/transfer/privatestick.h"

#include "runtime/panel/panelpaths.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host {

namespace {

class Descriptor {
public:
    explicit Descriptor(const QByteArray& directory)
        : m_descriptor(::open(directory.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }

    bool isValid() const { return m_descriptor >= 0; }

    /** A path to the folder that stays good when something is mounted over it. */
    QByteArray path() const { return "/proc/self/fd/" + QByteArray::number(m_descriptor); }

private:
    const int m_descriptor;
};

QString systemError() {
    // Without a word about spaces, this reads like a full disk.
    return errno == ENOSPC ? QStringLiteral("no name space is left")
                           : QString::fromLocal8Bit(std::strerror(errno));
}

bool writeFile(const char* path, const QByteArray& text) {
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           file.write(text) == text.size();
}

/** Everybody stays who he is: groups such as "dialout" go on to open ports. */
bool mapIdentity(uid_t user, gid_t group) {
    const auto line = [](unsigned id) {
        return QByteArray::number(id) + ' ' + QByteArray::number(id) + " 1";
    };
    return writeFile("/proc/self/setgroups", "deny") &&
           writeFile("/proc/self/uid_map", line(user)) &&
           writeFile("/proc/self/gid_map", line(group));
}

bool enterNamespaces() {
    if (::unshare(CLONE_NEWNS) == 0)
        return true;
    if (errno != EPERM)
        return false;
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && mapIdentity(user, group);
}

/** True if what is mounted at @p place is mounted in other name spaces, too. */
bool isShared(const QByteArray& place) {
    QFile mounts(QStringLiteral("/proc/self/mountinfo"));
    if (!mounts.open(QIODevice::ReadOnly))
        return true;
    bool shared = true;
    for (const QByteArray& line : mounts.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.value(4) == place)
            shared = line.contains(" shared:");
    }
    return shared;
}

/** Unmounting a real stick still reaches this process; its own mounts reach nobody.
 *  In a chroot whose root is no mount point this cannot be asked for: whether it
 *  was needed shows once something is mounted. */
bool leaveSharedMounts() {
    return ::mount("none", "/", nullptr, MS_REC | MS_SLAVE, nullptr) == 0 || errno == EINVAL;
}

bool bind(const QByteArray& source, const QByteArray& target) {
    return ::mount(source.constData(), target.constData(), nullptr, MS_BIND | MS_REC, nullptr) == 0;
}

/** Shows @p name of the covered folder again in the one that covers it. */
void uncover(const QByteArray& covered, const QByteArray& folder, const char* name) {
    const QByteArray old_path = covered + '/' + name;
    const QByteArray new_path = folder + '/' + name;
    const QFileInfo old(QFile::decodeName(old_path));
    if (old.isSymLink()) {
        char target[PATH_MAX];
        const ssize_t length = ::readlink(old_path.constData(), target, sizeof target - 1);
        if (length > 0)
            static_cast<void>(
                ::symlink(QByteArray(target, int(length)).constData(), new_path.constData()));
    } else if (old.isDir() && ::mkdir(new_path.constData(), 0755) == 0) {
        bind(old_path, new_path);
    }
}

void uncoverAll(const QByteArray& covered, const QByteArray& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(covered.constData()), ::closedir);
    if (!entries)
        return;
    while (const dirent* const entry = ::readdir(entries.get())) {
        if (entry->d_name[0] != '.')
            uncover(covered, folder, entry->d_name);
    }
}

/** The stick's place need not exist and cannot be made in the machine's own
 *  folder: so a folder of this process covers that one. */
bool mountAt(const QByteArray& place, const QByteArray& directory) {
    const QByteArray parent = place.left(place.lastIndexOf('/'));
    const Descriptor source(directory); // opened in the new name space: it can be bound
    const Descriptor covered(parent);
    if (!source.isValid() || !covered.isValid())
        return false;
    if (::mount("private", parent.constData(), "tmpfs", 0, "mode=755,size=64k") != 0)
        return false;
    if (isShared(parent)) {
        ::umount(parent.constData());
        errno = EINVAL;
        return false;
    }
    if (::mkdir(place.constData(), 0755) != 0 || !bind(source.path(), place))
        return false;
    uncoverAll(covered.path(), parent);
    return true;
}

} // namespace

Result<void> mountPrivateStick(const QString& directory) {
    const QFileInfo folder(directory);
    if (!folder.isDir())
        return Failure(QString::fromLatin1("%1: no such folder").arg(directory));
    const QByteArray source = QFile::encodeName(folder.canonicalFilePath());
    const QByteArray place = QFile::encodeName(panelPaths().simulator_usb_mounts);
    if (enterNamespaces() && leaveSharedMounts() && mountAt(place, source))
        return {};
    return Failure(QString::fromLatin1("this kernel refuses a private mount of %1 (%2)")
                       .arg(directory, systemError()));
}

} // namespace host
