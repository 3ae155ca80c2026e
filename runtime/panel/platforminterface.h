#ifndef RUNTIME_PANEL_PLATFORMINTERFACE_H
#define RUNTIME_PANEL_PLATFORMINTERFACE_H

#include "runtime/base/panelservice.h"
#include "runtime/panel/storagedevice.h"

#include <QObject>
#include <QString>
#include <QStringList>

/** What the storage monitor asks of the machine it runs on.
 *
 *  Thread: the check and process operations are called by one thread at a time,
 *  first the one that made the object, then the monitor's; the queries by any
 *  thread at any time. Signals come from the thread of the operation, while no
 *  lock is held. */
class PANEL_SERVICE PlatformInterface : public QObject {
    Q_OBJECT

public:
    /** Takes stock of what is mounted already, silently. */
    virtual void checkGlobalMountStatus() = 0;

    /** Finds devices that came or went since the last call. */
    virtual void processDeviceMountStatus() = 0;

    /** Measures the file systems. */
    virtual void processDeviceSpaceStatus() = 0;

    /** Finds out whether data flows to or from the devices. */
    virtual void processIOStatus() = 0;

    /** Bytes; 0 without such a device. */
    virtual quint64 getTotalSpace(DeviceType type) = 0;
    virtual quint64 getFreeSpace(DeviceType type) = 0;

    /** The directory of the first device of the kind; empty without one. */
    virtual QString getMount(DeviceType type) = 0;

    /** Runs a program and waits for it: QProcess::execute. */
    int runCommand(const QString& program, const QStringList& arguments);

    /** Runs a program and leaves it alone: QProcess::startDetached. */
    bool runCommandDetached(const QString& program, const QStringList& arguments);

signals:
    void platDeviceMounted(int type, int index, bool mounted);
    void platDeviceInIO(int type, int index, bool active);
};

#endif
