#include "runtime/panel/x86linuxhmi.h"

#include "runtime/panel/mountlisting.h"
#include "runtime/panel/panelpaths.h"

#include <QDebug>
#include <QMutexLocker>

namespace {

const int MountTimeoutMsecs = 30000;

QMap<QString, QString> usbMountsIn(const QString& table) {
    QMap<QString, QString> mounts;
    const QStringList lines = nonEmptyParts(table, '\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QStringList parts = splitAtBlanks(lines.at(i));
        if (parts.size() >= 3 && parts.at(2).startsWith(panelPaths().simulator_usb_mounts))
            mounts.insert(parts.at(2), parts.at(0));
    }
    return mounts;
}

} // namespace

X86LinuxHmi::X86LinuxHmi(StorageSystem& system) : m_system(system), wasMounted(0) {
    qDebug() << "XLH";
}

void X86LinuxHmi::checkGlobalMountStatus() {}

void X86LinuxHmi::processIOStatus() {}

void X86LinuxHmi::processDeviceMountStatus() {
    QByteArray table;
    const bool complete =
        m_system.readProgram(QString::fromLatin1("mount"), MountTimeoutMsecs, table);
    const QMap<QString, QString> mounts = usbMountsIn(QString::fromLatin1(table));
    {
        QMutexLocker lock(&m_mounts_mutex);
        usbMounts = mounts;
    }
    if (!complete)
        return;
    const int is_mounted = mounts.isEmpty() ? 0 : 1;
    if (is_mounted > wasMounted)
        emit platDeviceMounted(DEVICE_USB, 0, true);
    if (wasMounted > is_mounted)
        emit platDeviceMounted(DEVICE_USB, 0, false);
    wasMounted = is_mounted;
}

void X86LinuxHmi::processDeviceSpaceStatus() {
    Device measured;
    {
        QMutexLocker lock(&m_mounts_mutex);
        if (usbMounts.isEmpty())
            return;
        measured = usbDevice;
        measured.mountPath = usbMounts.constBegin().key();
        measured.devName = usbMounts.constBegin().value();
    }
    if (!m_system.measure(measured.mountPath.toLatin1(), measured.fsInfo))
        qDebug() << "get file system info failed";
    QMutexLocker lock(&m_mounts_mutex);
    usbDevice = measured;
}

quint64 X86LinuxHmi::getTotalSpace(DeviceType) {
    QMutexLocker lock(&m_mounts_mutex);
    const struct statvfs& info = usbDevice.fsInfo;
    return usbMounts.isEmpty() ? 0 : quint64(info.f_bsize) * info.f_blocks;
}

quint64 X86LinuxHmi::getFreeSpace(DeviceType) {
    QMutexLocker lock(&m_mounts_mutex);
    const struct statvfs& info = usbDevice.fsInfo;
    return usbMounts.isEmpty() ? 0 : quint64(info.f_bsize) * info.f_bfree;
}

QString X86LinuxHmi::getMount(DeviceType type) {
    QMutexLocker lock(&m_mounts_mutex);
    return type == DEVICE_USB && !usbMounts.isEmpty() ? usbMounts.constBegin().key() : QString();
}
