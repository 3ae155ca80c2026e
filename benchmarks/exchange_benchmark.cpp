// CPU time of one read exchange: 50 double words by the driver's polling thread,
// beside libmodbus reading 100 registers, the same 200 bytes of values.
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"
#include "runtime/interfaces/abstractdeviceinterface.h"
#include "runtime/interfaces/communicatorcommand.h"
#include "tests/support/memorycontroller.h"
#include "tests/unit/dmc50v3/pollingthreadprobe.h"

#include <benchmark/benchmark.h>
#include <modbus.h>

#include <algorithm>
#include <cstring>
#include <thread>

#include <sys/socket.h>
#include <unistd.h>

namespace {

const int DoubleWords = 50;
const int Registers = 2 * DoubleWords;

/** Answers every request at once with the same values. */
class FixedReplyPort : public AbstractDeviceInterface {
public:
    int readBytes(char* buffer, int max) override {
        const int count = std::min(max, int(m_reply.size()));
        std::memcpy(buffer, m_reply.constData(), std::size_t(count));
        return count;
    }
    int writeBytes(const char*, int length) override { return length; }
    const DeviceSetting* deviceSetting() override { return &m_setting; }
    void control(int, QVariant) override {}
    int responseTimeout() override { return 3000; }
    unsigned retryCount() override { return 0; }
    int stationId() override { return 1; }
    unsigned frameInterval() override { return 10; }

private:
    const QByteArray m_reply = cplFrame("0100X00" + QByteArray("12345678").repeated(DoubleWords));
    const DeviceSetting m_setting{DEVICE_RS485, QString(), 38400, 8, 0, 2};
};

/** Pauses cost nothing: they are not the driver's work. */
class FreeClock : public Clock {
public:
    qint64 msecsSinceBoot() override { return m_now; }
    int sleepMsecs(quint32 msecs) override {
        m_now += msecs;
        return 0;
    }

private:
    qint64 m_now = 0;
};

void oursExchange(benchmark::State& state) {
    AddressVectorMap valid;
    for (quint32 address = 0; address < quint32(DoubleWords); ++address)
        valid[1].push_back(address);
    FixedReplyPort port;
    FreeClock clock;
    PollingThread thread(&port, &valid, 1, clock);
    PollingThreadProbe probe(thread);
    QList<CommunicatorCommand> session;
    session.append(CommunicatorCommand(QString::fromLatin1("NA0"), CommunicatorCommand::DoubleWord,
                                       DoubleWords));
    thread.setSessionCommand(session);
    for (auto _ : state)
        probe.cycle();
    if (thread.hasError() || !thread.addrInDataCache(1, quint32(DoubleWords) - 1))
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
