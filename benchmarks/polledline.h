#ifndef BENCHMARKS_POLLEDLINE_H
#define BENCHMARKS_POLLEDLINE_H

#include "host/line/hostport.h"
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"
#include "simulator/line.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <vector>

/** How long a scan takes: notes when one station answered. */
class AnswerWatch {
public:
    explicit AnswerWatch(int station) : m_station(station) {}

    /** On the port's thread. */
    void hear(const host::Exchange& exchange);

    /** Durations in ms of the next @p rounds, of @p frames answers each; fewer when the
     *  station falls silent. */
    std::vector<double> rounds(int rounds, int frames);

private:
    using SteadyClock = std::chrono::steady_clock;

    bool awaitAnswers(std::unique_lock<std::mutex>& lock, std::size_t count);

    const int m_station;
    std::mutex m_mutex; // guards m_answers
    std::condition_variable m_changed;
    std::vector<SteadyClock::time_point> m_answers;
};

/** What is polled, and how. */
struct LinePlan {
    std::set<quint8> stations;
    int addresses = 1; // of each station, from 0 on
    int baud = 38400;  // 0: neither wire nor turn-around takes time
    DriverSetting timing = DriverSetting(9000, 1, 1, 20); // the driver's defaults
    bool care = true;
    Clock* pauses = &Clock::system(); // the driver's

    static constexpr int AddressesPerFrame = 50;
    static constexpr double TurnaroundMsecs = 5;

    int framesOfStation() const;
    simulator::LineTiming lineTiming() const;
    simulator::LineSettings lineSettings() const;
    DeviceSetting device() const;
};

/** The host's port on the client's end of @p line's pty. */
std::unique_ptr<host::HostPort> makePort(const simulator::Line& line, const LinePlan& plan);

/** Simulated controllers on a pty, the host's port and the driver's polling thread on
 *  top of it. */
class PolledLine {
public:
    explicit PolledLine(const LinePlan& plan);
    ~PolledLine(); // ends the thread

    /** Polls from here on, in a thread of its own unless the caller steps it. @{ */
    Result<void> start();
    Result<void> startStepped();
    /** @} */

    /** From now on @p stations answer nothing. */
    void silence(const std::set<quint8>& stations);

    /** Durations in ms of the next @p rounds, as the lowest station sees them. */
    std::vector<double> rounds(int rounds) {
        return m_watch.rounds(rounds, m_plan.framesOfStation());
    }

    simulator::Line& line() { return m_line; }
    PollingThread& thread() { return *m_thread; }

private:
    const LinePlan m_plan;
    simulator::Line m_line;
    AnswerWatch m_watch;
    AddressVectorMap m_valid;
    std::unique_ptr<host::HostPort> m_port; // once the line has a path
    std::unique_ptr<PollingThread> m_thread;
};

#endif
