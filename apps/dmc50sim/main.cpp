// Simulated DMC50 controllers as a program; see docs/simulator.md.
#include "apps/dmc50sim/control.h"
#include "apps/dmc50sim/logfile.h"
#include "apps/dmc50sim/options.h"

#include "simulator/linememory.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

constexpr int FailureExitStatus = 1;

std::unique_ptr<simulator::LinePort> makePort(const Options& options) {
    switch (options.transport) {
    case Options::Transport::Tcp:
        return simulator::makeTcpPort(options.host, options.port);
    case Options::Transport::Device:
        return simulator::makeSerialPort(options.device, options.device_baud);
    case Options::Transport::Pty:
        break;
    }
    return simulator::makePtyPort(options.link);
}

Result<void> prepare(const simulator::Line& line, const Options& options) {
    for (const simulator::MovingSpec& moving : options.moving) {
        for (simulator::Station* station : simulator::stationsOf(line, moving.address))
            station->setMoving(moving.address.address, moving.value);
    }
    return options.memory_file.isEmpty() ? Result<void>()
                                         : simulator::loadMemory(line, options.memory_file);
}

int fail(const QString& error) {
    std::fprintf(stderr, "%s\n", qPrintable(error));
    return FailureExitStatus;
}

/** Runs the line from its start to its end. */
int runLine(simulator::Line& line, const Options& options, const EndSignals& end_signals) {
    const Result<void> started = prepare(line, options).and_then([&line] { return line.start(); });
    if (!started)
        return fail(started.error());
    std::puts(qPrintable(line.devicePath()));
    std::fflush(stdout);
    simulator::LineConsole console(line);
    controlLine(console, end_signals);
    line.stop();
    if (options.save_file.isEmpty())
        return 0;
    const Result<void> saved = simulator::saveMemory(line, options.save_file);
    return saved ? 0 : fail(saved.error());
}

} // namespace

int main(int argc, char** argv) {
    const ParsedOptions parsed = parseOptions(argc, argv);
    if (parsed.exit_status)
        return *parsed.exit_status;
    const EndSignals end_signals;
    const QCoreApplication application(argc, argv);

    Options options = parsed.options;
    LogFile log;
    if (!options.log_file.isEmpty()) {
        if (const Result<void> opened = log.open(options.log_file); !opened)
            return fail(opened.error());
        options.line.log = [&log](const QString& text) { log.write(text); };
    }
    QFile trace_file(options.trace_file);
    if (!options.trace_file.isEmpty() && !trace_file.open(QIODevice::WriteOnly))
        return fail(
            QString::fromLatin1("%1: %2").arg(options.trace_file, trace_file.errorString()));
    trace::FrameTrace trace(&trace_file, [&options](const QString& error) {
        tellOfLostOutput(options.trace_file, error);
    });
    if (trace_file.isOpen())
        options.line.trace = &trace;

    simulator::Line line(makePort(options), options.line);
    return runLine(line, options, end_signals);
}
