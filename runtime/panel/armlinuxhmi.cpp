#include "runtime/panel/armlinuxhmi.h"

#include "runtime/panel/mountlisting.h"
#include "runtime/panel/panelpaths.h"

#include <QDebug>
#include <QMutexLocker>
#include <QRegExp>

#include <memory>

namespace {

/** Whether a shell takes @p word as it stands. */
bool isPlainWord(const QString& word) {
    return QRegExp(QString::fromLatin1("[A-Za-z0-9/][A-Za-z0-9/_.:+-]*")).exactMatch(word);
}

quint64 bytesIn(unsigned long block_bytes, fsblkcnt_t blocks) {
    return quint64(block_bytes) * quint64(blocks); // a panel's long would wrap at 4 GiB
}

} // namespace

ArmLinuxHmi::ArmLinuxHmi(StorageSystem& system) : m_system(system), rootFsInfo() {
    m_system.runShell("mkdir " + panelPaths().sd_folder.toLocal8Bit());
    m_system.runShell("mkdir " + panelPaths().usb_folder.toLocal8Bit());
}

ArmLinuxHmi::~ArmLinuxHmi() {
    testRemove();
}

int ArmLinuxHmi::determineType(const QString& name) {
    if (name.contains(QLatin1String("sd")))
        return DEVICE_USB;
    return name.contains(QLatin1String("mmcblk1")) ? DEVICE_SD : DEVICE_NONE;
}

QString ArmLinuxHmi::determineMountPath(DeviceType type) {
    if (type == DEVICE_USB)
        return panelPaths().usb_folder;
    return type == DEVICE_SD ? panelPaths().sd_folder : QString();
}

Device* ArmLinuxHmi::addDevice() {
    devices.append(new Device);
    return devices.last();
}

void ArmLinuxHmi::recordDevice(int type, const QString& node, const QString& directory) {
    QMutexLocker lock(&m_devices_mutex);
    Device* const device = addDevice();
    device->type = type;
    device->devName = node;
    device->mountPath = directory;
    device->state = Device::Mounted;
}

void ArmLinuxHmi::removeDevice(Device* device) {
    const std::unique_ptr<Device> removed(device);
    {
        QMutexLocker lock(&m_devices_mutex);
        devices.remove(devices.indexOf(device));
    }
    m_system.unmount(removed->mountPath.toLatin1());
    emit platDeviceMounted(removed->type, 0, false);
}

void ArmLinuxHmi::testRemove() {
    QVector<Device*> removed;
    {
        QMutexLocker lock(&m_devices_mutex);
        removed.swap(devices);
    }
    while (!removed.isEmpty()) {
        const std::unique_ptr<Device> device(removed.last());
        removed.pop_back();
        m_system.unmount(device->mountPath.toLatin1());
    }
}

QString ArmLinuxHmi::mounted(const QString& dev) {
    if (!isPlainWord(dev)) // not a node, and the shell would make something else of it
        return QString();
    const QStringList lines = mountListing(m_system, QString::fromLatin1("mount | grep ") + dev);
    const QStringList parts = splitAtBlanks(lines.value(0));
    if (parts.size() <= 2 || parts.first() != dev)
        return QString();
    qDebug() << " ArmLinuxHmi::mounted ";
    return parts.at(2);
}

/** The first record of the type whose node contains @p node_part, or null. The
 *  caller holds m_devices_mutex. */
Device* ArmLinuxHmi::firstOfType(int type, const QString& node_part) {
    for (int i = 0; i < devices.size(); ++i) {
        Device* const device = devices.at(i);
        if (device->type == type && device->devName.contains(node_part))
            return device;
    }
    return nullptr;
}

QString ArmLinuxHmi::getMount(DeviceType type) {
    QMutexLocker lock(&m_devices_mutex);
    const Device* const device = firstOfType(type);
    return device ? device->mountPath : QString();
}

quint64 ArmLinuxHmi::getTotalSpace(DeviceType type) {
    QMutexLocker lock(&m_devices_mutex);
    if (type == DEVICE_ROOT)
        return bytesIn(rootFsInfo.f_bsize, rootFsInfo.f_blocks);
    const Device* const device = firstOfType(type);
    return device ? bytesIn(device->fsInfo.f_bsize, device->fsInfo.f_blocks) : 0;
}

quint64 ArmLinuxHmi::getFreeSpace(DeviceType type) {
    QMutexLocker lock(&m_devices_mutex);
    if (type == DEVICE_ROOT)
        return bytesIn(rootFsInfo.f_bsize, rootFsInfo.f_bavail);
    if (type != DEVICE_USB && type != DEVICE_SD)
        return 0;
    const QString node_part = QString::fromLatin1(type == DEVICE_SD ? "/dev/mmcblk1p" : "");
    const Device* const device = firstOfType(type, node_part);
    return device ? bytesIn(device->fsInfo.f_bsize, device->fsInfo.f_bfree) : 0;
}
