#include "simulator/line.h"

#include <QThread>

#include <future>
#include <sys/prctl.h>

namespace simulator {

namespace {

// How long the thread waits for bytes before it looks whether to stop.
constexpr int ReadTimeoutMsecs = 20;

// How often a port that went away by itself is tried again.
constexpr qint64 ReopenInterval = 500000000; // ns

StationMap makeStations(const std::set<quint8>& ids) {
    StationMap stations;
    for (quint8 id : ids)
        stations[id] = std::make_unique<Station>(id);
    return stations;
}

} // namespace

Line::Line(std::unique_ptr<LinePort> port, const LineSettings& settings, LineClock& clock)
    : m_stations(makeStations(settings.stations))
    , m_faults(settings.faults, settings.seed)
    , m_port(std::move(port))
    , m_clock(clock)
    , m_log(settings.log)
    , m_session(
          {*m_port, clock, m_stations, m_faults, settings.timing, settings.trace, settings.log}) {
    m_port->setLog(settings.log);
}

Line::~Line() {
    stop();
}

Result<void> Line::start() {
    std::promise<Result<void>> opened;
    std::future<Result<void>> outcome = opened.get_future();
    // Opened by the thread that uses it: the port's Qt objects belong there.
    m_thread.reset(QThread::create([this, opened = std::move(opened)]() mutable {
        const Result<void> result = m_port->open();
        publishPath();
        opened.set_value(result);
        if (result)
            run();
        m_port->close();
    }));
    m_thread->start();
    return outcome.get();
}

void Line::stop() {
    m_session.stop();
    if (m_thread)
        m_thread->wait();
}

QString Line::devicePath() const {
    std::lock_guard<std::mutex> lock(m_path_mutex);
    return m_path;
}

Station* Line::station(quint8 id) const {
    const auto found = m_stations.find(id);
    return found != m_stations.end() ? found->second.get() : nullptr;
}

void Line::run() {
    // Sleeps may otherwise be 50 us late: half a character at 115200 baud.
    ::prctl(PR_SET_TIMERSLACK, 1UL);
    while (!m_session.isStopped()) {
        if (!m_port->isOpen()) {
            reopen();
            continue;
        }
        const QByteArray bytes = m_port->read(m_session.msecsToDue(ReadTimeoutMsecs));
        if (!bytes.isEmpty())
            m_session.receive(bytes);
        m_session.sendDue();
    }
}

void Line::reopen() {
    const Result<void> opened = m_port->open();
    const QString error = opened ? QString() : opened.error();
    publishPath();
    if (m_log && !error.isEmpty() && error != m_reopen_error)
        m_log(error);
    if (m_log && error.isEmpty())
        m_log(m_port->path() + QLatin1String(": open again"));
    m_reopen_error = error;
    if (!error.isEmpty())
        m_session.waitUntil(m_clock.now() + ReopenInterval);
}

void Line::publishPath() {
    std::lock_guard<std::mutex> lock(m_path_mutex);
    m_path = m_port->path();
}

} // namespace simulator
