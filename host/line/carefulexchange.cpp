#include "host/line/carefulexchange.h"

#include "runtime/base/clock.h"

#include <algorithm>

namespace host {

namespace {

constexpr int PieceLength = 512;
constexpr int LongestReply = 1024;    // beyond it somebody talks without an end
constexpr int ShortestGapMsecs = 500; // for the rest of a reply that has begun
constexpr int HurryCheckMsecs = 50;
constexpr int LongestFence = 16; // values; each controller answers that

} // namespace

CarefulExchange::CarefulExchange(RawLine& line, LineRecorder& recorder, StationCare& care,
                                 const WireTime& wire, const ExchangeTiming& timing,
                                 const std::function<qint64()>& usecs)
    : m_line(line)
    , m_recorder(recorder)
    , m_care(care)
    , m_wire(wire)
    , m_timing(timing)
    , m_usecs(usecs)
    , m_patient(line, recorder, wire)
    , m_owed(line.timeoutMsecs()) {}

void CarefulExchange::begin() {
    if (m_course == Course::Foreign) {
        m_patient.begin();
    } else {
        m_recorder.exchangeEnded();
        m_recorder.bytesDiscarded(takeLateReplies(m_line.discard(), nullptr));
        if (m_quiet_due)
            awaitQuiet();
    }
    m_course = Course::Idle;
    m_quiet_due = false;
}

/** The rest of a reply may be under way, or one that is late. */
void CarefulExchange::awaitQuiet() {
    const qint64 end = now() + m_line.timeoutMsecs();
    QByteArray heard;
    while (now() <= end) {
        const QByteArray piece = m_line.receive(PieceLength, m_wire.quietMsecs());
        if (piece.isEmpty())
            break;
        heard += piece;
    }
    m_recorder.bytesDiscarded(takeLateReplies(heard, nullptr));
}

bool CarefulExchange::request(const QByteArray& frame) {
    std::optional<Question> question = readQuestion(frame);
    if (!question) {
        m_course = Course::Foreign;
        return m_patient.request(frame);
    }
    m_question = std::move(*question);
    m_delivery.clear();
    if (m_hurry_for == m_question.station)
        m_hurry_for = 0;
    if (mayGoOut(frame))
        return send(frame);
    m_failed = false; // what comes next repeats nothing that went out
    m_care.withheld(m_question.station);
    m_recorder.requestWithheld(frame);
    m_course = Course::Withheld;
    return true;
}

bool CarefulExchange::mayGoOut(const QByteArray& frame) {
    const int station = m_question.station;
    if (!m_care.admits(station, now()))
        return false;
    const bool owes = !m_owed.isClean(station, now());
    if (!owes && !m_care.isHeldOff(station))
        return true;
    if (isRepetition(frame))
        return true;
    // A fence would hold the line for all that a slow station still has to say.
    return !(owes && m_care.isSlow(station)) && passFence();
}

/** True for the driver's next attempt at what failed just now: an answer to either
 *  is the answer to both. */
bool CarefulExchange::isRepetition(const QByteArray& frame) const {
    return m_failed && m_sendings <= m_timing.repetitions && frame == m_request &&
           !m_care.isHeldOff(m_question.station);
}

bool CarefulExchange::send(const QByteArray& frame) {
    m_sendings = isRepetition(frame) ? m_sendings + 1 : 1;
    m_request = frame;
    m_failed = true;
    if (!m_line.send(frame))
        return false;
    m_recorder.requestSent(frame, m_question);
    m_sent_usecs = m_usecs();
    m_owed.sent(m_question, now(), wireMsecs(m_question, frame.size()));
    m_course = Course::Awaiting;
    return true;
}

int CarefulExchange::wireMsecs(const Question& question, int request_length) const {
    return m_wire.msecs(request_length + question.replyLength());
}

/** Returns whether the station is done with all that it was asked before. */
bool CarefulExchange::passFence() {
    const int count = m_owed.freeCount(m_question.station, now());
    if (count > LongestFence)
        return false; // some of what it owes will soon be unable to come
    const QByteArray frame = makeReadRequest(m_question, count);
    const Question fence = *readQuestion(frame);
    m_failed = false;
    if (!m_line.send(frame))
        return false;
    m_recorder.fenceSent(frame);
    m_sent_usecs = m_usecs();
    const int wire_ms = wireMsecs(fence, frame.size());
    m_owed.sent(fence, now(), wire_ms);
    if (!awaitFence(fence, wire_ms))
        return false;
    m_quiet_due = false;
    m_line.clock().sleepMsecs(quint32(m_timing.frame_interval_ms));
    return true;
}

bool CarefulExchange::awaitFence(const Question& fence, int wire_ms) {
    const Heard heard = collect(fence, wire_ms);
    if (heard.bytes.isEmpty())
        return false;
    m_recorder.fenceReply(heard.bytes);
    if (!heard.reply || !isAnswer(*heard.reply, fence)) {
        m_care.garbled(fence.station, now());
        return false;
    }
    m_owed.settle(fence.station);
    answered(fence, wire_ms, true);
    return true;
}

QByteArray CarefulExchange::reply(int max) {
    if (m_course == Course::Foreign)
        return m_patient.reply(max);
    if (m_course == Course::Awaiting) {
        m_course = Course::Judged;
        judge(collect(m_question, wireMsecs(m_question, m_request.size())));
    }
    const QByteArray piece = m_delivery.left(max);
    m_delivery.remove(0, piece.size());
    return piece;
}

/** What comes in answer to @p question, but for late replies: up to an LF that ends
 *  a piece, as the driver reads, or to silence. */
CarefulExchange::Heard CarefulExchange::collect(const Question& question, int wire_ms) {
    const int wait_ms = m_care.waitMsecs(question.station, question.is_write, wire_ms, now());
    const qint64 start = now();
    Heard heard;
    QByteArray& bytes = heard.bytes;
    bool any = false;
    while (bytes.size() < LongestReply && !bytes.endsWith('\n')) {
        const int gap_ms = bytes.isEmpty() ? wait_ms : std::max(wait_ms, ShortestGapMsecs);
        const QByteArray piece = receive(question.station, gap_ms);
        if (piece.isEmpty())
            break;
        any = true;
        bytes += piece;
        if (piece.contains('\n'))
            sort(heard, question);
    }
    const int waited = int(now() - start);
    if (!any && m_line.isUsable())
        m_care.silent(question.station, waited, now());
    m_quiet_due = any || waited < m_wire.quietMsecs();
    return heard;
}

/** Takes late replies away and reads what is left. */
void CarefulExchange::sort(Heard& heard, const Question& question) {
    heard.reply = readWholeReply(heard.bytes);
    if (heard.reply && isExpected(*heard.reply, question))
        return;
    heard.bytes = takeLateReplies(heard.bytes, &question);
    heard.reply = readWholeReply(heard.bytes);
}

QByteArray CarefulExchange::receive(int station, int wait_ms) {
    if (!m_care.isTrial(station))
        return m_line.receive(PieceLength, wait_ms);
    QByteArray bytes;
    for (int left = wait_ms; left > 0 && bytes.isEmpty(); left -= HurryCheckMsecs) {
        if (isHurried(station) || !m_line.isUsable())
            break;
        bytes = m_line.receive(PieceLength, std::min(left, HurryCheckMsecs));
    }
    return bytes;
}

bool CarefulExchange::isHurried(int station) const {
    const int wanted = m_hurry_for;
    return wanted != 0 && wanted != station;
}

/** Returns @p bytes without the late replies at their beginning. */
QByteArray CarefulExchange::takeLateReplies(QByteArray bytes, const Question* expected) {
    for (;;) {
        const int end = bytes.indexOf('\n') + 1;
        if (end < 1 || !takeLateReply(bytes.left(end), expected))
            return bytes;
        bytes.remove(0, end);
    }
}

bool CarefulExchange::takeLateReply(const QByteArray& line, const Question* expected) {
    const std::optional<WholeReply> reply = readWholeReply(line);
    if (!reply)
        return false;
    if (expected && isExpected(*reply, *expected))
        return false;
    const qint64 sent = m_owed.take(*reply, now());
    if (sent < 0)
        return false;
    m_recorder.lateReply(line);
    m_care.heardLate(reply->station, now() - sent, now());
    return true;
}

/** Any request can be refused: of several the oldest has been. */
bool CarefulExchange::isExpected(const WholeReply& reply, const Question& question) {
    return isAnswer(reply, question) &&
           !(reply.refused && m_owed.owesOther(reply.station, question.values(), now()));
}

void CarefulExchange::judge(const Heard& heard) {
    const auto& [bytes, reply] = heard;
    if (bytes.isEmpty())
        return;
    m_delivery = bytes;
    if (reply && isAnswer(*reply, m_question)) {
        m_owed.take(*reply, now());
        m_failed = false;
        answered(m_question, wireMsecs(m_question, m_request.size()), m_sendings == 1);
    } else {
        m_care.garbled(m_question.station, now());
        if (passesForGood(bytes, m_question.station)) {
            m_recorder.replyIsMisshapen();
            m_delivery.truncate(LossLength);
        }
    }
    m_quiet_due = !bytes.endsWith('\n');
    m_recorder.replyReceived(bytes, reply);
}

void CarefulExchange::answered(const Question& question, int wire_ms, bool timed) {
    m_care.answered(question.station, {m_usecs() - m_sent_usecs, wire_ms, question.is_write, timed},
                    now());
}

} // namespace host
