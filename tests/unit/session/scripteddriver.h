#ifndef TESTS_UNIT_SESSION_SCRIPTEDDRIVER_H
#define TESTS_UNIT_SESSION_SCRIPTEDDRIVER_H

#include "runtime/interfaces/abstractdeviceinterface.h"
#include "runtime/interfaces/devicesetting.h"
#include "runtime/interfaces/driverinterface.h"
#include "runtime/interfaces/driversetting.h"
#include "tests/support/simulatedclock.h"

#include <QMap>
#include <QStringList>

#include <functional>

/** A driver that keeps its values in a map and sends a request for everything it
 *  is asked, so that the port's counters move. Hooks make it fail. */
class ScriptedDriver : public DriverInterface {
public:
    int totalSize() override { return 1024; }
    bool write(AbstractDeviceInterface* port, const CommunicatorCommand& command,
               const QByteArray& data) override {
        asked.append(
            QStringLiteral("write %1 of %2").arg(command.address()).arg(port->stationId()));
        if (on_write)
            on_write(data);
        else
            values[command.address()] = data;
        return takes_writes;
    }
    QByteArray read(AbstractDeviceInterface* port, const CommunicatorCommand& command) override {
        if (command.address() == QLatin1String("WRITE_QUE_SIZE0"))
            return QByteArray(1, char(waiting_writes.isEmpty() ? 0 : waiting_writes.takeFirst())) +
                   '\0';
        asked.append(QStringLiteral("read %1 of %2").arg(command.address()).arg(port->stationId()));
        port->writeBytes("ask", 3);
        if (silent_stations.contains(port->stationId()))
            return QByteArray();
        return values.value(command.address(), QByteArray(command.getDataSize(), '\0'));
    }
    bool initialize(AbstractDeviceInterface*) override { return true; }
    bool validation(const QString&) override { return false; }
    DeviceSetting* getDefaultSerialDeviceSetting() override { return nullptr; }
    DriverSetting* getDefaultDriverSetting() override { return nullptr; }
    int supportedCommunicationFlags() override { return 0; }
    void setDebugMode(bool) override {}
    int getBlockAccessSize() override { return 0; }
    int getBitBlockAccessSize() override { return 0; }
    /** Asked once a tick: the polling thread's share of the work. */
    bool hasError() override {
        if (on_tick)
            on_tick();
        return !error.isEmpty();
    }
    QString getLastError() override { return error; }
    QObject* getThisObject() override { return nullptr; }
    void setSessionCommand(QList<CommunicatorCommand> commands) override {
        QStringList keys;
        for (const CommunicatorCommand& command : commands)
            keys.append(command.stringKey());
        sessions.append(keys.join(QLatin1Char(' ')));
    }

    QMap<QString, QByteArray> values; // by address text
    QList<int> silent_stations;
    QList<int> waiting_writes; // what WRITE_QUE_SIZE0 answers, in turn
    bool takes_writes = true;
    QString error;
    std::function<void()> on_tick;
    std::function<void(const QByteArray&)> on_write;

    QStringList asked;
    QStringList sessions;
};

#endif
