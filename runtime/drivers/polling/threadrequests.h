#ifndef RUNTIME_DRIVERS_POLLING_THREADREQUESTS_H
#define RUNTIME_DRIVERS_POLLING_THREADREQUESTS_H

#include <QMutex>

#include <atomic>

/** What other threads ask of the polling thread itself: bits that it looks at
 *  between requests, and its end. Any thread. */
class ThreadRequests {
public:
    ThreadRequests() : m_stop(false), m_flags(0) {}

    /** Never taken back. */
    void stop() { m_stop = true; }
    bool isStopped() const { return m_stop; }

    void setFlag(quint8 bits) {
        QMutexLocker lock(&m_flags_mutex);
        m_flags = quint8(m_flags | bits);
    }

    void clearFlag(quint8 bits) {
        QMutexLocker lock(&m_flags_mutex);
        m_flags = quint8(m_flags & ~bits);
    }

    quint8 getFlag() const {
        QMutexLocker lock(&m_flags_mutex);
        return m_flags;
    }

private:
    std::atomic<bool> m_stop;
    mutable QMutex m_flags_mutex; // guards m_flags
    quint8 m_flags;
};

#endif
