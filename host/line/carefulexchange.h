#ifndef HOST_LINE_CAREFULEXCHANGE_H
#define HOST_LINE_CAREFULEXCHANGE_H

#include "host/line/owedreplies.h"
#include "host/line/patientexchange.h"
#include "host/line/question.h"
#include "host/line/stationcare.h"

#include <atomic>

namespace host {

/** How long a careful port waits, and how often the driver asks. */
struct ExchangeTiming {
    int repetitions;       // of a request by the driver, after its first failure
    int frame_interval_ms; // that controllers want before a request
};

/** Exchanges that cost little where nobody answers, and that bring the answer to the
 *  request or none:
 *
 *  - A request to a station that is held off is not sent; the driver sees silence.
 *  - A reply that comes after it was given up is recognised and taken away, whatever
 *    exchange it comes into.
 *  - While a station's reply may still be under way, the station first gets a short
 *    request of the port's own, a fence, whose answer has a length of its own: what
 *    it was asked before has then been answered or lost. Only the driver's
 *    repetition of the request that failed just now goes out at once; it is the
 *    same question.
 *  - A reply that the driver, which knows no lengths, would take for the answer
 *    though its shape is another is cut to what the driver calls a loss.
 *
 *  A request that is no CPL goes the patient way. Line, recorder and care are the
 *  port's. */
class CarefulExchange : public ExchangePolicy {
public:
    CarefulExchange(RawLine& line, LineRecorder& recorder, StationCare& care, const WireTime& wire,
                    const ExchangeTiming& timing, const std::function<qint64()>& usecs);

    void begin() override;
    bool request(const QByteArray& frame) override;
    QByteArray reply(int max) override;

    /** Any thread: a person wants something of @p station, so no other about which
     *  nothing is known is waited for until it has been asked. */
    void hurry(int station) { m_hurry_for = station; }

private:
    enum class Course { Idle, Foreign, Withheld, Awaiting, Judged };

    struct Heard {
        QByteArray bytes;
        std::optional<WholeReply> reply; // that they are, if they are one
    };

    bool mayGoOut(const QByteArray& frame);
    bool isRepetition(const QByteArray& frame) const;
    bool passFence();
    bool awaitFence(const Question& fence, int wire_ms);
    bool send(const QByteArray& frame);
    Heard collect(const Question& question, int wire_ms);
    void sort(Heard& heard, const Question& question);
    bool isExpected(const WholeReply& reply, const Question& question);
    QByteArray receive(int station, int wait_ms);
    bool isHurried(int station) const;
    QByteArray takeLateReplies(QByteArray bytes, const Question* expected);
    bool takeLateReply(const QByteArray& line, const Question* expected);
    void awaitQuiet();
    void judge(const Heard& heard);
    void answered(const Question& question, int wire_ms, bool timed);
    int wireMsecs(const Question& question, int request_length) const;
    qint64 now() { return m_line.clock().msecsSinceBoot(); }

    RawLine& m_line;
    LineRecorder& m_recorder;
    StationCare& m_care;
    const WireTime m_wire;
    const ExchangeTiming m_timing;
    const std::function<qint64()> m_usecs;
    PatientExchange m_patient; // for requests that ask nothing known
    OwedReplies m_owed;

    Course m_course = Course::Idle;
    bool m_quiet_due = false; // bytes of what was sent last may be under way
    Question m_question;      // of the present exchange, unless it is foreign
    QByteArray m_request;     // the last one that went out
    bool m_failed = false;    // it has not been answered
    int m_sendings = 0;       // of it, one after the other
    qint64 m_sent_usecs = 0;  // the last of them, or the fence
    QByteArray m_delivery;    // judged; what the driver has not taken yet
    std::atomic<int> m_hurry_for{0};
};

} // namespace host

#endif
