#ifndef RUNTIME_PANEL_ARMLINUXHMI_H
#define RUNTIME_PANEL_ARMLINUXHMI_H

#include "runtime/panel/platforminterface.h"
#include "runtime/panel/storagesystem.h"

#include <QMutex>
#include <QVector>

/** The panel: sticks and cards appear in `mount`'s output below the folder of
 *  removable mounts, and their activity in /proc/diskstats. */
class PANEL_SERVICE ArmLinuxHmi : public PlatformInterface {
    Q_OBJECT

public:
    /** Makes the panel's two mount directories. @p system must outlive the object. */
    explicit ArmLinuxHmi(StorageSystem& system = StorageSystem::real());

    /** Unmounts all devices. */
    ~ArmLinuxHmi() override;

    void checkGlobalMountStatus() override;
    void processDeviceMountStatus() override;
    void processDeviceSpaceStatus() override;
    void processIOStatus() override;

    /** Of the first device of the kind; of DEVICE_ROOT, the panel itself. */
    quint64 getTotalSpace(DeviceType type) override;

    /** For DEVICE_ROOT what unprivileged users may fill, for a device all free
     *  blocks; an SD card counts only by its partitions' nodes. */
    quint64 getFreeSpace(DeviceType type) override;

    QString getMount(DeviceType type) override;

    /** The DeviceType that a node's or a directory's name tells. */
    int determineType(const QString& name);

    /** The directory made for a kind of device; the monitor does not use it. */
    QString determineMountPath(DeviceType type);

    /** Appends an empty record. While other threads may ask, the caller holds
     *  the mutex of `devices` until the record is filled in. */
    Device* addDevice();

    /** Forgets, unmounts and deletes one of the records and tells so. */
    void removeDevice(Device* device);

    /** Forgets, unmounts and deletes all records, the last one first, silently. */
    void testRemove();

    /** Where the node @p dev is mounted, asked of `mount` now; empty if nowhere.
     *  Uses the monitor's scratch file, so not while the monitor runs. */
    QString mounted(const QString& dev);

private:
    Q_DISABLE_COPY(ArmLinuxHmi)

    struct Activity {
        int type;
        bool active;
    };

    void recordDevice(int type, const QString& node, const QString& directory);
    QVector<Device*> recordedDevices();
    bool isRecorded(const QString& directory);
    void removeVanishedDevices();
    void detectDevice(const QString& node, const QString& directory);
    void sampleActivity(const QByteArray& line, QList<Activity>& changes);
    void measureDevice(Device* device);
    Device* firstOfType(int type, const QString& node_part = QString());

    StorageSystem& m_system;
    QMutex m_devices_mutex;    // guards all below
    QVector<Device*> devices;  // owned; in order of detection; only the monitor changes it
    struct statvfs rootFsInfo; // of "/"
};

#endif
