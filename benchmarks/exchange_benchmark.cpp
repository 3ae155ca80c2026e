// CPU time of one read exchange: 50 double words by the driver's polling thread,
// beside libmodbus reading 100 registers, the same 200 bytes of values. Once without
// a line, once on a pty each, our side with the host's port. Pauses take no time.
#include "benchmarks/polledline.h"
#include "simulator/filedescriptor.h"
#include "tests/support/memorycontroller.h"
#include "tests/unit/dmc50v3/polledblock.h"

#include <benchmark/benchmark.h>
#include <modbus.h>

#include <array>
#include <thread>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

const int DoubleWords = 50;
const int Registers = 2 * DoubleWords;
const int ModbusSlave = 1;

modbus_t* newRtu(const char* path) {
    return modbus_new_rtu(path, 38400, 'N', 8, 2);
}

/** Adds the wall time of an exchange, in us, while the CPU time is the clients' own. */
class WallTime {
public:
    explicit WallTime(benchmark::State& state) : m_state(state) {}
    ~WallTime() {
        const std::chrono::duration<double, std::micro> passed = SteadyClock::now() - m_start;
        m_state.counters["wall_us"] =
            benchmark::Counter(passed.count(), benchmark::Counter::kAvgIterations);
    }
    WallTime(const WallTime&) = delete;
    WallTime& operator=(const WallTime&) = delete;

private:
    using SteadyClock = std::chrono::steady_clock;

    benchmark::State& m_state;
    const SteadyClock::time_point m_start = SteadyClock::now();
};

void oursExchange(benchmark::State& state) {
    const QByteArray reply = cplFrame("0100X00" + QByteArray("12345678").repeated(DoubleWords));
    PolledBlock block(DoubleWords, FixedReplyPort(reply));
    for (auto _ : state)
        block.probe.cycle();
    if (block.thread.hasError() || !block.thread.addrInDataCache(1, quint32(DoubleWords) - 1))
        state.SkipWithError("the exchange failed");
}

void oursOnPty(benchmark::State& state) {
    FreeClock pauses;
    LinePlan plan;
    plan.stations = {1};
    plan.addresses = DoubleWords;
    plan.baud = 0;
    plan.pauses = &pauses;
    PolledLine line(plan);
    if (const Result<void> started = line.startStepped(); !started) {
        state.SkipWithError(started.error().toUtf8().constData());
        return;
    }
    PollingThreadProbe probe(line.thread());
    WallTime wall(state);
    for (auto _ : state)
        probe.cycle();
    if (line.thread().hasError() || line.line().counters().replies < quint64(state.iterations()))
        state.SkipWithError("the exchange failed");
}

/** A Modbus server that answers on @p descriptor until the peer closes it. */
void serveModbus(modbus_t* server, int descriptor) {
    modbus_mapping_t* const mapping = modbus_mapping_new(0, 0, Registers, 0);
    modbus_set_slave(server, ModbusSlave);
    modbus_set_socket(server, descriptor);
    uint8_t query[MODBUS_TCP_MAX_ADU_LENGTH];
    for (int length; (length = modbus_receive(server, query)) != -1;)
        modbus_reply(server, query, length, mapping);
    modbus_mapping_free(mapping);
    modbus_free(server);
}

void readRegisters(benchmark::State& state, modbus_t* client) {
    uint16_t registers[Registers];
    for (auto _ : state) {
        if (modbus_read_registers(client, 0, Registers, registers) != Registers)
            state.SkipWithError(modbus_strerror(errno));
    }
}

/** The client's share alone: the server runs in a thread of its own. */
void libmodbusExchange(benchmark::State& state) {
    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) != 0) {
        state.SkipWithError("no socket pair");
        return;
    }
    std::thread server(serveModbus, modbus_new_tcp("127.0.0.1", 0), sockets[1]);
    modbus_t* const client = modbus_new_tcp("127.0.0.1", 0);
    modbus_set_socket(client, sockets[0]);
    readRegisters(state, client);
    close(sockets[0]);
    server.join();
    close(sockets[1]);
    modbus_free(client);
}

/** The client's share alone, with the frames and the terminal of RTU. */
void libmodbusOnPty(benchmark::State& state) {
    const simulator::FileDescriptor master(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    std::array<char, 64> path = {};
    if (grantpt(master.get()) != 0 || unlockpt(master.get()) != 0 ||
        ptsname_r(master.get(), path.data(), path.size()) != 0) {
        state.SkipWithError("no pseudo-terminal");
        return;
    }
    modbus_t* const client = newRtu(path.data());
    modbus_set_slave(client, ModbusSlave);
    if (modbus_connect(client) != 0) {
        state.SkipWithError(modbus_strerror(errno));
        modbus_free(client);
        return;
    }
    std::thread server(serveModbus, newRtu(path.data()), master.get());
    {
        WallTime wall(state);
        readRegisters(state, client);
    }
    modbus_close(client);
    server.join();
    modbus_free(client);
}

} // namespace

BENCHMARK(oursExchange)->Name("exchange/ours");
BENCHMARK(libmodbusExchange)->Name("exchange/libmodbus");
BENCHMARK(oursOnPty)->Name("exchange_pty/ours");
BENCHMARK(libmodbusOnPty)->Name("exchange_pty/libmodbus");
