#include "tests/unit/dmc50v3/transfer/simulatedtransferenvironment.h"

#include <QMetaObject>

SimulatedTransferEnvironment::SimulatedTransferEnvironment(SimulatedClock& clock,
                                                           const QString& stick)
    : m_clock(clock), m_watched(*this), m_stick(stick), m_syncs(0) {}

qint64 SimulatedTransferEnvironment::WatchedClock::msecsSinceBoot() {
    return m_environment.m_read_clock ? m_environment.m_read_clock()
                                      : m_environment.m_clock.msecsSinceBoot();
}

int SimulatedTransferEnvironment::WatchedClock::sleepMsecs(quint32 msecs) {
    if (m_environment.m_before_sleep)
        m_environment.m_before_sleep(msecs);
    return m_environment.m_clock.sleepMsecs(msecs);
}

void SimulatedTransferEnvironment::callLater(int msecs, QObject* receiver, const char* slot) {
    const QByteArray method = slot + 1; // the code that SLOT() puts in front
    QMutexLocker lock(&m_mutex);
    m_delays.append(msecs);
    m_calls.append(
        Call{m_clock.msecsSinceBoot() + msecs, receiver, method.left(method.indexOf('('))});
}

QString SimulatedTransferEnvironment::usbMountPath() {
    QMutexLocker lock(&m_mutex);
    return m_stick;
}

void SimulatedTransferEnvironment::syncStorage() {
    if (m_on_sync)
        m_on_sync();
    QMutexLocker lock(&m_mutex);
    ++m_syncs;
}

void SimulatedTransferEnvironment::mountStick(const QString& path) {
    QMutexLocker lock(&m_mutex);
    m_stick = path;
}

int SimulatedTransferEnvironment::syncs() const {
    QMutexLocker lock(&m_mutex);
    return m_syncs;
}

QList<int> SimulatedTransferEnvironment::delays() const {
    QMutexLocker lock(&m_mutex);
    return m_delays;
}

int SimulatedTransferEnvironment::pendingCalls() const {
    QMutexLocker lock(&m_mutex);
    return m_calls.size();
}

bool SimulatedTransferEnvironment::takeDueCall(Call& call) {
    QMutexLocker lock(&m_mutex);
    for (int i = 0; i < m_calls.size(); ++i) {
        if (m_calls.at(i).due <= m_clock.msecsSinceBoot()) {
            call = m_calls.takeAt(i);
            return true;
        }
    }
    return false;
}

void SimulatedTransferEnvironment::pass(int msecs) {
    m_clock.advance(msecs);
    Call call = Call();
    while (takeDueCall(call))
        QMetaObject::invokeMethod(call.receiver, call.method.constData(),
                                  Qt::BlockingQueuedConnection);
}
