#ifndef TESTS_SUPPORT_SCOPEDPANELPATHS_H
#define TESTS_SUPPORT_SCOPEDPANELPATHS_H

#include "runtime/panel/panelpaths.h"

/** Puts the panel's paths below another folder while it lives. The mount points
 *  stay: they are found in `mount`'s output. */
class ScopedPanelPaths {
public:
    explicit ScopedPanelPaths(const QString& folder) : m_previous(panelPaths()) {
        PanelPaths paths;
        paths.fram_device = folder + QString::fromLatin1("/fram");
        paths.buzzer_device = folder + QString::fromLatin1("/event1");
        paths.saved_settings = folder + paths.saved_settings;
        paths.mount_listing = folder + QString::fromLatin1("/devchk");
        paths.disk_statistics = folder + QString::fromLatin1("/diskstats");
        paths.usb_folder = folder + paths.usb_folder;
        paths.sd_folder = folder + paths.sd_folder;
        setPanelPaths(paths);
    }
    ~ScopedPanelPaths() { setPanelPaths(m_previous); }
    ScopedPanelPaths(const ScopedPanelPaths&) = delete;
    ScopedPanelPaths& operator=(const ScopedPanelPaths&) = delete;

private:
    PanelPaths m_previous;
};

#endif
