#ifndef APPS_DMC50CTL_SILENTLINE_H
#define APPS_DMC50CTL_SILENTLINE_H

#include <QString>

/** A port with nobody at its other end, for work that needs the driver but no
 *  controller. It is there as long as this object. */
class SilentLine {
public:
    SilentLine();
    SilentLine(const SilentLine&) = delete;
    SilentLine& operator=(const SilentLine&) = delete;
    ~SilentLine();

    /** The pty to open; empty when the system gives none. */
    QString path() const { return m_path; }

private:
    const int m_descriptor; // the pty's other end; -1: none
    QString m_path;
};

#endif
