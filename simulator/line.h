#ifndef SIMULATOR_LINE_H
#define SIMULATOR_LINE_H

#include "simulator/linesession.h"

#include <set>
#include <vector>

class QThread;

namespace simulator {

/** Everything about a line but its port. */
struct LineSettings {
    std::set<quint8> stations = {1};
    LineTiming timing;
    std::vector<Fault> faults;
    quint32 seed = 1;                   // of the faults' chances
    trace::FrameTrace* trace = nullptr; // outlives the line; none: no trace
    LogSink log;                        // called from the line's thread; none: no log
};

/** A simulated RS-485 line with its controllers, running in a thread of its own.
 *
 *      simulator::Line line(simulator::makePtyPort(), settings);
 *      const Result<void> started = line.start();
 *      ... talk to line.devicePath() ...
 *
 *  Any thread may call it, but only one start() and stop(). */
class Line {
public:
    Line(std::unique_ptr<LinePort> port, const LineSettings& settings,
         LineClock& clock = LineClock::system());
    ~Line(); // stops
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    /** Opens the port and begins to answer. Once only. */
    Result<void> start();

    /** Ends the thread and closes the port, within a tenth of a second. */
    void stop();

    /** What a client opens. It may change when the line was closed and opened by
     *  a fault; a pty's link does not. Empty before start(). */
    QString devicePath() const;

    LineCounters counters() const { return m_session.counters(); }

    /** Milliseconds since the line was made, as Station wants them. */
    qint64 elapsed() const { return m_session.elapsed(); }

    /** The controllers: fixed for the life of the line; each locks itself. */
    const StationMap& stations() const { return m_stations; }

    /** One controller, or null when the line has no such station. */
    Station* station(quint8 id) const;

    /** Strikes every request to @p station with @p fault until cleared. */
    void setFault(quint8 station, const Fault& fault) { m_faults.force(station, fault); }
    void clearFault(quint8 station) { m_faults.release(station); }

private:
    void run();
    void reopen();
    void publishPath();

    StationMap m_stations;
    FaultPlan m_faults;
    const std::unique_ptr<LinePort> m_port; // the line's thread only
    LineClock& m_clock;
    const LogSink m_log;
    LineSession m_session;
    mutable std::mutex m_path_mutex; // guards m_path
    QString m_path;
    QString m_reopen_error;            // the last one logged; the line's thread only
    std::unique_ptr<QThread> m_thread; // last: it uses all above
};

} // namespace simulator

#endif
