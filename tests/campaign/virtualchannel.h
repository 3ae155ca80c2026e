#ifndef TESTS_CAMPAIGN_VIRTUALCHANNEL_H
#define TESTS_CAMPAIGN_VIRTUALCHANNEL_H

#include "host/line/bytechannel.h"
#include "tests/campaign/virtualline.h"

namespace campaign {

/** The host's end of the virtual line: an adapter that may be pulled. */
class VirtualChannel : public host::ByteChannel {
public:
    VirtualChannel(VirtualLine& line, VirtualTime& time) : m_line(line), m_time(time) {}

    Result<void> open() override;
    void close() override { m_received.clear(); }
    Result<int> read(char* buffer, int max, int timeout_ms) override;
    Result<void> write(const char* buffer, int length, int timeout_ms) override;
    QByteArray discard() override;
    void cancel() override { m_cancelled = true; }
    bool isCancelled() const override { return m_cancelled; }
    QString name() const override { return QStringLiteral("the virtual line"); }

private:
    bool isLost() const { return m_opened != m_line.unplugs() || !m_line.isPlugged(); }
    int takeReceived(char* buffer, int max);

    VirtualLine& m_line;
    VirtualTime& m_time;
    QByteArray m_received;
    int m_opened = 0; // how often the adapter had been pulled before
    bool m_cancelled = false;
};

} // namespace campaign

#endif
