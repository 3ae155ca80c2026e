// The monitor's passes of ArmLinuxHmi. Only their thread changes the list of
// devices, so they hold its mutex for changes and for what they have in common
// with the queries, never across a system call or a signal: a dying stick may
// let statvfs() hang, but no query.
#include "runtime/panel/armlinuxhmi.h"

#include "runtime/panel/diskcounters.h"
#include "runtime/panel/mountlisting.h"
#include "runtime/panel/panelpaths.h"

#include <QDebug>
#include <QFile>
#include <QMutexLocker>

namespace {

const qint64 MaxDiskLineBytes = 128;

} // namespace

void ArmLinuxHmi::checkGlobalMountStatus() {
    const QStringList lines = mountListing(m_system, QString::fromLatin1("mount"));
    for (int i = 0; i < lines.size(); ++i) {
        const QStringList parts = splitAtBlanks(lines.at(i));
        if (parts.size() < 3 || parts.at(1) != QLatin1String("on"))
            continue;
        const int type = determineType(parts.at(0));
        if (type == DEVICE_NONE)
            continue;
        qDebug() << "Found:" << lines.at(i);
        recordDevice(type, parts.at(0), parts.at(2));
        qDebug() << " ********************************************************** addDevice "
                 << qPrintable(parts.at(0));
    }
}

void ArmLinuxHmi::processDeviceMountStatus() {
    removeVanishedDevices();
    const QString command =
        QString::fromLatin1("mount | grep '%1'").arg(panelPaths().removable_mounts);
    const QStringList lines = mountListing(m_system, command);
    for (int i = 0; i < lines.size(); ++i) {
        const QStringList parts = splitAtBlanks(lines.at(i));
        if (parts.size() >= 3)
            detectDevice(parts.at(0), parts.at(2));
    }
}

QVector<Device*> ArmLinuxHmi::recordedDevices() {
    QMutexLocker lock(&m_devices_mutex);
    return devices;
}

bool ArmLinuxHmi::isRecorded(const QString& directory) {
    const QVector<Device*> known = recordedDevices();
    for (int i = 0; i < known.size(); ++i) {
        if (known.at(i)->mountPath == directory)
            return true;
    }
    return false;
}

void ArmLinuxHmi::removeVanishedDevices() {
    const QVector<Device*> known = recordedDevices();
    QVector<Device*> vanished;
    for (int i = 0; i < known.size(); ++i) {
        if (!m_system.exists(QFile::encodeName(known.at(i)->mountPath)))
            vanished.append(known.at(i));
    }
    for (int i = 0; i < vanished.size(); ++i) {
        qDebug() << "REMOVE:" << vanished.at(i)->devName << vanished.at(i)->mountPath;
        removeDevice(vanished.at(i));
    }
}

void ArmLinuxHmi::detectDevice(const QString& node, const QString& directory) {
    if (determineType(node) == DEVICE_NONE || isRecorded(directory))
        return;
    const int type = determineType(directory); // the node only tells that it is a device
    recordDevice(type, node, directory);
    emit platDeviceMounted(type, 0, true);
    qDebug() << "******************************************************** DETECT:" << node
             << directory << type;
}

void ArmLinuxHmi::processIOStatus() {
    QFile file(panelPaths().disk_statistics);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QList<Activity> changes;
    for (;;) {
        const QByteArray line = file.readLine(MaxDiskLineBytes);
        if (line.isEmpty())
            break;
        sampleActivity(line, changes);
    }
    for (int i = 0; i < changes.size(); ++i)
        emit platDeviceInIO(changes.at(i).type, 0, changes.at(i).active);
}

/** Notes what the line of statistics says about the devices; what has to be told
 *  goes to the end of @p changes. */
void ArmLinuxHmi::sampleActivity(const QByteArray& line, QList<Activity>& changes) {
    const QString node = QString::fromLatin1("/dev/") + QString::fromLatin1(diskName(line));
    quint64 sum = 0;
    if (!readDiskCounters(line, isPartitionNode(node), &sum))
        return;
    QMutexLocker lock(&m_devices_mutex);
    for (int i = 0; i < devices.size(); ++i) {
        Device* const device = devices.at(i);
        if (device->devName != node)
            continue;
        const bool active = sum != device->lastIOCount;
        if (active != device->inIO) {
            const Activity change = {device->type, active};
            changes.append(change);
        }
        device->inIO = active;
        device->lastIOCount = sum;
    }
}

void ArmLinuxHmi::processDeviceSpaceStatus() {
    const QVector<Device*> known = recordedDevices();
    for (int i = 0; i < known.size(); ++i) {
        if (known.at(i)->state == Device::Mounted)
            measureDevice(known.at(i));
    }
    struct statvfs info = {};
    m_system.measure("/", info);
    QMutexLocker lock(&m_devices_mutex);
    rootFsInfo = info;
}

void ArmLinuxHmi::measureDevice(Device* device) {
    struct statvfs info = {};
    if (!m_system.measure(QFile::encodeName(device->mountPath), info))
        qDebug() << "get file system info failed";
    QMutexLocker lock(&m_devices_mutex);
    device->fsInfo = info;
}
