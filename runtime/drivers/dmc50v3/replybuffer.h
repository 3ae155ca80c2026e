#ifndef RUNTIME_DRIVERS_DMC50V3_REPLYBUFFER_H
#define RUNTIME_DRIVERS_DMC50V3_REPLYBUFFER_H

#include "runtime/drivers/dmc50v3/cplreply.h"
#include "runtime/drivers/dmc50v3/dmc50_cpl.h"

#include <array>

class AbstractDeviceInterface;

/** Receives one reply at a time. One thread. */
class ReplyBuffer {
public:
    ReplyBuffer() : m_rsp_buf(), m_rsp_len(0) {}

    /** Forgets the last reply, so that a shorter one shows nothing of it. */
    void resetRspBuf();

    /** Collects from @p port until LF ends a piece, nothing comes within the port's
     *  own time-out, or the buffer is full. Returns the number of bytes. To call it
     *  with a full buffer ends the program. */
    int readRspUntilLF(AbstractDeviceInterface& port);

    /** What has been received; valid until the next reset. */
    CPLReply reply() const;

private:
    std::array<char, CPLBufferSize> m_rsp_buf;
    int m_rsp_len; // valid bytes of m_rsp_buf; NULs follow
};

#endif
