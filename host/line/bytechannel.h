#ifndef HOST_LINE_BYTECHANNEL_H
#define HOST_LINE_BYTECHANNEL_H

#include "common/result.h"

#include <QByteArray>
#include <QString>

namespace host {

/** A line as bytes, without any idea of what they mean: a serial device, a TCP
 *  serial server, or a test's script.
 *
 *  Thread: one thread at a time calls everything but cancel() and isCancelled(),
 *  which any thread (and a signal handler) may call at any time. */
class ByteChannel {
public:
    ByteChannel() = default;
    ByteChannel(const ByteChannel&) = delete;
    ByteChannel& operator=(const ByteChannel&) = delete;
    virtual ~ByteChannel() = default;

    /** Opens the line, or opens it again. No error names the line. */
    virtual Result<void> open() = 0;

    virtual void close() = 0;

    /** Waits at most @p timeout_ms for a first byte, then takes what is there, at
     *  most @p max bytes. Returns the count, 0 when nothing came in time or after
     *  cancel(), and an error when the line is lost: it must be opened again. */
    virtual Result<int> read(char* buffer, int max, int timeout_ms) = 0;

    /** Sends all @p length bytes within @p timeout_ms; an error when the line is
     *  lost or stuck, or once it is cancelled. */
    virtual Result<void> write(const char* buffer, int length, int timeout_ms) = 0;

    /** Takes away what has been received and returns it. */
    virtual QByteArray discard() = 0;

    /** Ends the present and all later waits at once, for good. */
    virtual void cancel() = 0;
    virtual bool isCancelled() const = 0;

    /** What the operator calls the line: "/dev/ttyUSB0", "tcp://server:4001". */
    virtual QString name() const = 0;
};

} // namespace host

#endif
