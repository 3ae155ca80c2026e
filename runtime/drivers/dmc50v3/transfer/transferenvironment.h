#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERENVIRONMENT_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERENVIRONMENT_H

#include <QString>

class Clock;
class QObject;

/** What the recipe transfers take from the machine: time, timers and the USB
 *  stick. Safe to call from any thread. */
class TransferEnvironment {
public:
    virtual ~TransferEnvironment() {}

    virtual Clock& clock() = 0;

    /** Calls @p slot (made by SLOT()) of @p receiver once, after @p msecs. Called
     *  in the receiver's own thread, where the slot runs too. */
    virtual void callLater(int msecs, QObject* receiver, const char* slot) = 0;

    /** Mount directory of the USB stick; empty when there is none. */
    virtual QString usbMountPath() = 0;

    /** Returns when all that was written has reached the storage. */
    virtual void syncStorage() = 0;

    /** The panel's own; lives for ever. */
    static TransferEnvironment& panel();
};

#endif
