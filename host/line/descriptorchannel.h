#ifndef HOST_LINE_DESCRIPTORCHANNEL_H
#define HOST_LINE_DESCRIPTORCHANNEL_H

#include "host/line/bytechannel.h"

#include <sys/types.h>

#include <atomic>

namespace host {

/** A channel over a non-blocking file descriptor. Waiting is one poll() on the
 *  descriptor and on an event that cancel() raises, so a cancelled wait ends at
 *  once. A subclass opens and closes; the descriptor stays its own. */
class DescriptorChannel : public ByteChannel {
public:
    ~DescriptorChannel() override;

    Result<int> read(char* buffer, int max, int timeout_ms) override;
    Result<void> write(const char* buffer, int length, int timeout_ms) override;
    QByteArray discard() override;
    void cancel() override;
    bool isCancelled() const override { return m_cancelled; }
    QString name() const override { return m_name; }

protected:
    explicit DescriptorChannel(const QString& name);

    /** The descriptor to wait on; -1 while the line is closed. */
    void setDescriptor(int descriptor) { m_descriptor = descriptor; }
    int descriptor() const { return m_descriptor; }

    enum class Wait { Ready, TimedOut, Cancelled };

    /** Waits until poll() reports @p events, or trouble, on the descriptor. */
    Result<Wait> waitFor(short events, int timeout_ms);

private:
    /** write() on the descriptor. */
    virtual ssize_t put(const char* buffer, size_t length);

    const QString m_name;
    const int m_cancel_event; // an eventfd, never reset once raised
    std::atomic<bool> m_cancelled{false};
    int m_descriptor = -1;
};

} // namespace host

#endif
