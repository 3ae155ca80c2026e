#ifndef HOST_LINE_CONNECTION_H
#define HOST_LINE_CONNECTION_H

#include "host/line/bytechannel.h"

#include <QtGlobal>

#include <atomic>
#include <functional>

class Clock;

namespace host {

/** Receives one line of text about a line's state, without a line end. Called
 *  on the thread that uses the line. */
using LineLog = std::function<void(const QString& text)>;

/** Keeps a channel open: opens it again with growing pauses after it was lost,
 *  and tells each change of state once. A line that opens but is lost again
 *  without having brought a byte counts as still down.
 *
 *  Thread: the one that uses the channel; isOpen() any. */
class Connection {
public:
    /** The channel and the clock must outlive the connection. */
    Connection(ByteChannel& channel, Clock& clock, LineLog log);

    /** One attempt, now, whose failure is not logged: the caller reports it. */
    Result<void> open();

    /** Returns true when the line is open, if need be after attempts for at most
     *  @p msecs; false after that time, or once the channel is cancelled. */
    bool awaitOpen(int msecs);

    void close();

    /** The channel reported the line as lost, and why. */
    void lost(const QString& reason);

    /** Bytes have arrived: the next pause is short again. */
    void proveWorking();

    bool isOpen() const { return m_open; }

    static constexpr int FirstPauseMsecs = 100;
    static constexpr int LongestPauseMsecs = 5000;

private:
    bool tryOpen();
    void failed(const QString& reason);
    void tellDown(const QString& reason);
    void tellUp();

    ByteChannel& m_channel;
    Clock& m_clock;
    const LineLog m_log;
    std::atomic<bool> m_open{false};
    bool m_reopened = false;  // open after a failure that was told
    bool m_proved = false;    // bytes have arrived since the last opening
    bool m_flapping = false;  // the last loss followed an opening without a byte
    bool m_told_down = false; // the last line logged was about a failure
    int m_untold = 0;         // failures since then
    int m_pause_ms = FirstPauseMsecs;
    qint64 m_next_attempt = 0; // the clock's time, ms
};

} // namespace host

#endif
