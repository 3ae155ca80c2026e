#ifndef HOST_SESSION_LINKWORKER_H
#define HOST_SESSION_LINKWORKER_H

#include "host/session/lineattendance.h"
#include "host/session/writedesk.h"

#include <QDateTime>

#include <atomic>
#include <set>
#include <thread>

namespace host {

/** What a hub needs besides its links and tags. */
struct HubSetup {
    /** Where writes are put down; see WriteJournal. While it cannot be opened, all
     *  writes are refused. */
    QString journal_path;
    Clock* clock = &Clock::system();
    std::function<qint64()> utc_msecs = QDateTime::currentMSecsSinceEpoch;
};

/** The thread of one link: the only one that deals with its driver. It brings
 *  what the driver reads to the board and carries out the writes. */
class LinkWorker {
public:
    /** Starts the thread. @p ids: the tags of the link. All outlive the worker. */
    LinkWorker(LinkSession& session, LineAttendance& attendance, ValueBoard& board,
               const std::vector<TagId>& ids, const HubSetup& setup);
    LinkWorker(const LinkWorker&) = delete;
    LinkWorker& operator=(const LinkWorker&) = delete;

    /** Stops and waits for the thread. */
    ~LinkWorker();

    /** Ends the work soon, and the session with it. Any thread. */
    void stop();

    /** Any thread. */
    void order(std::shared_ptr<WriteOrder> order);

    /** The stations of its tags. Any thread. */
    const std::set<int>& stations() const { return m_stations; }
    const HostPort& port() const { return m_session.port(); }

    /** How often the driver's own tags are looked at, which cost no exchange, and a
     *  driver that does not start is started again. */
    static constexpr int OwnTagsMsecs = 500;

private:
    void run();
    bool startDriver();
    void workOnce();
    void serveExchange();
    void carryOutWrite();
    void readOwnTagsWhenDue();

    LinkSession& m_session;
    LineAttendance& m_attendance;
    ValueBoard& m_board;
    Clock& m_clock;
    const MomentSource m_moments;
    std::vector<TagId> m_polled, m_own; // of controller data; the driver's own
    std::set<int> m_stations;
    std::atomic<bool> m_stopped{false};
    WriteDesk m_desk;
    LinkReader m_reader;                   // the thread's
    qint64 m_own_due = 0, m_write_due = 0; // the clock's time, ms; the thread's
    std::thread m_thread;                  // last: all else is there when it starts
};

} // namespace host

#endif
