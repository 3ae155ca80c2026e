#ifndef HOST_LINE_RAWLINE_H
#define HOST_LINE_RAWLINE_H

#include "host/line/bytechannel.h"
#include "host/line/connection.h"

#include <memory>

namespace host {

/** The bytes of a port's line, lost and opened again as the adapter comes and
 *  goes. Thread: as Connection; cancel() and isCancelled() any. */
class RawLine {
public:
    /** A wait for the line, and for its taking bytes, lasts at most @p timeout_ms. */
    RawLine(std::unique_ptr<ByteChannel> channel, Clock& clock, LineLog log, int timeout_ms);

    Connection& connection() { return m_connection; }
    QString name() const { return m_channel->name(); }
    Clock& clock() { return m_clock; }
    int timeoutMsecs() const { return m_timeout_ms; }

    /** False when nothing could be sent. */
    bool send(const QByteArray& bytes);

    /** Waits at most @p wait_ms for a first byte, then takes what is there, at most
     *  @p max bytes. Nothing came in time, or the line is lost: empty. */
    QByteArray receive(int max, int wait_ms);

    /** Takes away what has been received. */
    QByteArray discard();

    void cancel() { m_channel->cancel(); }

    /** True while silence says something about a station. */
    bool isUsable() const { return m_connection.isOpen() && !m_channel->isCancelled(); }

private:
    const std::unique_ptr<ByteChannel> m_channel;
    Clock& m_clock;
    Connection m_connection;
    const int m_timeout_ms;
};

} // namespace host

#endif
