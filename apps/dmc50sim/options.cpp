#include "apps/dmc50sim/options.h"

#include "simulator/faultscript.h"
#include "simulator/numbers.h"

#include <CLI/CLI.hpp>
#include <QHostAddress>

namespace {

constexpr int UsageExitStatus = 2;
constexpr int DefaultDeviceBaud = 38400;

const char Description[] =
    "Simulates DMC50 controllers on one RS-485 line: on a pseudo-terminal (the default; its\n"
    "path is printed), on TCP or on a serial device. Ends with Ctrl-C, or \"quit\" on the\n"
    "standard input, which also takes: station N silent|ok|FAULT, dump N ADDRESS COUNT,\n"
    "set N ADDRESS VALUE, counters, help.";

const char Footer[] =
    "\nFAULT is KIND[:KEY=VALUE,...]. Kinds: silence, late, split, dribble, checksum,\n"
    "wrong-station, end-code, truncate, noise-before, noise-after, echo, close.\n"
    "Which requests: station=N, command=RN|WG|WN, then one of on=N (the N-th), every=N (each\n"
    "N-th), chance=0..1; count=N limits how often. What: ms=N, at=BYTES, value=N, bytes=<FF>A.\n"
    "\nExamples:\n"
    "  dmc50sim --stations 1,2 --link /tmp/dmc50 --baud 38400 --turnaround 5 --log -\n"
    "  dmc50sim --tcp 4001 --ramp 0x100:from=20,to=900,period=60\n"
    "  dmc50sim --fault late:station=2,every=10,ms=400 --fault checksum:chance=0.01 --seed 7\n"
    "\nExit status: 0 ended on request, 1 a file or the line failed, 2 bad usage.";

/** The command line as it is written, before it is understood. */
struct RawOptions {
    bool pty = false;
    std::string link;
    std::string tcp;
    std::string device;
    std::vector<int> stations = {1};
    std::string memory_file;
    std::string save_file;
    int baud = 0;
    double turnaround_ms = 0;
    std::string fault_file;
    std::vector<std::string> faults;
    std::optional<quint32> seed;
    std::string log_file;
    std::string trace_file;
    std::vector<std::string> ramps;
    std::vector<std::string> sines;
    std::vector<std::string> counters;
};

void addLineOptions(CLI::App& app, RawOptions& raw) {
    auto* pty = app.add_flag("--pty", raw.pty, "Use a pseudo-terminal (the default)");
    app.add_option("--link", raw.link, "Make PATH a symbolic link to the pseudo-terminal")
        ->type_name("PATH");
    auto* tcp =
        app.add_option("--tcp", raw.tcp,
                       "Listen on PORT of this machine only, or on ADDRESS:PORT; port 0 is any")
            ->type_name("[ADDRESS:]PORT");
    auto* device = app.add_option("--device", raw.device, "Use a serial device, even parity")
                       ->type_name("PATH");
    pty->excludes(tcp)->excludes(device);
    tcp->excludes(device);
    app.add_option("--baud", raw.baud,
                   "Let characters take as long as at this speed; for --device its speed "
                   "(38400 when not given)")
        ->type_name("BITS_PER_SECOND")
        ->check(CLI::Range(300, 4000000).description(""));
    app.add_option("--turnaround", raw.turnaround_ms, "Wait so long before a reply")
        ->type_name("MS")
        ->check(CLI::Range(0.0, 60000.0).description(""));
}

void addStationOptions(CLI::App& app, RawOptions& raw) {
    app.add_option("--stations", raw.stations, "Stations that answer, 1 to 255 (default 1)")
        ->type_name("N,...")
        ->delimiter(',')
        ->check(CLI::Range(1, 255).description(""));
    app.add_option("--memory", raw.memory_file, "Load double words from FILE at the start")
        ->type_name("FILE");
    app.add_option("--save", raw.save_file, "Save all double words to FILE at the end")
        ->type_name("FILE");
    app.add_option("--ramp", raw.ramps, "A value that rises again and again")
        ->type_name("[N-]ADDRESS[:from=F,to=F,period=S]");
    app.add_option("--sine", raw.sines, "A value that swings")
        ->type_name("[N-]ADDRESS[:from=F,to=F,period=S]");
    app.add_option("--counter", raw.counters, "A value that counts")
        ->type_name("[N-]ADDRESS[:from=F,step=F,period=S]");
}

void addFaultAndLogOptions(CLI::App& app, RawOptions& raw) {
    app.add_option("--faults", raw.fault_file, "Take faults from a script")->type_name("FILE");
    app.add_option("--fault", raw.faults, "One fault, see below; may be repeated")
        ->type_name("FAULT");
    app.add_option("--seed", raw.seed, "Seed of the faults' chances (default 1)")->type_name("N");
    app.add_option("--log", raw.log_file, "Log what happens; - is the standard output")
        ->type_name("FILE");
    app.add_option("--trace", raw.trace_file, "Write every frame, see docs/trace-format.md")
        ->type_name("FILE");
}

QString text(const std::string& narrow) {
    return QString::fromLocal8Bit(narrow.c_str());
}

/** Turns the raw command line into Options. The first error stays. */
class OptionReader {
public:
    explicit OptionReader(const RawOptions& raw) : m_raw(raw) {}

