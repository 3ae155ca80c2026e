#ifndef RUNTIME_INTERFACES_DRIVERINTERFACE_H
#define RUNTIME_INTERFACES_DRIVERINTERFACE_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtPlugin>

class AbstractDeviceInterface;
class CommunicatorCommand;
class QObject;
struct DeviceSetting;
struct DriverSetting;

/** What the host wants of a driver. The host calls it through its table of
 *  virtual functions, so the order below is the contract. One thread calls it:
 *  the host's communication thread. */
class DriverInterface {
public:
    virtual ~DriverInterface() {}

    virtual int totalSize() = 0;
    virtual bool write(AbstractDeviceInterface* port, const CommunicatorCommand& command,
                       const QByteArray& data) = 0;
    /** The command's bytes, or an empty array on failure. */
    virtual QByteArray read(AbstractDeviceInterface* port, const CommunicatorCommand& command) = 0;
    virtual bool initialize(AbstractDeviceInterface* port) = 0;
    virtual bool validation(const QString& address) = 0;
    virtual QString name() { return QString::fromLatin1("Not Assigned"); }
    virtual QString vender() { return QString::fromLatin1("Not Assigned"); } // the host's spelling
    virtual QString getVersionNumber() { return QString::fromLatin1("Not Assigned"); }
    /** New records; the caller owns them. */
    virtual DeviceSetting* getDefaultSerialDeviceSetting() = 0;
    virtual DriverSetting* getDefaultDriverSetting() = 0;
    virtual QString getStringBasedDefaultDriverSetting() {
        return QString::fromLatin1("RS232,9600,EVEN,7,1");
    }
    /** Union of device_type flags. */
    virtual int supportedCommunicationFlags() = 0;
    virtual void setDebugMode(bool on) = 0;
    virtual int getBlockAccessSize() = 0;
    virtual int getBitBlockAccessSize() = 0;
    virtual bool hasError() = 0;
    virtual QString getLastError() = 0;
    virtual QObject* getThisObject() = 0;
    virtual bool isSupportSessionCommand() { return false; }
    /** The tags that the host shows now; they are polled. */
    virtual void setSessionCommand(QList<CommunicatorCommand>) {}
    virtual void clearSessionCommand() {}
    virtual bool deviceSettingChanged(const DeviceSetting*) { return true; }
    virtual bool isConnected(AbstractDeviceInterface*) { return true; }
};

Q_DECLARE_INTERFACE(DriverInterface, "com.halvoric.drivers.DriverInterface/1.1")

#endif
