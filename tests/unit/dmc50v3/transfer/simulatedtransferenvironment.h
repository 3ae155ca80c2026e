#ifndef TESTS_UNIT_DMC50V3_TRANSFER_SIMULATEDTRANSFERENVIRONMENT_H
#define TESTS_UNIT_DMC50V3_TRANSFER_SIMULATEDTRANSFERENVIRONMENT_H

#include "runtime/drivers/dmc50v3/transfer/transferenvironment.h"
#include "tests/support/simulatedclock.h"

#include <QByteArray>
#include <QList>
#include <QMutex>
#include <QObject>

#include <functional>

/** The transfers' surroundings in a test: virtual time, and a stick that can be
 *  pulled and put back at any moment from any thread. */
class SimulatedTransferEnvironment : public TransferEnvironment {
public:
    SimulatedTransferEnvironment(SimulatedClock& clock, const QString& stick);

    Clock& clock() override { return m_watched; }
    void callLater(int msecs, QObject* receiver, const char* slot) override;
    QString usbMountPath() override;
    void syncStorage() override;

    /** Called in the thread that is about to sleep, a transfer's or its starter's.
     *  Set it before a transfer starts. */
    std::function<void(quint32 msecs)> m_before_sleep;

    /** Called in the transfer's thread when it wants the storage synced; likewise. */
    std::function<void()> m_on_sync;

    /** What transfers read from the clock in place of the simulated time; likewise. */
    std::function<qint64()> m_read_clock;

    /** An empty path: the stick is pulled. */
    void mountStick(const QString& path);
    void pullStick() { mountStick(QString()); }

    int syncs() const;

    /** The calls asked for until now: after how many milliseconds each. */
    QList<int> delays() const;
    int pendingCalls() const;

    /** Lets time pass and makes the calls that have become due, each in its
     *  receiver's thread; returns when they have returned. */
    void pass(int msecs);

private:
    struct Call {
        qint64 due;
        QObject* receiver;
        QByteArray method; // without its parentheses
    };
    bool takeDueCall(Call& call);

    /** The simulated clock behind the two hooks. */
    class WatchedClock : public Clock {
    public:
        explicit WatchedClock(SimulatedTransferEnvironment& environment)
            : m_environment(environment) {}
        qint64 msecsSinceBoot() override;
        int sleepMsecs(quint32 msecs) override;

    private:
        SimulatedTransferEnvironment& m_environment;
    };

    SimulatedClock& m_clock;
    WatchedClock m_watched;
    mutable QMutex m_mutex; // guards all below
    QString m_stick;
    QList<Call> m_calls;
    QList<int> m_delays;
    int m_syncs;
};

#endif
