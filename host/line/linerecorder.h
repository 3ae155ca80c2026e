#ifndef HOST_LINE_LINERECORDER_H
#define HOST_LINE_LINERECORDER_H

#include "host/line/exchange.h"
#include "host/line/linestatistics.h"
#include "host/line/portoptions.h"
#include "host/line/question.h"

#include <QByteArray>

#include <map>
#include <mutex>

namespace host {

/** Follows the exchanges of one port: counts them, writes them to a trace, and
 *  knows whether the present one has brought a complete line. The thread that
 *  uses the port calls it; statistics() may be called from any thread. */
class LineRecorder {
public:
    explicit LineRecorder(const PortOptions& options);

    /** Before the first exchange. */
    void setSink(ExchangeSink sink) { m_sink = std::move(sink); }

    /** @p question: what the request asks, if that is known. */
    void requestSent(const QByteArray& bytes, const std::optional<Question>& question);

    /** A piece of the reply. */
    void bytesReceived(const QByteArray& bytes);

    /** The reply in one piece, and what it says. */
    void replyReceived(const QByteArray& bytes, const std::optional<WholeReply>& reply);

    /** The reply received next passes for an answer to the driver, but is none. */
    void replyIsMisshapen();

    /** Bytes that came after the exchange they would have belonged to. */
    void bytesDiscarded(const QByteArray& bytes);

    /** A reply to a request that had been given up. */
    void lateReply(const QByteArray& bytes);

    /** A request of the driver that did not go out. */
    void requestWithheld(const QByteArray& bytes);

    /** The port's own request, and what it brought. @{ */
    void fenceSent(const QByteArray& bytes);
    void fenceReply(const QByteArray& bytes);
    /** @} */

    /** The port asks nothing more of the present exchange. */
    void exchangeEnded();

    /** True when a request is out that no complete line has followed. */
    bool isReplyOwed() const { return m_in_exchange && !m_line_complete; }

    LineStatistics statistics() const;

    /** When @p station last answered without a fault, in microseconds of the
     *  monotonic clock; -1: never. Any thread. */
    qint64 lastGoodReplyUsecs(int station) const;

private:
    void keepReceived(const QByteArray& bytes);
    void lineCompleted(const std::optional<WholeReply>& reply);
    void noteGoodReply(const WholeReply& reply, qint64 now);
    void traceReply();
    void record(trace::Direction direction, const QByteArray& bytes, const char* note = "");
    void countReceived(const QByteArray& bytes);

    trace::FrameTrace* const m_trace;
    const std::function<qint64()> m_usecs;
    ExchangeSink m_sink;
    QByteArray m_request;               // the last one
    std::optional<Question> m_question; // that it asks
    QByteArray m_reply;                 // received but not yet traced
    qint64 m_sent_usecs = 0;            // when the request went out
    qint64 m_first_sent_usecs = 0;      // the first time, of one that is repeated
    bool m_misshapen = false;           // the reply of this exchange
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
