#ifndef APPS_DMC50SIM_LOGFILE_H
#define APPS_DMC50SIM_LOGFILE_H

#include "common/result.h"

#include <QElapsedTimer>
#include <QFile>

#include <mutex>

/** Tells on the standard error that @p file takes no more. */
void tellOfLostOutput(const QString& file, const QString& error);

/** The program's log: one line per event with the seconds since the start. Any
 *  thread may write. A line that cannot be written is lost; of the first one the
 *  standard error tells. */
class LogFile {
public:
    /** Opens @p name, "-" being the standard output. */
    Result<void> open(const QString& name);

    void write(const QString& text);

private:
    std::mutex m_mutex; // guards all below
    QFile m_file;
    bool m_has_lost_a_line = false;
    QElapsedTimer m_since_start;
};

#endif
