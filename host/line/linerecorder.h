#ifndef HOST_LINE_LINERECORDER_H
#define HOST_LINE_LINERECORDER_H

#include "host/line/linestatistics.h"

#include <QByteArray>

#include <map>
#include <mutex>

namespace trace {
class FrameTrace;
}

namespace host {

/** Follows the exchanges of one port: counts them, writes them to a trace, and
 *  knows whether the present one has brought a complete line. The thread that
 *  uses the port calls it; statistics() may be called from any thread. */
class LineRecorder {
public:
    /** @p frame_trace may be null; it must outlive the recorder. */
    explicit LineRecorder(trace::FrameTrace* frame_trace);

    void requestSent(const char* bytes, int length);
    void bytesReceived(const char* bytes, int length);

    /** Bytes that came after the exchange they would have belonged to. */
    void bytesDiscarded(const QByteArray& bytes);

    /** The port asks nothing more of the present exchange. */
    void exchangeEnded();

    /** True when a request is out that no complete line has followed. */
    bool isReplyOwed() const { return m_in_exchange && !m_line_complete; }

    LineStatistics statistics() const;

    /** When @p station last answered without a fault, in microseconds of the
     *  monotonic clock; -1: never. Any thread. */
    qint64 lastGoodReplyUsecs(int station) const;

private:
    void lineCompleted();
    void noteGoodReply(qint64 now);
    void traceReply();

    trace::FrameTrace* const m_trace;
    QByteArray m_request;    // the last one
    QByteArray m_reply;      // received but not yet traced
    qint64 m_sent_usecs = 0; // when the request went out
    bool m_in_exchange = false;
    bool m_line_complete = false;
    bool m_any_byte = false;   // received in this exchange
    bool m_unanswered = false; // the last exchange ended without a complete line

    mutable std::mutex m_mutex; // guards all below
    LineStatistics m_statistics;
    std::map<int, qint64> m_good_replies; // station to time, microseconds
};

} // namespace host

#endif
