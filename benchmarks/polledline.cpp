#include "benchmarks/polledline.h"

#include "host/line/portaddress.h"
#include "runtime/interfaces/communicatorcommand.h"

using namespace host;

namespace {

constexpr std::chrono::minutes LongestSilence(1); // then a round is not waited for

QList<CommunicatorCommand> sessionOf(const LinePlan& plan) {
    QList<CommunicatorCommand> session;
    for (const quint8 station : plan.stations)
        session.append(CommunicatorCommand(QString::fromLatin1("%1-NA0").arg(station),
                                           CommunicatorCommand::DoubleWord, plan.addresses));
    return session;
}

AddressVectorMap addressesOf(const LinePlan& plan) {
    AddressVectorMap addresses;
    for (const quint8 station : plan.stations) {
        for (int address = 0; address < plan.addresses; ++address)
            addresses[station].push_back(quint32(address));
    }
    return addresses;
}

} // namespace

void AnswerWatch::hear(const Exchange& exchange) {
    if (exchange.station != m_station)
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_answers.push_back(SteadyClock::now());
    }
    m_changed.notify_all();
}

bool AnswerWatch::awaitAnswers(std::unique_lock<std::mutex>& lock, std::size_t count) {
    while (m_answers.size() < count) {
        if (m_changed.wait_for(lock, LongestSilence) == std::cv_status::timeout)
            return false;
    }
    return true;
}

std::vector<double> AnswerWatch::rounds(int rounds, int frames) {
    std::vector<double> durations;
    std::unique_lock<std::mutex> lock(m_mutex);
    std::size_t last = m_answers.size();
    if (!awaitAnswers(lock, last + 1))
        return durations;
    while (int(durations.size()) < rounds && awaitAnswers(lock, last + std::size_t(frames) + 1)) {
        const std::size_t next = last + std::size_t(frames);
        durations.push_back(
            std::chrono::duration<double, std::milli>(m_answers[next] - m_answers[last]).count());
        last = next;
    }
    return durations;
}

int LinePlan::framesOfStation() const {
    return (addresses + AddressesPerFrame - 1) / AddressesPerFrame;
}

simulator::LineTiming LinePlan::lineTiming() const {
    simulator::LineTiming line_timing;
    line_timing.baud = baud;
    line_timing.turnaround_ms = baud > 0 ? TurnaroundMsecs : 0;
    return line_timing;
}

simulator::LineSettings LinePlan::lineSettings() const {
    simulator::LineSettings settings;
    settings.stations = stations;
    settings.timing = lineTiming();
    return settings;
}

DeviceSetting LinePlan::device() const {
    return DeviceSetting(DEVICE_RS485, QString::fromLatin1("COM2"), baud > 0 ? baud : 38400, 8, 0,
                         2);
}

std::unique_ptr<HostPort> makePort(const simulator::Line& line, const LinePlan& plan) {
    PortAddress address;
    address.path = line.devicePath();
    PortOptions options;
    options.care = plan.care;
    const DeviceSetting device = plan.device();
    return std::make_unique<HostPort>(
        makeChannel(address, device), device, plan.timing, [](const QString&) {}, options);
}

PolledLine::PolledLine(const LinePlan& plan)
    : m_plan(plan)
    , m_line(simulator::makePtyPort(), plan.lineSettings())
    , m_watch(*plan.stations.begin())
    , m_valid(addressesOf(plan)) {}

PolledLine::~PolledLine() {
    if (!m_thread)
        return;
    m_thread->stop();
    m_port->cancel();
    m_thread->wait();
}

Result<void> PolledLine::start() {
    Result<void> started = startStepped();
    if (started)
        m_thread->start();
    return started;
}

Result<void> PolledLine::startStepped() {
    if (Result<void> started = m_line.start(); !started)
        return started;
    m_port = makePort(m_line, m_plan);
    m_port->setExchangeSink([this](const Exchange& exchange) { m_watch.hear(exchange); });
    m_thread = std::make_unique<PollingThread>(m_port.get(), &m_valid, quint8(1), *m_plan.pauses);
    m_thread->setSessionCommand(sessionOf(m_plan));
    return {};
}

void PolledLine::silence(const std::set<quint8>& stations) {
    for (const quint8 station : stations)
        m_line.setFault(station, simulator::Fault()); // silence
}
