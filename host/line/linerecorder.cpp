#include "host/line/linerecorder.h"

#include "trace/frametrace.h"

#include <algorithm>

namespace host {

LineRecorder::LineRecorder(trace::FrameTrace* frame_trace) : m_trace(frame_trace) {}

void LineRecorder::requestSent(const char* bytes, int length) {
    const bool repeated = m_unanswered && m_request == QByteArray::fromRawData(bytes, length);
    m_request = QByteArray(bytes, length);
    m_sent_usecs = trace::monotonicMicroseconds();
    m_in_exchange = true;
    m_line_complete = false;
    m_any_byte = false;
    if (m_trace)
        m_trace->record(trace::Direction::Request, m_request);

    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_statistics.requests;
    m_statistics.repeats += repeated;
    m_statistics.bytes_sent += quint64(length);
}

void LineRecorder::bytesReceived(const char* bytes, int length) {
    m_any_byte = true;
    m_reply.append(bytes, length);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_statistics.bytes_received += quint64(length);
    }
    if (isReplyOwed() && std::find(bytes, bytes + length, '\n') != bytes + length)
        lineCompleted();
}

void LineRecorder::lineCompleted() {
    m_line_complete = true;
    const qint64 now = trace::monotonicMicroseconds();
    const qint64 took = now - m_sent_usecs;
    noteGoodReply(now);
    traceReply();
    const std::lock_guard<std::mutex> lock(m_mutex);
    ++m_statistics.replies;
    m_statistics.reply_usecs += took;
    m_statistics.longest_reply_usecs = std::max(m_statistics.longest_reply_usecs, took);
}

void LineRecorder::bytesDiscarded(const QByteArray& bytes) {
    if (bytes.isEmpty())
        return;
    if (m_trace)
        m_trace->record(trace::Direction::Reply, bytes);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_statistics.bytes_received += quint64(bytes.size());
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
    if (m_trace && !m_reply.isEmpty())
        m_trace->record(trace::Direction::Reply, m_reply);
    m_reply.clear();
}

void LineRecorder::noteGoodReply(qint64 now) {
    const trace::DecodedFrame frame = trace::decodeFrame(trace::Direction::Reply, m_reply);
    const trace::ChecksumVerdict checksum = trace::judgeChecksum(m_reply);
    if (frame.kind != trace::DecodedFrame::Kind::Reply || frame.end_code != "00" ||
        checksum.state != trace::ChecksumVerdict::State::Ok)
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_good_replies[frame.station] = now;
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