    Result<Options> read() {
        readTransport();
        m_options.line.stations = {m_raw.stations.begin(), m_raw.stations.end()};
        readMoving(simulator::MovingValue::Shape::Ramp, "--ramp", m_raw.ramps);
        readMoving(simulator::MovingValue::Shape::Sine, "--sine", m_raw.sines);
        readMoving(simulator::MovingValue::Shape::Counter, "--counter", m_raw.counters);
        readFaults();
        m_options.memory_file = text(m_raw.memory_file);
        m_options.save_file = text(m_raw.save_file);
        m_options.log_file = text(m_raw.log_file);
        m_options.trace_file = text(m_raw.trace_file);
        if (!m_error.isEmpty())
            return Failure(m_error);
        return m_options;
    }

private:
    void readTransport() {
        m_options.line.timing.turnaround_ms = m_raw.turnaround_ms;
        m_options.link = text(m_raw.link);
        if (!m_raw.device.empty()) {
            m_options.transport = Options::Transport::Device;
            m_options.device = text(m_raw.device);
            m_options.device_baud = m_raw.baud > 0 ? m_raw.baud : DefaultDeviceBaud;
            if (!m_raw.link.empty())
                fail("--link", QString::fromLatin1("only goes with a pseudo-terminal"));
            return;
        }
        m_options.line.timing.baud = m_raw.baud;
        if (!m_raw.tcp.empty())
            readTcp(text(m_raw.tcp));
    }

    void readTcp(const QString& address) {
        const int colon = address.lastIndexOf(QLatin1Char(':'));
        bool is_number = false;
        m_options.transport = Options::Transport::Tcp;
        m_options.host = colon < 0 ? QString::fromLatin1("127.0.0.1") : address.left(colon);
        m_options.port = address.mid(colon + 1).toUShort(&is_number);
        if (!is_number || QHostAddress(m_options.host).isNull())
            fail("--tcp", QString::fromLatin1("\"%1\" must be a port, 0 to 65535, or ADDRESS:PORT "
                                              "such as 0.0.0.0:4001")
                              .arg(address));
        if (!m_raw.link.empty())
            fail("--link", QString::fromLatin1("only goes with a pseudo-terminal"));
    }

    void readMoving(simulator::MovingValue::Shape shape, const char* option,
                    const std::vector<std::string>& specs) {
        for (const std::string& spec : specs) {
            const auto moving = simulator::parseMovingSpec(shape, text(spec));
            if (!moving) {
                fail(option, moving.error());
                continue;
            }
            const std::optional<quint8> station = moving->address.station;
            if (station && m_options.line.stations.count(*station) == 0)
                fail(option,
                     QString::fromLatin1("station %1 is not among --stations").arg(*station));
            m_options.moving.push_back(*moving);
        }
    }

    void readFaults() {
        for (const std::string& fault : m_raw.faults) {
            const Result<simulator::Fault> parsed = simulator::parseFault(text(fault));
            if (parsed)
                m_options.line.faults.push_back(*parsed);
            else
                fail("--fault", parsed.error());
        }
        if (!m_raw.fault_file.empty())
            readFaultScript();
        m_options.line.seed = m_raw.seed.value_or(m_options.line.seed);
    }

    void readFaultScript() {
        const auto script = simulator::loadFaultScript(text(m_raw.fault_file));
        if (!script) {
            fail("--faults", script.error());
            return;
        }
        m_options.line.seed = script->seed.value_or(m_options.line.seed);
        m_options.line.faults.insert(m_options.line.faults.end(), script->faults.begin(),
                                     script->faults.end());
    }

    void fail(const char* option, const QString& what) {
        if (m_error.isEmpty())
            m_error = QString::fromLatin1("%1: %2").arg(QLatin1String(option), what);
    }

    const RawOptions& m_raw;
    Options m_options;
    QString m_error;
};

} // namespace

ParsedOptions parseOptions(int argc, const char* const* argv) {
    CLI::App app(Description, "dmc50sim");
    RawOptions raw;
    ParsedOptions parsed;
    app.footer(Footer);
    addLineOptions(app, raw);
    addStationOptions(app, raw);
    addFaultAndLogOptions(app, raw);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        parsed.exit_status = app.exit(error) == 0 ? 0 : UsageExitStatus;
        return parsed;
    }
    const Result<Options> options = OptionReader(raw).read();
    if (options) {
        parsed.options = *options;
    } else {
        std::cerr << qPrintable(options.error()) << "\nRun with --help for more information.\n";
        parsed.exit_status = UsageExitStatus;
    }
    return parsed;
}
