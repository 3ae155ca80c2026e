#ifndef HOST_LINE_TCPCHANNEL_H
#define HOST_LINE_TCPCHANNEL_H

#include "host/line/descriptorchannel.h"

struct addrinfo;

namespace host {

/** A TCP serial server that passes bytes through as they are. */
class TcpChannel : public DescriptorChannel {
public:
    TcpChannel(const QString& host, quint16 port);
    ~TcpChannel() override;

    /** Tries every address of the host, ConnectTimeoutMsecs each. */
    Result<void> open() override;
    void close() override;

    static constexpr int ConnectTimeoutMsecs = 3000;

private:
    Result<void> connectTo(const addrinfo& address);
    Result<void> awaitConnection();
    ssize_t put(const char* buffer, size_t length) override;

    const QByteArray m_host;
    const QByteArray m_port;
};

} // namespace host

#endif
