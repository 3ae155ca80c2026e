// CPU time of one read exchange: 50 double words by the driver's polling thread,
// beside libmodbus reading 100 registers, the same 200 bytes of values.
#include "tests/support/memorycontroller.h"
#include "tests/unit/dmc50v3/polledblock.h"

#include <benchmark/benchmark.h>
#include <modbus.h>

#include <thread>

#include <sys/socket.h>
#include <unistd.h>

namespace {

const int DoubleWords = 50;
const int Registers = 2 * DoubleWords;

void oursExchange(benchmark::State& state) {
    const QByteArray reply = cplFrame("0100X00" + QByteArray("12345678").repeated(DoubleWords));
    PolledBlock block(DoubleWords, FixedReplyPort(reply));
    for (auto _ : state)
        block.probe.cycle();
    if (block.thread.hasError() || !block.thread.addrInDataCache(1, quint32(DoubleWords) - 1))
        state.SkipWithError("the exchange failed");
}

/** A Modbus server that answers on @p socket until the peer closes it. */
void serveModbus(int socket) {
    modbus_t* const server = modbus_new_tcp("127.0.0.1", 0);
    modbus_mapping_t* const mapping = modbus_mapping_new(0, 0, Registers, 0);
    modbus_set_socket(server, socket);
    uint8_t query[MODBUS_TCP_MAX_ADU_LENGTH];
    for (int length; (length = modbus_receive(server, query)) != -1;)
        modbus_reply(server, query, length, mapping);
    modbus_mapping_free(mapping);
    modbus_free(server);
}

/** The client's share alone: the server runs in a thread of its own. */
void libmodbusExchange(benchmark::State& state) {
    int sockets[2];
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) != 0) {
        state.SkipWithError("no socket pair");
        return;
    }
    std::thread server(serveModbus, sockets[1]);
    modbus_t* const client = modbus_new_tcp("127.0.0.1", 0);
    modbus_set_socket(client, sockets[0]);
    uint16_t registers[Registers];
    for (auto _ : state) {
        if (modbus_read_registers(client, 0, Registers, registers) != Registers)
            state.SkipWithError(modbus_strerror(errno));
    }
    close(sockets[0]);
    server.join();
    close(sockets[1]);
    modbus_free(client);
}

} // namespace

BENCHMARK(oursExchange)->Name("exchange/ours");
BENCHMARK(libmodbusExchange)->Name("exchange/libmodbus");
