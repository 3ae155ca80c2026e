#include "host/session/mailbox.h"

#include "host/session/tagvalue.h"
#include "runtime/base/clock.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <sys/timerfd.h>
#include <unistd.h>

namespace host {

namespace {

constexpr qint64 Never = std::numeric_limits<qint64>::max();

} // namespace

Mailbox::Mailbox(const std::vector<const TagDefinition*>& tags, const SubscriptionOptions& options,
                 Clock& clock)
    : m_options(options), m_clock(clock), m_earliest(Never) {
    m_entries.reserve(tags.size());
    for (const TagDefinition* tag : tags) {
        m_entries.emplace_back();
        m_entries.back().definition = tag;
    }
}

Mailbox::~Mailbox() {
    if (m_timer >= 0)
        ::close(m_timer);
}

bool Mailbox::isWorthTelling(const Entry& entry, const TagState& state) const {
    if (!entry.ever_taken || state.quality != entry.taken_quality || m_options.deadband <= 0)
        return true;
    return differsByMoreThan(*entry.definition, entry.taken_data, state.data, m_options.deadband);
}

void Mailbox::post(int place, TagId tag, const TagState& state) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    Entry& entry = m_entries[std::size_t(place)];
    if (!entry.waits && !isWorthTelling(entry, state))
        return;
    entry.newest.tag = tag;
    entry.newest.state = state;
    if (!entry.waits)
        enqueueLocked(place);
}

void Mailbox::enqueueLocked(int place) {
    Entry& entry = m_entries[std::size_t(place)];
    entry.waits = true;
    m_waiting.push_back(place);
    if (entry.due >= m_earliest)
        return;
    m_earliest = entry.due;
    armLocked();
    m_changed.notify_all();
}

std::vector<TagChange> Mailbox::take() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const qint64 now = m_clock.msecsSinceBoot();
    std::vector<TagChange> taken;
    const auto is_taken = [&](int place) {
        Entry& entry = m_entries[std::size_t(place)];
        if (entry.due > now)
            return false;
        entry.waits = false;
        entry.ever_taken = true;
        entry.taken_data = entry.newest.state.data;
        entry.taken_quality = entry.newest.state.quality;
        entry.due = m_options.least_interval_ms > 0 ? now + m_options.least_interval_ms : 0;
        taken.push_back(std::move(entry.newest));
        return true;
    };
    m_waiting.erase(std::remove_if(m_waiting.begin(), m_waiting.end(), is_taken), m_waiting.end());
    findEarliestLocked();
    return taken;
}

void Mailbox::findEarliestLocked() {
    m_earliest = Never;
    for (const int place : m_waiting)
        m_earliest = std::min(m_earliest, m_entries[std::size_t(place)].due);
    armLocked();
}

bool Mailbox::await(int msecs) {
    std::unique_lock<std::mutex> lock(m_mutex);
    const qint64 end = m_clock.msecsSinceBoot() + msecs;
    while (!m_woken) {
        const qint64 now = m_clock.msecsSinceBoot();
        if (m_earliest <= now || now >= end)
            break;
        m_changed.wait_for(lock, std::chrono::milliseconds(std::min(end, m_earliest) - now));
    }
    m_woken = false;
    return m_earliest <= m_clock.msecsSinceBoot();
}

void Mailbox::wake() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_woken = true;
    m_changed.notify_all();
}

int Mailbox::descriptor() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_timer < 0) {
        m_timer = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
        armLocked();
    }
    return m_timer;
}

/** A timer that has run out stays readable until it is set again, here. */
void Mailbox::armLocked() {
    if (m_timer < 0)
        return;
    itimerspec setting = {};
    if (m_earliest != Never) {
        const qint64 left = std::max<qint64>(0, m_earliest - m_clock.msecsSinceBoot());
        setting.it_value.tv_sec = left / 1000;
        setting.it_value.tv_nsec = left % 1000 * 1000000 + 1; // 0 would stop it
    }
    timerfd_settime(m_timer, 0, &setting, nullptr);
}

} // namespace host
