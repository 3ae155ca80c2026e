#ifndef SIMULATOR_LINEPORT_H
#define SIMULATOR_LINEPORT_H

#include "common/result.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

namespace simulator {

/** Takes one line of log, without a line end. */
using LogSink = std::function<void(const QString&)>;

/** The simulator's end of a byte line. Used by one thread only. */
class LinePort {
public:
    virtual ~LinePort() = default;

    /** Where news of the line go: clients that come and go. Set before open(). */
    void setLog(const LogSink& log) { m_log = log; }

    /** Opens the line; also again after close(), under the same path where the
     *  kernel allows it. An error names what it is about. */
    virtual Result<void> open() = 0;

    /** Closes the line: a client sees it go. */
    virtual void close() = 0;

    /** False before open() and when the device went away by itself. */
    virtual bool isOpen() const = 0;

    /** What a client opens: a device path or tcp://host:port. Valid once open. */
    virtual QString path() const = 0;

    /** The bytes that have come, waiting for the first at most @p timeout_ms. */
    virtual QByteArray read(int timeout_ms) = 0;

    /** Hands bytes to the client. What a client does not take is lost, as on a
     *  wire: it never waits. */
    virtual void write(const QByteArray& bytes) = 0;

protected:
    void log(const QString& text) const {
        if (m_log)
            m_log(text);
    }

private:
    LogSink m_log;
};

/** A kernel pseudo-terminal in raw mode. When @p link is not empty, a symbolic
 *  link of that name points to it while it is open. */
std::unique_ptr<LinePort> makePtyPort(const QString& link = QString());

/** A TCP server on @p host, an IP address, and @p port; 0 takes a free one, and
 *  keeps it. It serves one client at a time, the next when that one has gone. */
std::unique_ptr<LinePort> makeTcpPort(const QString& host, quint16 port);

/** A serial device: @p baud, 8 data bits, even parity, 1 stop bit. */
std::unique_ptr<LinePort> makeSerialPort(const QString& device, int baud);

} // namespace simulator

#endif
