#ifndef HOST_LINE_SERIALCHANNEL_H
#define HOST_LINE_SERIALCHANNEL_H

#include "host/line/descriptorchannel.h"
#include "runtime/interfaces/devicesetting.h"

#include <memory>

class QSerialPort;

namespace host {

/** A serial device, or any other terminal such as the slave of a pty. The
 *  settings' name is not looked at: it is the panel's name of the port. */
class SerialChannel : public DescriptorChannel {
public:
    SerialChannel(const QString& path, const DeviceSetting& setting);
    ~SerialChannel() override;

    Result<void> open() override;
    void close() override;

private:
    bool configure(QSerialPort& port) const;
    QString openFailure(const QSerialPort& port) const;

    const DeviceSetting m_setting;
    std::unique_ptr<QSerialPort> m_port; // null while closed
};

} // namespace host

#endif
