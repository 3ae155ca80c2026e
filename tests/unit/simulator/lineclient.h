#ifndef TESTS_UNIT_SIMULATOR_LINECLIENT_H
#define TESTS_UNIT_SIMULATOR_LINECLIENT_H

#include <QByteArray>
#include <QString>

/** A client of a real line: a terminal opened as a plain file, or a socket. */
class LineClient {
public:
    LineClient() = default;
    ~LineClient() { close(); }
    LineClient(const LineClient&) = delete;
    LineClient& operator=(const LineClient&) = delete;

    /** Opens a device path or tcp://127.0.0.1:port; false when it cannot. */
    bool open(const QString& path);
    void close();
    int descriptor() const { return m_descriptor; }

    void write(const QByteArray& bytes);

    /** At most @p count bytes: what comes until they are there, the other side has gone, or
     *  nothing has come for @p quiet_ms. */
    QByteArray read(int count, int quiet_ms = 5000);

    /** Sends a request and returns as many bytes as expected. */
    QByteArray exchange(const QByteArray& request, int reply_size) {
        write(request);
        return read(reply_size);
    }

    /** True once the other side has gone; waits for it. */
    bool seesTheEnd();

private:
    int m_descriptor = -1;
};

#endif
