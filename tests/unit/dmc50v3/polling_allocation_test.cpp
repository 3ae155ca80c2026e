// A panel polls for years: a frame on the line must not touch the heap.
#include "tests/unit/dmc50v3/pollingfixture.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {
std::atomic<bool> counting{false};
std::atomic<int> allocations{0};

void* countedAllocation(std::size_t size) {
    if (counting)
        ++allocations;
    void* const memory = std::malloc(size ? size : 1);
    if (!memory)
        std::abort();
    return memory;
}
} // namespace

void* operator new(std::size_t size) {
    return countedAllocation(size);
}
void* operator new[](std::size_t size) {
    return countedAllocation(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

/** Answers every request with one reply made beforehand; takes no heap. */
class FixedReplyPort : public AbstractDeviceInterface {
public:
    explicit FixedReplyPort(const QByteArray& reply)
        : m_reply(reply), m_setting(DEVICE_RS485, QString(), 38400, 8, 0, 2) {}

    int readBytes(char* buffer, int max) override {
        const int count = std::min(max, int(m_reply.size()));
        std::memcpy(buffer, m_reply.constData(), std::size_t(count));
        return count;
    }
    int writeBytes(const char*, int length) override {
        ++m_requests;
        return length;
    }
    const DeviceSetting* deviceSetting() override { return &m_setting; }
    void control(int, QVariant) override {}
    int responseTimeout() override { return 3000; }
    unsigned retryCount() override { return 0; }
    int stationId() override { return 1; }
    unsigned frameInterval() override { return 10; }

    int m_requests = 0;

private:
    const QByteArray m_reply;
    DeviceSetting m_setting;
};

class InstantClock : public Clock {
public:
    qint64 msecsSinceBoot() override { return m_now; }
    int sleepMsecs(quint32 msecs) override {
        m_now += msecs;
        return 0;
    }

private:
    qint64 m_now = 0;
};

} // namespace

TEST(PollingAllocation, APolledFrameAllocatesNothing) {
    AddressVectorMap valid;
    for (quint32 address = 0; address < 50; ++address)
        valid[1].push_back(address);
    FixedReplyPort port(cplFrame("0100X00" + QByteArray("12345678").repeated(50)));
    InstantClock clock;
    PollingThread thread(&port, &valid, 1, clock);
    PollingThreadProbe probe(thread);
    QList<CommunicatorCommand> session;
    session.append(
        CommunicatorCommand(QString::fromLatin1("NA0"), CommunicatorCommand::DoubleWord, 50));
    thread.setSessionCommand(session);
    probe.cycle(); // takes the session over and meets every address once
    ASSERT_TRUE(thread.addrInDataCache(1, 49));

    allocations = 0;
    counting = true;
    for (int i = 0; i < 100; ++i)
        probe.cycle();
    counting = false;
    EXPECT_EQ(port.m_requests, 101);
    EXPECT_EQ(allocations, 0);
}
