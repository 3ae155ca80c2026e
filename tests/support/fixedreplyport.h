#ifndef TESTS_SUPPORT_FIXEDREPLYPORT_H
#define TESTS_SUPPORT_FIXEDREPLYPORT_H

#include "runtime/interfaces/abstractdeviceinterface.h"
#include "runtime/interfaces/devicesetting.h"

#include <algorithm>
#include <cstring>
#include <limits>

/** Answers every request at once with the same bytes, then with nothing. Takes no
 *  heap once it is made. */
class FixedReplyPort : public AbstractDeviceInterface {
public:
    /** One read gives at most @p chunk bytes. */
    explicit FixedReplyPort(const QByteArray& reply, int chunk = std::numeric_limits<int>::max())
        : m_reply(reply)
        , m_chunk(chunk)
        , m_at(reply.size())
        , m_setting(DEVICE_RS485, QString(), 38400, 8, 0, 2) {}

    int readBytes(char* buffer, int max) override {
        const int count = std::min(std::min(max, m_chunk), int(m_reply.size()) - m_at);
        std::memcpy(buffer, m_reply.constData() + m_at, std::size_t(count));
        m_at += count;
        return count;
    }
    int writeBytes(const char*, int length) override {
        ++m_requests;
        m_at = 0;
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
    const int m_chunk;
    int m_at; // of the reply, what comes next
    const DeviceSetting m_setting;
};

#endif
