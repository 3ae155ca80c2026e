// How much longer than it must a pull of all 32 programs takes at 38400 baud: the
// reading, from the panel's start request to the last program, without the file.
#include "host/line/hostport.h"
#include "host/line/portaddress.h"
#include "runtime/drivers/dmc50v3/dmc50v3.h"
#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"
#include "runtime/drivers/dmc50v3/transfer/programtable.h"
#include "runtime/interfaces/communicatorcommand.h"
#include "simulator/line.h"
#include "simulator/linetiming.h"
#include "tests/support/temporarydirectory.h"
#include "tests/support/testproject.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <future>
#include <mutex>

using namespace host;

namespace {

const int Programs = ProgramTable::MaxPrograms;
const int Baud = 38400;
const double TurnaroundMsecs = 5;
const int FramePauseMsecs = 20; // the driver's default

// Between two looks of a waiting thread; both in the driver's read path.
const double IdleStepMsecs = 10;   // the polling thread's, at its queues
const double ReaderStepMsecs = 30; // the reader's, at what has been fetched

const int RequestLength = 17 + 8 * ProgramTable::ProgramDoubleWords;
const int ReplyLength = 13 + 8 * ProgramTable::ProgramDoubleWords;

using SteadyClock = std::chrono::steady_clock;

/** Knows when it was last asked. */
class NotingClock : public Clock {
public:
    qint64 msecsSinceBoot() override {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_asked = SteadyClock::now();
        return Clock::system().msecsSinceBoot();
    }
    int sleepMsecs(quint32 msecs) override { return Clock::system().sleepMsecs(msecs); }

    SteadyClock::time_point lastAsked() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_asked;
    }

private:
    mutable std::mutex m_mutex; // guards m_asked
    SteadyClock::time_point m_asked;
};

/** A stick that is a folder, and a promise for the transfer's end. */
class PullEnvironment : public TransferEnvironment {
public:
    /** The exporter asks it before and after each program and never later. */
    NotingClock& clock() override { return m_clock; }
    void callLater(int, QObject*, const char*) override { m_ended.set_value(); }
    QString usbMountPath() override { return m_stick.path(); }
    void syncStorage() override {}

    void awaitEnd() { m_ended.get_future().wait(); }
    const TemporaryDirectory& stick() const { return m_stick; }

private:
    NotingClock m_clock;
    std::promise<void> m_ended;
    TemporaryDirectory m_stick;
};

QString tagOf(int address) {
    return QString::fromLatin1("NA%1").arg(address, 0, 16);
}

/** The first double word of each program. */
QStringList slotTags() {
    QStringList tags;
    for (int number = 0; number < Programs; ++number)
        tags.append(tagOf(ProgramTable::FirstSlotAddress + number * ProgramTable::SlotDistance));
    return tags;
}

QStringList allTags() {
    QStringList tags;
    for (int number = 0; number < Programs; ++number) {
        const int first = ProgramTable::FirstSlotAddress + number * ProgramTable::SlotDistance;
        for (int i = 0; i < ProgramTable::ProgramDoubleWords; ++i)
            tags.append(tagOf(first + i));
    }
    return tags;
}

simulator::LineTiming lineTiming() {
    simulator::LineTiming timing;
    timing.baud = Baud;
    timing.turnaround_ms = TurnaroundMsecs;
    return timing;
}

/** From the polling thread's look at its queue to the last character. */
double exchangeMsecs() {
    const double wire = double(lineTiming().wireTime(RequestLength + ReplyLength)) / 1e6;
    return FramePauseMsecs + wire + TurnaroundMsecs;
}

/** The polling thread finds a request at its next look, the reader the program at
 *  its own; then it asks for the next one at once. */
double shortestPullMsecs() {
    double pull = 0;
    double look = 0; // from the request to the polling thread's next look; at best none
    for (int number = 0; number < Programs; ++number) {
        const double fetched = look + exchangeMsecs();
        const double taken = std::ceil(fetched / ReaderStepMsecs) * ReaderStepMsecs;
        pull += taken;
        look = std::ceil((taken - fetched) / IdleStepMsecs) * IdleStepMsecs - (taken - fetched);
    }
    return pull;
}

CommunicatorCommand byteTag(const char* address) {
    return CommunicatorCommand(QString::fromLatin1(address), CommunicatorCommand::Byte, 1);
}

/** Pulls all programs; milliseconds of its reading. */
double pull(CSVImExporter& exporter, PullEnvironment& environment) {
    exporter.setProgCount(Programs);
    const SteadyClock::time_point start = SteadyClock::now();
    exporter.processWriteCommand(byteTag("VVT_ENABLE1"), QByteArray(1, '\1'));
    environment.awaitEnd();
    const std::chrono::duration<double, std::milli> passed =
        environment.clock().lastAsked() - start;
    return passed.count();
}

/** Whether every program has got its line of the file. */
bool isComplete(const PullEnvironment& environment) {
    const QByteArray line_feed("\n\0", 2);
    return environment.stick().read(QString::fromLatin1("PROG_0.txt")).count(line_feed) ==
           Programs + 1;
}

void pullPrograms(benchmark::State& state) {
    simulator::LineSettings settings;
    settings.timing = lineTiming();
    simulator::Line line(simulator::makePtyPort(), settings);
    if (const Result<void> started = line.start(); !started) {
        state.SkipWithError(started.error().toUtf8().constData());
        return;
    }
    TestProject project;
    project.create(1, allTags());
    const DeviceSetting device(DEVICE_RS485, QString::fromLatin1("COM2"), Baud, 8, 0, 2);
    PortAddress address;
    address.path = line.devicePath();
    HostPort port(makeChannel(address, device), device, DriverSetting(9000, 1, 1, FramePauseMsecs),
                  [](const QString&) {});
    PullEnvironment environment;
    CSVImExporter exporter(nullptr, environment);
    DriverDMC50v3 driver;
    driver.read(&port, byteTag("INITDRV0")); // the polling thread runs from here on
    exporter.setRcpDataCommandAddrList(slotTags());
    exporter.setDriverDMC50v3_DeviceInterface(&driver, &port);

    double msecs = 0;
    for (auto _ : state) {
        msecs = pull(exporter, environment);
        state.SetIterationTime(msecs / 1000);
    }
    exporter.detachDriver();
    exporter.waitForDriverCalls();
    if (!isComplete(environment))
        state.SkipWithError("a program is missing");
    state.counters["value"] = msecs;
    state.counters["limit"] = shortestPullMsecs();
}

} // namespace

BENCHMARK(pullPrograms)
    ->Name("pull/ours")
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
