#include "host/session/lineattendance.h"

#include <chrono>

namespace host {

void LineAttendance::note(const Exchange& exchange) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_attended)
        m_noted.push_back(exchange);
}

void LineAttendance::betweenExchanges() {
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_attended)
        return;
    m_turn = Turn::Offered;
    m_changed.notify_all();
    m_changed.wait_for(lock, std::chrono::milliseconds(HoldMsecs),
                       [this] { return m_turn == Turn::None; });
    m_turn = Turn::None;
    m_noted.clear();
}

void LineAttendance::attend() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_attended = true;
    m_noted.clear();
}

void LineAttendance::leave() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_attended = false;
    m_turn = Turn::None;
    m_changed.notify_all();
}

bool LineAttendance::await(int msecs) {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::milliseconds(msecs),
                       [this] { return m_turn == Turn::Offered || m_woken; });
    m_woken = false;
    if (m_turn != Turn::Offered)
        return false;
    m_turn = Turn::Taken;
    m_shown.swap(m_noted);
    m_noted.clear();
    return true;
}

bool LineAttendance::release() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool held = m_turn == Turn::Taken;
    m_turn = Turn::None;
    m_changed.notify_all();
    return held;
}

void LineAttendance::wake() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_woken = true;
    m_changed.notify_all();
}

} // namespace host
