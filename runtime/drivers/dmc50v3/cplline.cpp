#include "runtime/drivers/dmc50v3/cplline.h"

#include "runtime/base/clock.h"
#include "runtime/drivers/polling/commerror.h"
#include "runtime/interfaces/abstractdeviceinterface.h"

#include <QVariant>

namespace {

const quint8 SubAddress = 0;

} // namespace

CPLLine::CPLLine(AbstractDeviceInterface& port, Clock& clock, quint32 frame_interval_ms,
                 CommError& error)
    : m_port(port)
    , m_clock(clock)
    , m_frame_interval_ms(frame_interval_ms)
    , m_error(error)
    , m_request_buf() {}

void CPLLine::pause() {
    m_clock.sleepMsecs(m_frame_interval_ms);
}

bool CPLLine::read(quint8 station_id, const quint32* addresses, int count, quint32* values) {
    const int length = CPLPackRNCmd(m_request_buf.data(), CPLBufferSize, station_id, SubAddress,
                                    addresses, uint(count));
    const CPLReply reply = exchange(m_request_buf.data(), length);
    QString text;
    if (!checkReadRsp(reply, station_id, addresses[0], text)) {
        m_error.set(text);
        return false;
    }
    for (int i = 0; i < count; ++i)
        values[i] = getDWordFromRsp(reply, i);
    return true;
}

bool CPLLine::write(quint8 station_id, const std::vector<AddrArg>& pairs) {
    const int length = CPLPackWNCmd(m_request_buf.data(), CPLBufferSize, station_id, SubAddress,
                                    pairs.data(), int(pairs.size()));
    QString text;
    const bool ok =
        checkWriteRsp(exchange(m_request_buf.data(), length), station_id, pairs[0].address, text);
    if (!ok)
        m_error.set(text);
    return ok;
}

CPLReply CPLLine::exchange(const char* frame, int length) {
    m_port.control(AbstractDeviceInterface::DiscardReceived, QVariant(0));
    m_port.writeBytes(frame, length);
    m_reply.resetRspBuf();
    m_reply.readRspUntilLF(m_port);
    return m_reply.reply();
}
