#include "host/line/patientexchange.h"

#include "runtime/base/clock.h"

namespace host {

namespace {

constexpr int PieceLength = 512;

} // namespace

void PatientExchange::begin() {
    const bool reply_owed = m_recorder.isReplyOwed();
    m_recorder.exchangeEnded();
    m_recorder.bytesDiscarded(m_line.discard());
    if (reply_owed && m_line.connection().isOpen())
        awaitQuiet();
}

void PatientExchange::awaitQuiet() {
    Clock& clock = m_line.clock();
    const qint64 end = clock.msecsSinceBoot() + m_line.timeoutMsecs();
    while (clock.msecsSinceBoot() <= end) {
        const QByteArray late = m_line.receive(PieceLength, m_wire.quietMsecs());
        if (late.isEmpty())
            return;
        m_recorder.bytesDiscarded(late);
    }
}

bool PatientExchange::request(const QByteArray& frame) {
    if (!m_line.send(frame))
        return false;
    m_recorder.requestSent(frame, readQuestion(frame));
    return true;
}

QByteArray PatientExchange::reply(int max) {
    const QByteArray bytes = m_line.receive(max, m_line.timeoutMsecs());
    if (!bytes.isEmpty())
        m_recorder.bytesReceived(bytes);
    return bytes;
}

} // namespace host
