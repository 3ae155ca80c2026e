#ifndef HOST_LINE_PORTADDRESS_H
#define HOST_LINE_PORTADDRESS_H

#include "host/line/bytechannel.h"
#include "runtime/interfaces/devicesetting.h"

#include <memory>

namespace host {

/** Where a line is: the path of a terminal device, or a TCP serial server. */
struct PortAddress {
    QString path; // empty for TCP
    QString host; // empty for a device
    quint16 port = 0;
};

/** Reads "/dev/ttyUSB0" or "tcp://host:port". The error says what is wrong and what
 *  would be right. */
Result<PortAddress> parsePortAddress(const QString& text);

/** The closed channel of that place. */
std::unique_ptr<ByteChannel> makeChannel(const PortAddress& address, const DeviceSetting& setting);

} // namespace host

#endif
