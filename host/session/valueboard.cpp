#include "host/session/valueboard.h"

#include <algorithm>

namespace host {

ValueBoard::ValueBoard(QVector<TagDefinition> tags, Clock& clock)
    : m_tags(std::move(tags)), m_clock(clock), m_slots(std::size_t(m_tags.size())) {}

TagState ValueBoard::read(TagId id) const {
    const std::lock_guard<std::mutex> lock(mutexOf(id));
    return m_slots[std::size_t(id)].state;
}

void ValueBoard::bring(TagId id, const QByteArray& data, const Moment& when) {
    const std::lock_guard<std::mutex> lock(mutexOf(id));
    TagState& state = m_slots[std::size_t(id)].state;
    const bool changed = state.quality != Quality::Good || state.data != data;
    state.when = when;
    ++state.sequence;
    if (!changed)
        return;
    state.data = data;
    state.quality = Quality::Good;
    state.text.clear();
    tellLocked(id);
}

void ValueBoard::fail(TagId id, const QString& text) {
    const std::lock_guard<std::mutex> lock(mutexOf(id));
    TagState& state = m_slots[std::size_t(id)].state;
    const Quality quality = state.data.isEmpty() ? Quality::Bad : Quality::Stale;
    ++state.sequence;
    if (state.quality == quality && state.text == text)
        return;
    state.quality = quality;
    state.text = text;
    tellLocked(id);
}

void ValueBoard::tellLocked(TagId id) const {
    const Slot& slot = m_slots[std::size_t(id)];
    for (const Listener& listener : slot.listeners)
        listener.mailbox->post(listener.place, id, slot.state);
}

std::shared_ptr<Mailbox> ValueBoard::subscribe(const std::vector<TagId>& ids,
                                               const SubscriptionOptions& options) {
    std::vector<const TagDefinition*> definitions;
    definitions.reserve(ids.size());
    for (const TagId id : ids)
        definitions.push_back(&m_tags.at(id));
    auto mailbox = std::make_shared<Mailbox>(definitions, options, m_clock);
    for (std::size_t place = 0; place < ids.size(); ++place) {
        const std::lock_guard<std::mutex> lock(mutexOf(ids[place]));
        Slot& slot = m_slots[std::size_t(ids[place])];
        slot.listeners.push_back({mailbox, int(place)});
        if (slot.state.sequence > 0)
            mailbox->post(int(place), ids[place], slot.state);
    }
    return mailbox;
}

void ValueBoard::forget(const Mailbox& mailbox, const std::vector<TagId>& ids) {
    for (const TagId id : ids) {
        const std::lock_guard<std::mutex> lock(mutexOf(id));
        std::vector<Listener>& listeners = m_slots[std::size_t(id)].listeners;
        listeners.erase(std::remove_if(listeners.begin(), listeners.end(),
                                       [&](const Listener& listener) {
                                           return listener.mailbox.get() == &mailbox;
                                       }),
                        listeners.end());
    }
}

} // namespace host
