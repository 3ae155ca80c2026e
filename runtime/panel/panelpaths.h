#ifndef RUNTIME_PANEL_PANELPATHS_H
#define RUNTIME_PANEL_PANELPATHS_H

#include "runtime/base/panelservice.h"

#include <QString>

/** Where the panel's devices, files and mount points are. The defaults are the
 *  panel's own and the same on every machine. */
struct PanelPaths {
    QString fram_device = QString::fromLatin1("/dev/fram");
    QString buzzer_device = QString::fromLatin1("/dev/input/event1");

    /** The settings' save file. Its name must be "savedFram": the folder is the
     *  path without that name. */
    QString saved_settings = QString::fromLatin1("/halvoric/configs/savedFram");

    /** Scratch file that receives the output of `mount`. It is part of a shell
     *  command, so it must not need quoting. */
    QString mount_listing = QString::fromLatin1("/tmp/devchk");

    QString disk_statistics = QString::fromLatin1("/proc/diskstats");

    QString memory_information = QString::fromLatin1("/proc/meminfo");

    QString usb_folder = QString::fromLatin1("/usb");
    QString sd_folder = QString::fromLatin1("/sd");

    /** The panel mounts removable devices below this. */
    QString removable_mounts = QString::fromLatin1("/run/media");

    /** The PC simulator's USB sticks are mounted at paths that begin so. */
    QString simulator_usb_mounts = QString::fromLatin1("/media/usb");
};

/** The paths in force. They live to the end of the process, because the
 *  monitor's thread may outlive main(). Any thread. */
PANEL_SERVICE const PanelPaths& panelPaths();

/** For tests: puts other paths in force. Not while a panel service's thread
 *  runs; services read the paths whenever they use them. */
PANEL_SERVICE void setPanelPaths(const PanelPaths& paths);

#endif
