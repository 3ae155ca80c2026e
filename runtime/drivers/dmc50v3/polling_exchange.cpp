// How the polling thread sends a request and judges the reply.
#include "runtime/base/fatal.h"
#include "runtime/drivers/dmc50v3/dmc50_cpl.h"
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"
#include "runtime/interfaces/abstractdeviceinterface.h"

#include <QVariant>

#include <algorithm>
#include <cstdio>

namespace {

const quint8 SubAddress = 0;
const int DiscardReceived = 12; // port control code

} // namespace

void PollingThread::exchange(int frame_length) {
    m_interface->control(DiscardReceived, QVariant(0));
    m_interface->writeBytes(m_request_buf.data(), frame_length);
    resetRspBuf();
    readRspUntilLF();
}

bool PollingThread::exchangeRead(quint8 station_id, const quint32* addresses, int count) {
    m_clock.sleepMsecs(m_frame_interval_ms);
    exchange(CPLPackRNCmd(m_request_buf.data(), int(m_request_buf.size()), station_id, SubAddress,
                          addresses, uint(count)));
    return checkReadRsp(station_id, addresses[0]);
}

/** The caller has made the pause before the frame. */
bool PollingThread::exchangeWrite(quint8 station_id, const std::vector<AddrArg>& batch) {
    exchange(CPLPackWNCmd(m_request_buf.data(), int(m_request_buf.size()), station_id, SubAddress,
                          batch.data(), int(batch.size())));
    return checkWriteRsp(station_id, batch[0].address);
}

int PollingThread::readRspUntilLF() {
    FATAL_CHECK(m_rsp_len < int(m_rsp_buf.size()), "m_rsp_len < int(m_rsp_buf.size())");
    const int start = m_rsp_len;
    const int size = int(m_rsp_buf.size());
    while (m_rsp_len < size) {
        const int count = m_interface->readBytes(m_rsp_buf.data() + m_rsp_len, size - m_rsp_len);
        if (count < 1)
            break;
        m_rsp_len += count;
        if (m_rsp_buf[std::size_t(m_rsp_len) - 1] == '\n')
            break;
    }
    return m_rsp_len - start;
}

void PollingThread::resetRspBuf() {
    std::fill(m_rsp_buf.begin(), m_rsp_buf.end(), '\0');
    m_rsp_len = 0;
}

quint8 PollingThread::getStationIdFromRsp() const {
    return CPLResponseStationId(m_rsp_buf.data());
}

quint8 PollingThread::getEndCodeFromRsp() const {
    return CPLResponseEndCode(m_rsp_buf.data());
}

bool PollingThread::checkReadRsp(quint8 station_id, quint32 start_address) {
    return checkRsp(station_id, "read station id#%u start address %08X:", start_address,
                    "read: packet loss");
}

bool PollingThread::checkWriteRsp(quint8 station_id, quint32 address) {
    // Without a separator before the text: service people know it so.
    return checkRsp(station_id, "write station id#%u address %08X", address, "packet loss");
}

bool PollingThread::checkRsp(quint8 station_id, const char* prefix_format, quint32 address,
                             const char* short_frame_text) {
    char end_code_text[16];
    const char* text = nullptr;
    if (m_rsp_len < 1) {
        text = "DMC50 no response";
    } else if (m_rsp_len < CPLMinResponseLength) {
        text = short_frame_text;
    } else if (!CPLValidateChecksum(m_rsp_buf.data(), m_rsp_len)) {
        text = "checksum error";
    } else if (getStationIdFromRsp() != station_id) {
        text = "invalid station id from DMC50";
    } else if (getEndCodeFromRsp() != 0) {
        std::snprintf(end_code_text, sizeof end_code_text, "end code %02XH",
                      unsigned(getEndCodeFromRsp()));
        text = end_code_text;
    } else {
        return true;
    }
    char prefix[64];
    std::snprintf(prefix, sizeof prefix, prefix_format, unsigned(station_id), unsigned(address));
    setCommError(QString::fromLatin1(prefix) + QLatin1String(text));
    return false;
}
