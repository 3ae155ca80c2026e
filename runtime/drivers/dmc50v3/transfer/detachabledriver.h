#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_DETACHABLEDRIVER_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_DETACHABLEDRIVER_H

#include "runtime/drivers/polling/drivergate.h"

#include <QByteArray>

class AbstractDeviceInterface;
class CommunicatorCommand;
class DriverDMC50v3;

/** The driver and its port as a transfer uses them: they may go at any moment,
 *  and each call then does nothing and says so. Before attach() they count as
 *  gone, too.
 *
 *  All calls are to the station that the port names at that moment, the low 8
 *  bits of its number. It is asked again for each program, so the port's owner
 *  holds it still for as long as a transfer runs.
 *
 *  Thread: any, unless stated otherwise. */
class DetachableDriver {
public:
    DetachableDriver();

    /** Neither object is owned; both must stay until waitForCalls() has returned.
     *  Once, before a second thread knows this object. */
    void attach(DriverDMC50v3* driver, AbstractDeviceInterface* port);

    /** After this no call of the driver or the port begins. Never blocks for long. */
    void detach();

    /** Blocks until no such call runs. Not from inside a call, and with no lock held
     *  that the driver's read or write takes. */
    void waitForCalls();

    bool isGone();

    /** The double words that @p command asks for, 4 bytes each with the least
     *  significant first; empty when the driver has gone or could not read them. */
    QByteArray readProgram(const CommunicatorCommand& command);

    /** Queues @p image. A write that the driver refuses shows in the queue only. */
    void writeProgram(const CommunicatorCommand& command, const QByteArray& image);

    /** The pairs that wait to be written. False, with @p size as it was, when the
     *  driver has gone. The driver gives a signed word: a queue beyond 32767 pairs
     *  counts as an enormous one. */
    bool readWriteQueueSize(quint32& size);

    /** While it is set the driver answers no ordinary read. */
    void setProgramReading(bool reading);

private:
    Q_DISABLE_COPY(DetachableDriver)

    class Call;

    DriverGate m_gate;
    DriverDMC50v3* m_driver;           // not owned; constant once attached, used in a Call only
    AbstractDeviceInterface* m_device; // likewise
};

#endif
