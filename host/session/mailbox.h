#ifndef HOST_SESSION_MAILBOX_H
#define HOST_SESSION_MAILBOX_H

#include "host/project/project.h"
#include "host/session/tagstate.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <vector>

class Clock;

namespace host {

/** Which changes a subscriber wants to hear of. */
struct SubscriptionOptions {
    /** A value is told once an element of it differs by more than this from the
     *  one that was taken last; 0: by anything. A change of quality always is. */
    double deadband = 0;
    int least_interval_ms = 0; // between two changes of the same tag
};

/** What waits for one subscriber: of each of its tags the newest state that it
 *  has not taken. A slow one misses what came in between, never the last.
 *
 *  Any thread posts; one thread takes. */
class Mailbox {
public:
    /** The definitions and the clock outlive the mailbox. */
    Mailbox(const std::vector<const TagDefinition*>& tags, const SubscriptionOptions& options,
            Clock& clock);
    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;
    ~Mailbox();

    /** @p place: of the tag among those that the mailbox was made with. */
    void post(int place, TagId tag, const TagState& state);

    /** What waits and is due, the longest waiting first. */
    std::vector<TagChange> take();

    /** Waits at most @p msecs until there is something to take, or for wake(). Returns
     *  true if there is something. */
    bool await(int msecs);

    /** Ends the present await(), or the next one. Any thread. */
    void wake();

    /** A descriptor that is readable while something is due to be taken, for an
     *  event loop; the mailbox owns it. It waits in the machine's time. */
    int descriptor();

private:
    struct Entry {
        const TagDefinition* definition = nullptr;
        TagChange newest;
        QByteArray taken_data;
        Quality taken_quality = Quality::Bad;
        bool ever_taken = false;
        bool waits = false;
        qint64 due = 0; // earliest time of the next taking, ms
    };

    bool isWorthTelling(const Entry& entry, const TagState& state) const;
    void enqueueLocked(int place);
    void findEarliestLocked();
    void armLocked();

    const SubscriptionOptions m_options;
    Clock& m_clock;

    std::mutex m_mutex; // guards all below
    std::condition_variable m_changed;
    std::vector<Entry> m_entries;
    std::deque<int> m_waiting; // places, each at most once, in order of arrival
    qint64 m_earliest;         // when the first of them is due
    bool m_woken = false;
    int m_timer = -1; // descriptor of a timer, once asked for
};

} // namespace host

#endif
