#include "apps/dmc50ctl/silentline.h"

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

SilentLine::SilentLine() : m_descriptor(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    char path[64];
    if (m_descriptor >= 0 && grantpt(m_descriptor) == 0 && unlockpt(m_descriptor) == 0 &&
        ptsname_r(m_descriptor, path, sizeof path) == 0)
        m_path = QString::fromLocal8Bit(path);
}

SilentLine::~SilentLine() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}
