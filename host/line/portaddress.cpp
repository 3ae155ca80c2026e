#include "host/line/portaddress.h"

#include "host/line/serialchannel.h"
#include "host/line/tcpchannel.h"

#include <QUrl>

namespace host {

Result<PortAddress> parsePortAddress(const QString& text) {
    PortAddress address;
    if (text.startsWith(QLatin1Char('/'))) {
        address.path = text;
        return address;
    }
    const QUrl url(text, QUrl::StrictMode);
    const bool bare = url.path().isEmpty() && !url.hasQuery() && url.userInfo().isEmpty();
    if (url.scheme() == QLatin1String("tcp") && !url.host().isEmpty() && url.port() > 0 && bare) {
        address.host = url.host();
        address.port = quint16(url.port());
        return address;
    }
    return Failure(QString::fromLatin1("'%1' is not a port; write a device such as /dev/ttyUSB0 or "
                                       "a serial server such as tcp://192.168.0.7:4001")
                       .arg(text));
}

std::unique_ptr<ByteChannel> makeChannel(const PortAddress& address, const DeviceSetting& setting) {
    if (address.path.isEmpty())
        return std::make_unique<TcpChannel>(address.host, address.port);
    return std::make_unique<SerialChannel>(address.path, setting);
}

} // namespace host
