#ifndef RUNTIME_DRIVERS_POLLING_WRITESENDER_H
#define RUNTIME_DRIVERS_POLLING_WRITESENDER_H

#include "runtime/drivers/addrarg.h"

#include <vector>

class CommError;
class ControllerLine;
class WriteQueue;

/** Serves the queue of writes. The polling thread only. */
class WriteSender {
public:
    WriteSender(ControllerLine& line, CommError& error, WriteQueue& queue, quint32 retries);

    /** Sends all that waits, in batches. Nothing goes out while the link is in
     *  error; a batch that fails after its retries is lost. False in both cases. */
    bool sendAll();

private:
    bool attempt(quint8 station_id);

    ControllerLine& m_line;
    CommError& m_error;
    WriteQueue& m_queue;
    const quint32 m_retries;
    std::vector<AddrArg> m_batch; // being sent
};

#endif
