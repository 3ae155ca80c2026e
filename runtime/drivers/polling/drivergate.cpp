#include "runtime/drivers/polling/drivergate.h"

#include <QMutexLocker>

DriverGate::DriverGate() : m_closed(false), m_inside(0) {}

void DriverGate::close() {
    QMutexLocker lock(&m_mutex);
    m_closed = true;
}

void DriverGate::waitUntilEmpty() {
    QMutexLocker lock(&m_mutex);
    while (m_inside > 0)
        m_emptied.wait(&m_mutex);
}

bool DriverGate::isClosed() {
    QMutexLocker lock(&m_mutex);
    return m_closed;
}

bool DriverGate::enter() {
    QMutexLocker lock(&m_mutex);
    if (m_closed)
        return false;
    ++m_inside;
    return true;
}

void DriverGate::leave() {
    QMutexLocker lock(&m_mutex);
    if (--m_inside == 0)
        m_emptied.wakeAll();
}

DriverGate::Pass::Pass(DriverGate& gate) : m_gate(gate), m_granted(gate.enter()) {}

DriverGate::Pass::~Pass() {
    if (m_granted)
        m_gate.leave();
}
