#include "tests/unit/panel/signalcounter.h"

#include "runtime/base/connectchecked.h"

#include <algorithm>

void SignalCounter::follow(const QObject* sender, const char* signal) {
    connectChecked(sender, signal, this, SLOT(count()), Qt::DirectConnection);
}

int SignalCounter::value() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return int(m_emitters.size());
}

void SignalCounter::waitFor(int count) const {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [&] { return int(m_emitters.size()) >= count; });
}

int SignalCounter::fromThisThread() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return int(std::count(m_emitters.begin(), m_emitters.end(), std::this_thread::get_id()));
}

void SignalCounter::count() {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_emitters.push_back(std::this_thread::get_id());
    m_changed.notify_all();
}
