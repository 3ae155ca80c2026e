#include "tests/campaign/virtualtime.h"

#include <algorithm>

namespace campaign {

namespace {

constexpr qint64 MutexRetryUsecs = 5000;

VirtualTime* g_world = nullptr; // the campaign has one thread

} // namespace

VirtualTime::VirtualTime() {
    g_world = this;
}

VirtualTime::~VirtualTime() {
    g_world = nullptr;
}

VirtualTime* VirtualTime::current() {
    return Fiber::current() ? g_world : nullptr;
}

void VirtualTime::sleepUntil(qint64 usecs) {
    Fiber* const fiber = Fiber::current();
    const qint64 wake = std::max(usecs, m_now);
    if (!fiber || m_sleepers.empty() || m_sleepers.begin()->first.first > wake) {
        m_now = wake;
        return;
    }
    wakeAt(wake, fiber);
    fiber->handBack();
}

void VirtualTime::start(std::function<void()> body) {
    m_fibers.push_back(std::make_unique<Fiber>(std::move(body)));
    wakeAt(m_now, m_fibers.back().get());
}

void VirtualTime::wakeAt(qint64 usecs, Fiber* fiber) {
    m_sleepers[{usecs, ++m_sleeps}] = fiber;
}

void VirtualTime::run() {
    while (!m_sleepers.empty()) {
        const auto first = m_sleepers.begin();
        Fiber* const fiber = first->second;
        m_now = first->first.first;
        m_sleepers.erase(first);
        fiber->resume();
    }
}

qint64 VirtualTime::lockedOutUsecs() const {
    const auto found = m_locked_out.find(Fiber::current());
    return found == m_locked_out.end() ? 0 : found->second;
}

void VirtualTime::waitForMutex() {
    const qint64 before = m_now;
    sleepUntil(m_now + MutexRetryUsecs);
    m_locked_out[Fiber::current()] += m_now - before;
}

} // namespace campaign
