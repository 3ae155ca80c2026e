#ifndef HOST_LINE_LINESTATISTICS_H
#define HOST_LINE_LINESTATISTICS_H

#include <QtGlobal>

#include <algorithm>

namespace host {

/** What a port has carried since it was made. An exchange is a request and all
 *  that came before the next one. */
struct LineStatistics {
    quint64 requests = 0;   // the driver's, sent
    quint64 withheld = 0;   // the driver's, not sent
    quint64 fences = 0;     // the port's own
    quint64 replies = 0;    // exchanges that brought a complete line
    quint64 silent = 0;     // exchanges that ended without a byte
    quint64 incomplete = 0; // exchanges that ended inside a line
    quint64 misshapen = 0;  // exchanges whose reply was no answer, but passed for one
    quint64 late = 0;       // replies to requests that had been given up
    quint64 repeats = 0;    // requests equal to the unanswered one before
    quint64 bytes_sent = 0;
    quint64 bytes_received = 0;     // those thrown away included
    qint64 reply_usecs = 0;         // sum over the replies: request sent to line complete
    qint64 longest_reply_usecs = 0; // of one reply

    /** Requests of the driver, whether they went out or not. */
    quint64 asked() const { return requests + withheld; }

    LineStatistics& operator+=(const LineStatistics& other) {
        requests += other.requests;
        withheld += other.withheld;
        fences += other.fences;
        replies += other.replies;
        silent += other.silent;
        incomplete += other.incomplete;
        misshapen += other.misshapen;
        late += other.late;
        repeats += other.repeats;
        bytes_sent += other.bytes_sent;
        bytes_received += other.bytes_received;
        reply_usecs += other.reply_usecs;
        longest_reply_usecs = std::max(longest_reply_usecs, other.longest_reply_usecs);
        return *this;
    }
};

} // namespace host

#endif
