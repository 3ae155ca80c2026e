#ifndef HOST_SESSION_LINKSESSION_H
#define HOST_SESSION_LINKSESSION_H

#include "host/line/hostport.h"
#include "host/project/project.h"
#include "runtime/interfaces/driverinterface.h"

#include <QMap>
#include <QSet>

#include <limits>
#include <memory>

namespace host {

/** What came of reading or writing one tag. */
struct TagResult {
    QByteArray data; // the tag's bytes as the driver gives them; of a write, read back
    QString error;   // empty on success; the driver's own text where it has one

    bool ok() const { return error.isEmpty(); }
};

/** One link at work: its port, the driver on it, and the rules of dealing with
 *  the driver. Every call blocks for as long as the driver does: a tag of a
 *  controller that is silent takes its response timeout, at least 3 s, for each
 *  attempt.
 *
 *  Thread: one thread calls it, the runtime's communication thread; cancel() may
 *  be called from any. */
class LinkSession {
public:
    LinkSession(std::unique_ptr<HostPort> port, std::unique_ptr<DriverInterface> driver,
                Clock& clock = Clock::system());
    LinkSession(const LinkSession&) = delete;
    LinkSession& operator=(const LinkSession&) = delete;

    /** Cancels, then ends the driver, which waits for its polling thread. */
    ~LinkSession();

    /** The tags that the driver shall keep fresh from now on; they must be of this
     *  link. Reading them then costs no exchange of its own. */
    void poll(const QVector<TagDefinition>& tags);

    /** Starts the driver, which does nothing before its first access. The error is its
     *  own text. */
    Result<void> start();

    TagResult read(const TagDefinition& tag);

    /** The bytes of @p dwords double words from @p address on, which are polled and
     *  have been read: at once while the driver is not in error. */
    QByteArray readDwords(int station, quint32 address, int dwords);

    /** In the order of @p tags, once the driver has had the time to fetch those that
     *  it keeps fresh in whole frames. After one failure the other tags of that station
     *  are not asked for: they get the same error. */
    QVector<TagResult> readAll(const QVector<TagDefinition>& tags);

    /** Writes, waits until the driver has sent it, and reads it back, since the
     *  driver drops a write that fails and says so only for a moment. With
     *  @p must_read_back a controller that shows another value is an error even
     *  when the driver saw none. Meanwhile the driver polls nothing but @p tag, so
     *  that no other station's silence comes in between; a request that is already
     *  out to one is waited for. Tags that are the driver's own are just written. It
     *  ends soon after @p deadline, ms of the clock, at the latest, and hands the
     *  driver nothing after it. */
    TagResult write(const TagDefinition& tag, const QByteArray& data, bool must_read_back = true,
                    qint64 deadline = std::numeric_limits<qint64>::max());

    /** The driver's present error, empty when it has none. The driver shows an error
     *  only until its next success, on whatever station: look often. */
    QString lookForError();

    /** The shortest pause before a request, so the shortest life of an error, is
     *  ten times as long. */
    static constexpr quint32 LookIntervalMsecs = 1;

    /** The last error seen of @p station, empty once it has answered since. Station 0:
     *  errors that name none. */
    QString stationError(int station) const;

    /** Milliseconds since @p station last answered without a fault; -1: never. */
    qint64 stationAgeMsecs(int station) const;

    /** How long the driver tries before it gives a request up. */
    qint64 patienceMsecs() const;

    /** Writes that wait in the driver for @p station. */
    int waitingWrites(int station);

    /** Ends all waiting on the line, for good. A call that is inside the driver
     *  still sits out the driver's own waiting time. */
    void cancel();

    DriverInterface& driver() { return *m_driver; }
    HostPort& port() { return *m_port; }

private:
    struct Watch; // over one write
    struct SeenError {
        QString text;
        qint64 usecs = 0; // of the monotonic clock
    };

    void setSession(const QVector<TagDefinition>& tags);
    QByteArray readQueueSize(); // starts the driver's thread
    QString failureText(int station);
    void allow(Watch& watch, qint64 msecs) const;
    Result<void> awaitTurn(Watch& watch, bool must_answer);
    bool awaitDrained(int station, Watch& watch);
    void awaitScan(const QVector<TagDefinition>& tags, Watch& watch);
    void awaitFirstScan();
    TagResult hand(const TagDefinition& tag, const QByteArray& data);
    TagResult checkedWrite(const TagDefinition& tag, const QByteArray& data, bool must_read_back,
                           Watch& watch);
    bool tick(Watch& watch);

    Clock& m_clock;
    const std::unique_ptr<HostPort> m_port; // outlives the driver
    const std::unique_ptr<DriverInterface> m_driver;
    QVector<TagDefinition> m_polled;
    QSet<int> m_session_stations;  // that the driver polls now
    bool m_first_scan_due = false; // nothing has been read since poll()
    QMap<int, SeenError> m_errors; // by station
    std::atomic<bool> m_cancelled{false};
};

} // namespace host

#endif
