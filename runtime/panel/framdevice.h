#ifndef RUNTIME_PANEL_FRAMDEVICE_H
#define RUNTIME_PANEL_FRAMDEVICE_H

#include "runtime/base/panelservice.h"

#include <QByteArray>

#include <sys/types.h>

/** The system calls that reach the FRAM's character device, so that tests can
 *  record them and let them fail. Results and errors are the kernel's. Called
 *  on the thread of the settings. */
class PANEL_SERVICE FramDevice {
public:
    virtual ~FramDevice() {}

    virtual int open(const QByteArray& path, int flags);
    virtual int ioctl(int fd, unsigned long request, int argument);
    virtual ssize_t pwrite(int fd, const void* buffer, size_t length, off_t offset);
    virtual ssize_t pread(int fd, void* buffer, size_t length, off_t offset);
    virtual int close(int fd);

    /** The kernel's own calls; lives for ever. */
    static FramDevice& system();
};

#endif
