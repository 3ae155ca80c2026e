#include "tests/support/simulatedclock.h"

SimulatedClock::SimulatedClock(int participants, qint64 start_msecs)
    : m_now(start_msecs), m_participants(participants) {}

qint64 SimulatedClock::msecsSinceBoot() {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_now;
}

int SimulatedClock::sleepMsecs(quint32 msecs) {
    std::unique_lock<std::mutex> lock(m_mutex);
    const qint64 wake = m_now + msecs;
    const auto mine = m_wake_times.insert(wake);
    moveIfAllSleep();
    m_changed.notify_all();
    m_changed.wait(lock, [&] { return m_now >= wake; });
    m_wake_times.erase(mine);
    moveIfAllSleep(); // unless we are one of them, all may sleep by now
    m_changed.notify_all();
    return 0;
}

void SimulatedClock::setParticipants(int participants) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_participants = participants;
    moveIfAllSleep();
    m_changed.notify_all();
}

void SimulatedClock::advance(qint64 msecs) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_now += msecs;
    m_changed.notify_all();
}

void SimulatedClock::waitForSleepers(int count) {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [&] { return countSleepers() >= count; });
}

int SimulatedClock::sleepers() {
    std::lock_guard<std::mutex> lock(m_mutex);
    return countSleepers();
}

int SimulatedClock::countSleepers() const {
    int asleep = 0;
    for (qint64 wake : m_wake_times)
        asleep += wake > m_now;
    return asleep;
}

void SimulatedClock::moveIfAllSleep() {
    if (m_participants == 0 || m_wake_times.empty())
        return;
    // A thread whose time has come but which has not yet run is awake.
    const qint64 earliest = *m_wake_times.begin();
    if (int(m_wake_times.size()) >= m_participants && earliest > m_now)
        m_now = earliest;
}
