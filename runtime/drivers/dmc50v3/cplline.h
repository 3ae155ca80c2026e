#ifndef RUNTIME_DRIVERS_DMC50V3_CPLLINE_H
#define RUNTIME_DRIVERS_DMC50V3_CPLLINE_H

#include "runtime/drivers/dmc50v3/replybuffer.h"
#include "runtime/drivers/polling/controllerline.h"

class Clock;
class CommError;

/** CPL requests over the host's port. Allocates nothing unless a request fails. */
class CPLLine : public ControllerLine {
public:
    CPLLine(AbstractDeviceInterface& port, Clock& clock, quint32 frame_interval_ms,
            CommError& error);

    void pause() override;
    bool read(quint8 station_id, const quint32* addresses, int count, quint32* values) override;
    bool write(quint8 station_id, const std::vector<AddrArg>& pairs) override;
    int maxReadAddresses() const override { return CPLMaxReadAddresses; }
    int maxWritePairs() const override { return CPLMaxWritePairs; }

    /** Sends one frame as it is and collects what comes back, which is valid until
     *  the next exchange. Bytes that came unasked before it are thrown away. */
    CPLReply exchange(const char* frame, int length);

private:
    AbstractDeviceInterface& m_port; // the host's
    Clock& m_clock;
    const quint32 m_frame_interval_ms;
    CommError& m_error;
    std::array<char, CPLBufferSize> m_request_buf;
    ReplyBuffer m_reply;
};

#endif
