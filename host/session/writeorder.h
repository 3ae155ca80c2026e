#ifndef HOST_SESSION_WRITEORDER_H
#define HOST_SESSION_WRITEORDER_H

#include "host/session/tagstate.h"

#include <condition_variable>
#include <mutex>
#include <optional>

class Clock;

namespace host {

/** How a write has ended. */
enum class WriteOutcome {
    Confirmed, // read back as it was written
    Refused,   // the text says why
    Expired    // its deadline came first; the text says whether it may still arrive
};

/** "confirmed", "refused", "expired". */
const char* outcomeName(WriteOutcome outcome);

struct WriteResult {
    WriteOutcome outcome = WriteOutcome::Refused;
    QByteArray read_back; // what the controller showed in the end; empty: nothing
    QString why;          // empty when confirmed
};

/** One write, from its order to its one end. Any thread. */
class WriteOrder {
public:
    /** @p who: the person or program, for the journal. It ends within @p within_ms of the
     *  clock, which outlives it. */
    WriteOrder(TagId tag, QByteArray data, QString who, int within_ms, Clock& clock);

    TagId tag() const { return m_tag; }
    const QByteArray& data() const { return m_data; }
    const QString& who() const { return m_who; }
    qint64 deadline() const { return m_deadline; } // the clock's time, ms

    /** Waits for the end: at the latest it is Expired at the deadline. */
    WriteResult await();

    /** None while it has not ended. */
    std::optional<WriteResult> result() const;

    /** The link's thread takes it up. False when it has ended or its deadline has
     *  passed: it then must not be sent. */
    bool take();

    /** The first end counts: false when it had one already. */
    bool finish(const WriteResult& result);

private:
    WriteResult expiredLocked() const;

    const TagId m_tag;
    const QByteArray m_data;
    const QString m_who;
    Clock& m_clock;
    const qint64 m_ordered;
    const qint64 m_deadline;

    mutable std::mutex m_mutex; // guards all below
    std::condition_variable m_ended;
    bool m_taken = false;
    std::optional<WriteResult> m_result;
};

} // namespace host

#endif
