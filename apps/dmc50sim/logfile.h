#ifndef APPS_DMC50SIM_LOGFILE_H
#define APPS_DMC50SIM_LOGFILE_H

#include <QElapsedTimer>
#include <QFile>

#include <mutex>

/** The program's log: one line per event with the seconds since the start. Any
 *  thread may write. */
class LogFile {
public:
    /** Opens @p name, "-" being the standard output. Returns the error, empty on
     *  success. */
    QString open(const QString& name);

    void write(const QString& text);

private:
    std::mutex m_mutex; // guards all below
    QFile m_file;
    QElapsedTimer m_since_start;
};

#endif
