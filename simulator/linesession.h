#ifndef SIMULATOR_LINESESSION_H
#define SIMULATOR_LINESESSION_H

#include "simulator/faultplan.h"
#include "simulator/framereader.h"
#include "simulator/lineclock.h"
#include "simulator/linecounters.h"
#include "simulator/lineport.h"
#include "simulator/linetiming.h"
#include "simulator/station.h"
#include "simulator/transmission.h"
#include "trace/frametrace.h"

#include <atomic>
#include <map>

namespace simulator {

/** The stations of a line, in ascending order. */
using StationMap = std::map<quint8, std::unique_ptr<Station>>;

/** What a session works with; all of it outlives the session. */
struct SessionParts {
    LinePort& port;
    LineClock& clock;
    StationMap& stations; // constant; the stations lock themselves
    FaultPlan& faults;
    LineTiming timing;
    trace::FrameTrace* trace = nullptr; // none: no trace
    LogSink log;
};

/** The traffic of one line: turns received bytes into answers and puts them onto
 *  the line when they are due. The line is one wire: received characters, pauses
 *  and replies follow each other and never overlap. A station that is late leaves the
 *  wire to the others until it answers; what it is asked meanwhile it answers then.
 *
 *  Only receive() and sendDue() do work, on one thread; they return when the last
 *  answer that is due has left. stop() and counters() are for any thread. */
class LineSession {
public:
    explicit LineSession(SessionParts parts);

    /** Takes bytes that have come just now. A fault may leave the port closed: it
     *  is then time to open it again. */
    void receive(const QByteArray& bytes);

    /** Answers of late stations whose time has come. */
    void sendDue();

    /** Until the next of them is due, at most @p longest, in ms. */
    int msecsToDue(int longest);

    /** Makes receive() return soon, whatever it waits for; nothing is sent from
     *  then on. */
    void stop() { m_stop = true; }
    bool isStopped() const { return m_stop; }

    LineCounters counters() const;

    /** Milliseconds since the session was made: the time of moving values. */
    qint64 elapsed() const;

    /** Waits for a moment of the clock, in slices, so that stop() is obeyed.
     *  Returns false when stopped. */
    bool waitUntil(qint64 time);

private:
    using Counter = quint64 LineCounters::*;

    void takeFrame(const QByteArray& frame);
    void answer(const QByteArray& frame, const ParsedRequest& parsed, Station& station);
    Transmission carryOut(const QByteArray& frame, const ParsedRequest& parsed,
                          const std::optional<Fault>& fault, Station& station);
    void dispatch(quint8 station, const Transmission& transmission);
    void transmit(const Transmission& transmission);
    void sendPaced(const QByteArray& bytes);
    void send(const QByteArray& bytes);
    void closeLine(int closed_ms);
    void record(trace::Direction direction, const QByteArray& bytes);
    void log(const QString& text) const;
    void count(Counter counter, quint64 amount = 1);

    struct Postponed {
        quint8 station = 0;
        Transmission transmission;
    };

    const SessionParts m_parts;
    const qint64 m_start; // of the clock
    std::atomic<bool> m_stop{false};
    FrameReader m_reader;
    QByteArray m_sent;  // of the present transmission, so far
    qint64 m_wire_free; // when the last character, or pause, on the wire ends
    std::multimap<qint64, Postponed> m_postponed; // by when it is due
    mutable std::mutex m_counters_mutex;          // guards m_counters
    LineCounters m_counters;
};

} // namespace simulator

#endif
