#ifndef HOST_SESSION_VALUEHUB_H
#define HOST_SESSION_VALUEHUB_H

#include "host/session/linkworker.h"
#include "host/session/panelsession.h"

#include <QHash>

namespace host {

/** A subscriber's end: unsubscribes when it goes. The hub outlives it. */
class Subscription {
public:
    Subscription(ValueBoard& board, std::vector<TagId> ids, const SubscriptionOptions& options)
        : m_board(board), m_ids(std::move(ids)), m_mailbox(board.subscribe(m_ids, options)) {}
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { m_board.forget(*m_mailbox, m_ids); }

    Mailbox& mailbox() { return *m_mailbox; }

private:
    ValueBoard& m_board;
    const std::vector<TagId> m_ids;
    const std::shared_ptr<Mailbox> m_mailbox;
};

/** One station of a hub as its port knows it. */
struct StationStatus {
    int link_id = 0;
    int station = 0;
    StationHealth health;
};

/** The values of some tags for everybody: each link has a thread that reads for
 *  all, and nobody else ever waits for a line.
 *
 *  Any thread. The session is the hub's while it lives and of no use afterwards. */
class ValueHub {
public:
    /** Begins to read @p tags, whose links are open in @p session. */
    ValueHub(PanelSession& session, const QVector<TagDefinition>& tags, const HubSetup& setup);
    ValueHub(const ValueHub&) = delete;
    ValueHub& operator=(const ValueHub&) = delete;

    /** Waits for the threads of the links: for one whose driver waits for a station
     *  that is silent, as long as the driver does. */
    ~ValueHub();

    /** By its name; none when the hub does not have it. */
    std::optional<TagId> find(const QString& name) const;
    const TagDefinition& tag(TagId id) const { return m_board.tag(id); }
    std::vector<TagId> allTags() const;

    /** True once each tag has been read, or has failed. */
    bool hasTriedAll() const;

    TagState read(TagId id) const { return m_board.read(id); }

    std::unique_ptr<Subscription> subscribe(const std::vector<TagId>& ids,
                                            const SubscriptionOptions& options = {});

    /** Orders a write of @p data, which is as parseValue() makes it, to end within
     *  @p within_ms; @p who is for the journal. Returns at once. */
    std::shared_ptr<WriteOrder> write(TagId id, const QByteArray& data, const QString& who,
                                      int within_ms);

    /** Of all tags, by link and number. */
    std::vector<StationStatus> stations() const;

    LineStatistics statistics(int link_id) const;

    /** Ends the work of all links soon. */
    void stop();

private:
    Clock& m_clock;
    ValueBoard m_board;
    QHash<QString, TagId> m_names;
    std::map<int, std::unique_ptr<LinkWorker>> m_workers; // by LINKID
};

} // namespace host

#endif
