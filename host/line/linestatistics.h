#ifndef HOST_LINE_LINESTATISTICS_H
#define HOST_LINE_LINESTATISTICS_H

#include <QtGlobal>

#include <algorithm>

namespace host {

/** What a port has carried since it was made. An exchange is a request and all
 *  that came before the next one. */
struct LineStatistics {
    quint64 requests = 0;
    quint64 replies = 0;    // exchanges that brought a complete line
    quint64 silent = 0;     // exchanges that ended without a byte
    quint64 incomplete = 0; // exchanges that ended inside a line
    quint64 repeats = 0;    // requests equal to the unanswered one before
    quint64 bytes_sent = 0;
    quint64 bytes_received = 0;     // those thrown away included
    qint64 reply_usecs = 0;         // sum over the replies: request sent to line complete
    qint64 longest_reply_usecs = 0; // of one reply

    LineStatistics& operator+=(const LineStatistics& other) {
        requests += other.requests;
        replies += other.replies;
        silent += other.silent;
        incomplete += other.incomplete;
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
