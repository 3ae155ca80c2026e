#ifndef RUNTIME_DRIVERS_POLLING_COMMERROR_H
#define RUNTIME_DRIVERS_POLLING_COMMERROR_H

#include <QMutex>
#include <QString>

/** Whether the last exchange with a controller failed, and with which text.
 *  Any thread. */
class CommError {
public:
    CommError() : m_comm_error(false) {}

    void set(const QString& text) {
        QMutexLocker lock(&m_mutex);
        m_comm_error = true;
        m_last_error = text;
    }

    /** The text stays. */
    void clear() {
        QMutexLocker lock(&m_mutex);
        m_comm_error = false;
    }

    bool isSet() const {
        QMutexLocker lock(&m_mutex);
        return m_comm_error;
    }

    QString text() const {
        QMutexLocker lock(&m_mutex);
        return m_last_error;
    }

private:
    mutable QMutex m_mutex; // guards both members
    bool m_comm_error;
    QString m_last_error;
};

#endif
