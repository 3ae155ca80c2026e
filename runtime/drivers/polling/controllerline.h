#ifndef RUNTIME_DRIVERS_POLLING_CONTROLLERLINE_H
#define RUNTIME_DRIVERS_POLLING_CONTROLLERLINE_H

#include "runtime/drivers/addrarg.h"

#include <vector>

/** Single requests to controllers, in whatever protocol. A request that fails has
 *  set the link's CommError; nothing here clears it or tries again. The polling
 *  thread only. */
class ControllerLine {
public:
    virtual ~ControllerLine() {}

    /** The rest that the line wants before every request, retries included. */
    virtual void pause() = 0;

    /** Reads @p count double words, at most maxReadAddresses(), into @p values. */
    virtual bool read(quint8 station_id, const quint32* addresses, int count, quint32* values) = 0;

    /** Writes @p pairs, one to maxWritePairs() of them. */
    virtual bool write(quint8 station_id, const std::vector<AddrArg>& pairs) = 0;

    virtual int maxReadAddresses() const = 0;
    virtual int maxWritePairs() const = 0;
};

#endif
