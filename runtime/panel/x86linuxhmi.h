#ifndef RUNTIME_PANEL_X86LINUXHMI_H
#define RUNTIME_PANEL_X86LINUXHMI_H

#include "runtime/panel/platforminterface.h"
#include "runtime/panel/storagesystem.h"

#include <QMap>
#include <QMutex>

/** The PC simulator: only USB sticks, where the desktop mounts them. */
class PANEL_SERVICE X86LinuxHmi : public PlatformInterface {
    Q_OBJECT

public:
    /** @p system must outlive the object. */
    explicit X86LinuxHmi(StorageSystem& system = StorageSystem::real());

    void checkGlobalMountStatus() override;
    void processDeviceMountStatus() override;
    void processDeviceSpaceStatus() override;
    void processIOStatus() override;

    /** Of the first stick by directory, whatever the type. */
    quint64 getTotalSpace(DeviceType type) override;
    quint64 getFreeSpace(DeviceType type) override;

    /** The first mount directory in alphabetical order. */
    QString getMount(DeviceType type) override;

private:
    Q_DISABLE_COPY(X86LinuxHmi)

    StorageSystem& m_system;
    int wasMounted;                   // 1 if a stick was there last time; the monitor's
    QMutex m_mounts_mutex;            // guards all below
    QMap<QString, QString> usbMounts; // mount directory to device node
    Device usbDevice;                 // the first of them, as last measured
};

#endif
