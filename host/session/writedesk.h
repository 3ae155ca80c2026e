#ifndef HOST_SESSION_WRITEDESK_H
#define HOST_SESSION_WRITEDESK_H

#include "host/session/linkreader.h"
#include "host/session/writejournal.h"
#include "host/session/writeorder.h"

#include <deque>

namespace host {

/** The writes of one link: any thread puts them in, the link's thread carries out
 *  one after the other and keeps the journal of them. */
class WriteDesk {
public:
    /** All but the values outlive it. A write that cannot be put in the journal at
     *  @p journal_path is refused. */
    WriteDesk(LinkSession& session, ValueBoard& board, Clock& clock, MomentSource moments,
              QString journal_path);

    /** Any thread. Once the desk is closed the order is refused at once. */
    void put(std::shared_ptr<WriteOrder> order);

    /** Any thread. */
    bool hasOrders() const;

    /** Link's thread: carries the oldest order out, which takes until its deadline
     *  at the longest, and returns its tag; null when there is none. */
    const TagDefinition* carryOutNext();

    /** Link's thread, at its end: refuses what waits, with a line each, and
     *  all that comes. */
    void close();

private:
    bool isClosed() const;
    void carryOut(WriteOrder& order);
    WriteResult write(WriteOrder& order);
    WriteResult refusedByDownStation(const TagDefinition& tag);
    Result<qint64> beginLine(const WriteOrder& order);
    void endLine(qint64 line, const WriteOrder& order, const WriteResult& result);

    LinkSession& m_session;
    ValueBoard& m_board;
    Clock& m_clock;
    const MomentSource m_moments;
    const QString m_journal_path;
    std::unique_ptr<WriteJournal> m_journal; // the link's thread's; opened by the first write

    mutable std::mutex m_mutex; // guards all below
    std::deque<std::shared_ptr<WriteOrder>> m_orders;
    bool m_closed = false;
};

} // namespace host

#endif
