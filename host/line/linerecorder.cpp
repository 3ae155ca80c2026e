#include "host/line/linerecorder.h"

#include <algorithm>

namespace host {

LineRecorder::LineRecorder(const PortOptions& options)
    : m_trace(options.frame_trace), m_usecs(options.usecs) {}

void LineRecorder::requestSent(const QByteArray& bytes, const std::optional<Question>& question) {
    const bool repeated = m_unanswered && m_request == bytes;
    m_request = bytes;
    m_question = question;
    m_sent_usecs = m_usecs();
    if (!repeated)
        m_first_sent_usecs = m_sent_usecs;
    m_in_exchange = true;
    m_line_complete = false;
    m_any_byte = false;
    m_misshapen = false;
    record(trace::Direction::Request, bytes);

    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_statistics.requests;
    m_statistics.repeats += repeated;
    m_statistics.bytes_sent += quint64(bytes.size());
}

void LineRecorder::bytesReceived(const QByteArray& bytes) {
    keepReceived(bytes);
    if (isReplyOwed() && bytes.contains('\n'))
        lineCompleted(readWholeReply(m_reply));
}

void LineRecorder::replyReceived(const QByteArray& bytes, const std::optional<WholeReply>& reply) {
    keepReceived(bytes);
    if (isReplyOwed() && bytes.contains('\n'))
        lineCompleted(reply);
}

void LineRecorder::keepReceived(const QByteArray& bytes) {
    m_any_byte = true;
    m_reply += bytes;
    countReceived(bytes);
}

void LineRecorder::replyIsMisshapen() {
    m_misshapen = true;
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_statistics.misshapen;
}

void LineRecorder::lineCompleted(const std::optional<WholeReply>& reply) {
    m_line_complete = true;
    const qint64 now = m_usecs();
    const qint64 took = now - m_sent_usecs;
    if (!m_misshapen && reply && !reply->refused)
        noteGoodReply(*reply, now);
    traceReply();
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_statistics.replies;
    m_statistics.reply_usecs += took;
    m_statistics.longest_reply_usecs = std::max(m_statistics.longest_reply_usecs, took);
}

void LineRecorder::bytesDiscarded(const QByteArray& bytes) {
    if (bytes.isEmpty())
        return;
    record(trace::Direction::Reply, bytes);
    countReceived(bytes);
}

void LineRecorder::lateReply(const QByteArray& bytes) {
    record(trace::Direction::Reply, bytes, " late");
    countReceived(bytes);
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_statistics.late;
}

void LineRecorder::requestWithheld(const QByteArray& bytes) {
    if (m_trace)
        m_trace->recordWithheld(bytes, m_usecs());
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_statistics.withheld;
}

void LineRecorder::fenceSent(const QByteArray& bytes) {
    record(trace::Direction::Request, bytes, " fence");
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_statistics.fences;
    m_statistics.bytes_sent += quint64(bytes.size());
}

void LineRecorder::fenceReply(const QByteArray& bytes) {
    record(trace::Direction::Reply, bytes, " fence");
    countReceived(bytes);
}

void LineRecorder::exchangeEnded() {
    if (!m_in_exchange)
        return;
    traceReply();
    m_in_exchange = false;
    m_unanswered = !m_line_complete;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_statistics.silent += !m_any_byte;
    m_statistics.incomplete += m_any_byte && !m_line_complete;
}

void LineRecorder::traceReply() {
    if (!m_reply.isEmpty())
        record(trace::Direction::Reply, m_reply, m_misshapen ? " misshapen" : "");
    m_reply.clear();
}

void LineRecorder::record(trace::Direction direction, const QByteArray& bytes, const char* note) {
    if (m_trace)
        m_trace->record(direction, bytes, m_usecs(), note);
}

void LineRecorder::countReceived(const QByteArray& bytes) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_statistics.bytes_received += quint64(bytes.size());
}

/** Tells only of a reply that is the answer to the request, value for value. */
void LineRecorder::noteGoodReply(const WholeReply& reply, qint64 now) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_good_replies[reply.station] = now;
    }
    if (m_sink && m_question && isAnswer(reply, *m_question))
        m_sink({m_question->station, m_question->is_write, m_question->addresses,
                m_first_sent_usecs, now});
}

qint64 LineRecorder::lastGoodReplyUsecs(int station) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_good_replies.find(station);
    return found == m_good_replies.end() ? -1 : found->second;
}

LineStatistics LineRecorder::statistics() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_statistics;
}

} // namespace host
