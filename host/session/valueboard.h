#ifndef HOST_SESSION_VALUEBOARD_H
#define HOST_SESSION_VALUEBOARD_H

#include "host/session/mailbox.h"

#include <array>
#include <memory>

namespace host {

/** The present states of many tags, and who wants to hear when one changes. A tag
 *  has one writer, the thread of its link; any number of threads read and
 *  subscribe. Nobody here waits for a line, or for a subscriber. */
class ValueBoard {
public:
    ValueBoard(QVector<TagDefinition> tags, Clock& clock);
    ValueBoard(const ValueBoard&) = delete;
    ValueBoard& operator=(const ValueBoard&) = delete;

    int size() const { return m_tags.size(); }
    const TagDefinition& tag(TagId id) const { return m_tags.at(id); }

    TagState read(TagId id) const;

    /** An exchange has brought @p data. Subscribers hear of it only when the value
     *  is another one, or good again. */
    void bring(TagId id, const QByteArray& data, const Moment& when);

    /** The last attempts to read it brought nothing, and why. Its data stays. */
    void fail(TagId id, const QString& text);

    /** A mailbox for @p ids, in which what is known of them waits already. It hears
     *  of changes until it is forgotten. */
    std::shared_ptr<Mailbox> subscribe(const std::vector<TagId>& ids,
                                       const SubscriptionOptions& options);
    void forget(const Mailbox& mailbox, const std::vector<TagId>& ids);

private:
    struct Listener {
        std::shared_ptr<Mailbox> mailbox;
        int place;
    };
    struct Slot {
        TagState state;
        std::vector<Listener> listeners;
    };

    static constexpr std::size_t Stripes = 256;

    std::mutex& mutexOf(TagId id) const { return m_mutexes[std::size_t(id) % Stripes]; }
    void tellLocked(TagId id) const;

    const QVector<TagDefinition> m_tags;
    Clock& m_clock;
    mutable std::array<std::mutex, Stripes> m_mutexes; // each guards every 256th slot
    std::vector<Slot> m_slots;                         // by TagId
};

} // namespace host

#endif
