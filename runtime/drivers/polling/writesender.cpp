#include "runtime/drivers/polling/writesender.h"

#include "runtime/drivers/polling/commerror.h"
#include "runtime/drivers/polling/controllerline.h"
#include "runtime/drivers/polling/retry.h"
#include "runtime/drivers/polling/writequeue.h"

WriteSender::WriteSender(ControllerLine& line, CommError& error, WriteQueue& queue, quint32 retries)
    : m_line(line), m_error(error), m_queue(queue), m_retries(retries) {}

bool WriteSender::sendAll() {
    if (m_error.isSet())
        return false;
    quint8 station_id = 0;
    while (m_queue.takeBatch(std::size_t(m_line.maxWritePairs()), station_id, m_batch)) {
        if (!tryRepeatedly(m_retries, [&] { return attempt(station_id); }))
            return false;
    }
    return true;
}

/** The error is cleared after the pause: until then callers' writes are refused. */
bool WriteSender::attempt(quint8 station_id) {
    m_line.pause();
    m_error.clear();
    return m_line.write(station_id, m_batch);
}
