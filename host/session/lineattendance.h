#ifndef HOST_SESSION_LINEATTENDANCE_H
#define HOST_SESSION_LINEATTENDANCE_H

#include "host/line/exchange.h"

#include <condition_variable>
#include <mutex>
#include <vector>

namespace host {

/** Where a link's thread and the driver's polling thread meet, once between any
 *  two exchanges: the driver has then stored what the last one brought, or shows
 *  why it failed, and changes neither while it is held here. So what the link's
 *  thread reads meanwhile comes from the exchanges it is told of, and the driver
 *  has no reason to let it wait.
 *
 *  The polling thread is held only while the link's thread attends, for as long
 *  as that takes to copy what has come, and at most HoldMsecs. */
class LineAttendance {
public:
    static constexpr int HoldMsecs = 100; // of the machine's time

    /** Polling thread: an exchange has ended well. */
    void note(const Exchange& exchange);

    /** Polling thread: the driver comes for its next exchange. Shows those that were
     *  noted and returns when they have been looked at. */
    void betweenExchanges();

    /** Link's thread: from now on, until leave(), exchanges are shown to it. Those
     *  that ended before are forgotten. */
    void attend();
    void leave();

    /** Link's thread: waits at most @p msecs for the polling thread, or for wake().
     *  Returns true when it is held, until release(); shown() is then what ended
     *  well since the last time: usually one exchange, none after a failure. */
    bool await(int msecs);
    const std::vector<Exchange>& shown() const { return m_shown; }

    /** Lets the polling thread go. False when it has gone by itself: what was read
     *  meanwhile may be newer than what was shown. */
    bool release();

    /** Ends the present await(), or the next one. Any thread. */
    void wake();

private:
    enum class Turn { None, Offered, Taken };

    std::vector<Exchange> m_shown; // of the link's thread

    std::mutex m_mutex; // guards all below
    std::condition_variable m_changed;
    std::vector<Exchange> m_noted;
    Turn m_turn = Turn::None;
    bool m_attended = false;
    bool m_woken = false;
};

} // namespace host

#endif
