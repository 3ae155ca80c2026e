// Any bytes as a controller's reply, in any pieces: a reply that is accepted has
// a right checksum, the right station and end code 0, and its values are its own.
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"
#include "runtime/interfaces/abstractdeviceinterface.h"
#include "runtime/interfaces/communicatorcommand.h"
#include "tests/unit/dmc50v3/pollingthreadprobe.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

const int DoubleWords = 3;

/** Gives one reply in pieces of @e chunk bytes, then nothing. */
class BytesPort : public AbstractDeviceInterface {
public:
    BytesPort(const QByteArray& reply, int chunk) : m_reply(reply), m_chunk(chunk) {}

    int readBytes(char* buffer, int max) override {
        const int count = std::min(std::min(max, m_chunk), int(m_reply.size()) - m_at);
        std::memcpy(buffer, m_reply.constData() + m_at, std::size_t(count));
        m_at += count;
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
    const QByteArray m_reply;
    const int m_chunk;
    int m_at = 0;
    const DeviceSetting m_setting{DEVICE_RS485, QString(), 38400, 8, 0, 2};
};

class FreeClock : public Clock {
public:
    qint64 msecsSinceBoot() override { return 0; }
    int sleepMsecs(quint32) override { return 0; }
};

void require(bool condition) {
    if (!condition)
        std::abort();
}

/** The part of @p reply that the driver collects: up to a piece that ends with
 *  LF, at most its buffer. */
QByteArray collected(const QByteArray& reply, int chunk) {
    QByteArray bytes;
    while (bytes.size() < 420 && bytes.size() < reply.size()) {
        bytes += reply.mid(bytes.size(), std::min(chunk, 420 - int(bytes.size())));
        if (bytes.endsWith('\n'))
            break;
    }
    return bytes;
}

void checkAccepted(const QByteArray& frame, PollingThread& thread) {
    require(frame.size() >= 13);
    unsigned sum = 0;
    for (int i = 0; i < frame.size() - 4; ++i)
        sum += quint8(frame.at(i));
    const QByteArray digits = frame.mid(frame.size() - 4, 2);
    bool is_hex = false;
    const unsigned checksum = digits.toUInt(&is_hex, 16);
    require(((sum + (is_hex ? checksum : 0)) & 0xFF) == 0);
    for (int i = 0; i < DoubleWords; ++i) {
        quint32 value = 0;
        require(thread.getDWordFromDataCacheMap(1, quint32(i), value));
        bool is_value = false;
        const quint32 expected = frame.mid(8 + 8 * i, 8).toUInt(&is_value, 16);
        if (is_value && frame.size() >= 16 + 8 * i && !frame.mid(8 + 8 * i, 8).contains('+') &&
            !frame.mid(8 + 8 * i, 8).contains(' '))
            require(value == expected);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const int chunk = data[0] == 0 ? 1000 : data[0];
    const QByteArray reply(reinterpret_cast<const char*>(data + 1), int(size) - 1);
    AddressVectorMap valid;
    valid[1] = {0, 1, 2};
    BytesPort port(reply, chunk);
    FreeClock clock;
    PollingThread thread(&port, &valid, 1, clock);
    PollingThreadProbe probe(thread);
    QList<CommunicatorCommand> session;
    session.append(CommunicatorCommand(QString::fromLatin1("NA0"), CommunicatorCommand::DoubleWord,
                                       DoubleWords));
    thread.setSessionCommand(session);
    probe.takeOverSession();
    probe.pollingScan();
    if (thread.hasError())
        require(!thread.getLastError().isEmpty());
    else
        checkAccepted(collected(reply, chunk), thread);
    return 0;
}
