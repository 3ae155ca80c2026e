// How much of a real line's time the driver leaves unused: the cycle time of
// 1000 addresses on 4 stations at 38400 baud, beside what wire, turn-around and
// frame pauses take at the least.
#include "host/line/hostport.h"
#include "host/line/portaddress.h"
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"
#include "runtime/interfaces/communicatorcommand.h"
#include "simulator/line.h"
#include "simulator/linetiming.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

using namespace host;

namespace {

const int Stations = 4;
const int AddressesEach = 250;
const int AddressesPerFrame = 50;
const int Cycles = 2;
const int Baud = 38400;
const double TurnaroundMsecs = 5;
const int FramePauseMsecs = 20; // the driver's default

const int RequestLength = 17 + 8 * AddressesPerFrame;
const int ReplyLength = 13 + 8 * AddressesPerFrame;
const int FramesPerCycle = Stations * AddressesEach / AddressesPerFrame;

using SteadyClock = std::chrono::steady_clock;

/** Notes when each request is handed to the line. */
class StopwatchPort : public HostPort {
public:
    using HostPort::HostPort;

    int writeBytes(const char* buffer, int length) override {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_requests.push_back(SteadyClock::now());
        }
        m_changed.notify_all();
        return HostPort::writeBytes(buffer, length);
    }

    /** Milliseconds between requests @p first and @p last, once both are out. */
    double msecsBetween(std::size_t first, std::size_t last) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [&] { return m_requests.size() > last; });
        const std::chrono::duration<double, std::milli> passed =
            m_requests[last] - m_requests[first];
        return passed.count();
    }

private:
    std::mutex m_mutex; // guards m_requests
    std::condition_variable m_changed;
    std::vector<SteadyClock::time_point> m_requests;
};

double shortestCycleMsecs() {
    simulator::LineTiming timing;
    timing.baud = Baud;
    const double wire = double(timing.wireTime(RequestLength + ReplyLength)) / 1e6;
    return FramesPerCycle * (wire + TurnaroundMsecs + FramePauseMsecs);
}

simulator::LineSettings lineSettings() {
    simulator::LineSettings settings;
    settings.stations.clear();
    for (int station = 1; station <= Stations; ++station)
        settings.stations.insert(quint8(station));
    settings.timing.baud = Baud;
    settings.timing.turnaround_ms = TurnaroundMsecs;
    return settings;
}

void lineCycle(benchmark::State& state) {
    simulator::Line line(simulator::makePtyPort(), lineSettings());
    if (const Result<void> started = line.start(); !started) {
        state.SkipWithError(started.error().toUtf8().constData());
        return;
    }
    AddressVectorMap valid;
    QList<CommunicatorCommand> session;
    for (int station = 1; station <= Stations; ++station) {
        for (int address = 0; address < AddressesEach; ++address)
            valid[quint8(station)].push_back(quint32(address));
        session.append(CommunicatorCommand(QString::fromLatin1("%1-NA0").arg(station),
                                           CommunicatorCommand::DoubleWord, AddressesEach));
    }
    const DeviceSetting device(DEVICE_RS485, QString::fromLatin1("COM2"), Baud, 8, 0, 2);
    const DriverSetting driver(3000, 0, 1, FramePauseMsecs);
    PortAddress address;
    address.path = line.devicePath();
    StopwatchPort port(makeChannel(address, device), device, driver, [](const QString&) {});
    PollingThread thread(&port, &valid, 1);
    thread.setSessionCommand(session);
    thread.start();

    double cycle = 0;
    for (auto _ : state) {
        const std::size_t first = 1; // the first request also opens the line
        cycle = port.msecsBetween(first, first + Cycles * FramesPerCycle) / Cycles;
        state.SetIterationTime(cycle / 1000);
    }
    if (thread.hasError())
        state.SkipWithError(thread.getLastError().toUtf8().constData());
    thread.stop();
    port.cancel();
    thread.wait();
    state.counters["value"] = cycle;
    state.counters["limit"] = shortestCycleMsecs();
}

} // namespace

BENCHMARK(lineCycle)
    ->Name("line/ours")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
