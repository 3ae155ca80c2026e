#ifndef RUNTIME_DRIVERS_POLLING_DRIVERGATE_H
#define RUNTIME_DRIVERS_POLLING_DRIVERGATE_H

#include <QMutex>
#include <QWaitCondition>
#include <QtGlobal>

/** Lets the driver leave while another thread may be calling it: after close()
 *  no call begins, and waitUntilEmpty() returns when the last one has ended.
 *  Safe from any thread. */
class DriverGate {
public:
    DriverGate();

    /** No call begins after this. Never blocks for long. */
    void close();

    /** Blocks until no call is inside. Never call it from inside a call. */
    void waitUntilEmpty();

    bool isClosed();

    /** One call: enters for as long as it lives, unless the gate is closed. */
    class Pass {
    public:
        explicit Pass(DriverGate& gate);
        ~Pass();

        /** False: the driver is gone; neither it nor its port may be touched. */
        bool isGranted() const { return m_granted; }

    private:
        Q_DISABLE_COPY(Pass)

        DriverGate& m_gate;
        const bool m_granted;
    };

private:
    Q_DISABLE_COPY(DriverGate)

    bool enter();
    void leave();

    QMutex m_mutex; // guards the two below
    bool m_closed;
    int m_inside; // calls now running
    QWaitCondition m_emptied;
};

#endif
