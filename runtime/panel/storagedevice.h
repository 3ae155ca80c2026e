#ifndef RUNTIME_PANEL_STORAGEDEVICE_H
#define RUNTIME_PANEL_STORAGEDEVICE_H

#include <QString>
#include <QtGlobal>

#include <sys/statvfs.h>

/** Kinds of storage, also passed as plain ints in signals. */
enum DeviceType {
    DEVICE_NONE = 0,
    DEVICE_USB = 1, ///< USB stick
    DEVICE_SD = 2,  ///< SD card
    DEVICE_ROOT = 3 ///< the panel's own root file system, for its space only
};

/** One mounted partition. */
struct Device {
    static const int Mounted = 2; ///< the only state there is

    int type = DEVICE_NONE;     ///< a DeviceType
    int state = 0;              ///< Mounted once the record is complete
    struct statvfs fsInfo = {}; ///< all zero until measured, and after a failure
    QString devName;            ///< node as `mount` prints it, such as /dev/sda1
    QString mountPath;          ///< such as /run/media/sda1
    quint64 lastIOCount = 0;    ///< sum of the counters at the last sample
    bool inIO = false;          ///< whether the last two samples differed
};

#endif
