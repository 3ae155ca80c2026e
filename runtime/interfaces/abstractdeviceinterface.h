#ifndef RUNTIME_INTERFACES_ABSTRACTDEVICEINTERFACE_H
#define RUNTIME_INTERFACES_ABSTRACTDEVICEINTERFACE_H

#include "runtime/interfaces/devicesetting.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

struct DriverSetting;

/** The host's port. The driver calls it through its table of virtual functions,
 *  so the order of the operations is the contract (slot numbers in comments;
 *  the destructor takes slots 0 and 1). Operations with a body are not called by
 *  the driver; they hold their slots.
 *
 *  Thread: after the driver's first access, only its polling thread calls
 *  readBytes, writeBytes and control; the other operations may be called from
 *  any thread and must allow that. */
class AbstractDeviceInterface {
public:
    /** Codes of control(). */
    enum ControlCode {
        DiscardReceived = 12 // throw away what has been received
    };

    virtual ~AbstractDeviceInterface() {}

    virtual bool open() { return true; } // 2

    /** 3: copies what has arrived, at most @p max bytes, into @p buffer; waits at
     *  most the response timeout for the first byte. Returns the count, less
     *  than 1 when nothing came. */
    virtual int readBytes(char* buffer, int max) = 0;

    /** 4: sends @p length bytes. Returns the count sent. */
    virtual int writeBytes(const char* buffer, int length) = 0;

    virtual int bytesAvailable() { return 0; } // 5
    virtual void flush() {}                    // 6
    virtual void close() {}                    // 7

    /** 8: the port's settings, owned by the port; its name selects the link. */
    virtual const DeviceSetting* deviceSetting() = 0;

    virtual void setDeviceSetting(const DeviceSetting*) {} // 9
    virtual bool isOpen() { return true; }                 // 10
    virtual void reset() {}                                // 11

    /** 12: sent as control(DiscardReceived, 0) before every request. */
    virtual void control(int code, QVariant argument) = 0;

    virtual const DriverSetting* driverSetting() { return nullptr; } // 13
    virtual void setDriverSetting(const DriverSetting*) {}           // 14
    virtual bool hasError() { return false; }                        // 15
    virtual QString lastError() { return QString(); }                // 16
    virtual void setStationId(int) {}                                // 17

    /** 18: the configured response timeout, ms. */
    virtual int responseTimeout() = 0;

    /** 19: further attempts; of a write it is taken as signed, and -1 means none. */
    virtual unsigned retryCount() = 0;

    /** 20: the station that the current command addresses; its low 8 bits. */
    virtual int stationId() = 0;

    virtual unsigned blockSize() { return 0; } // 21

    /** 22: the configured pause between frames, ms. */
    virtual unsigned frameInterval() = 0;
};

#endif
