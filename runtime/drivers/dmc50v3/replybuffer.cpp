#include "runtime/drivers/dmc50v3/replybuffer.h"

#include "runtime/base/fatal.h"
#include "runtime/interfaces/abstractdeviceinterface.h"

void ReplyBuffer::resetRspBuf() {
    m_rsp_buf.fill('\0');
    m_rsp_len = 0;
}

int ReplyBuffer::readRspUntilLF(AbstractDeviceInterface& port) {
    FATAL_CHECK(m_rsp_len < int(m_rsp_buf.size()), "m_rsp_len < int(m_rsp_buf.size())");
    const int start = m_rsp_len;
    const int size = int(m_rsp_buf.size());
    while (m_rsp_len < size) {
        const int count = port.readBytes(m_rsp_buf.data() + m_rsp_len, size - m_rsp_len);
        if (count < 1)
            break;
        m_rsp_len += count;
        if (m_rsp_buf[std::size_t(m_rsp_len) - 1] == '\n')
            break;
    }
    return m_rsp_len - start;
}

CPLReply ReplyBuffer::reply() const {
    const CPLReply reply = {m_rsp_buf.data(), m_rsp_len};
    return reply;
}
