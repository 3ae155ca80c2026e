#ifndef TESTS_UNIT_DMC50V3_POLLINGTHREADPROBE_H
#define TESTS_UNIT_DMC50V3_POLLINGTHREADPROBE_H

#include "runtime/drivers/byteorder.h"
#include "runtime/drivers/dmc50v3/dmc50_cpl.h"
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"

/** Runs the steps of a polling thread one by one, without a thread. */
class PollingThreadProbe {
public:
    explicit PollingThreadProbe(PollingThread& thread) : m_thread(thread) { m_thread.prepare(); }

    void cycle() { m_thread.cycle(); }
    bool pollingScan() { return m_thread.pollingScan(); }
    bool sendWrites() { return m_thread.addrArgQueueToDMC50(); }
    /** One exchange of a write of consecutive double words, which the thread itself
     *  never sends. */
    bool writeGroup(quint8 station_id, quint32 address, quint32 value) {
        const QByteArray image = intToByteArray(int(value));
        m_thread.exchange(CPLPackWGCmd(m_thread.m_request_buf.data(), CPLBufferSize, station_id, 0,
                                       address, reinterpret_cast<const uchar*>(image.constData()),
                                       1));
        return m_thread.checkWriteRsp(station_id, address);
    }
    void storeCached(const quint32* addresses, int count) {
        m_thread.readRspToDataCacheMap(1, addresses, count);
    }
    void fetchReads() { m_thread.readAddrQueueMapToReadOnceDataMap(); }
    bool checkLowLatency() { return m_thread.checkLowLatency(); }
    void takeOverSession() { m_thread.takeOverSession(); }
    const AddressVectorMap& cacheAddresses() const { return m_thread.m_cache_addresses; }

    /** Judges @p response as the reply to a read or a write. @{ */
    bool checkReadRsp(const QByteArray& response, quint8 station_id, quint32 address) {
        setResponse(response);
        return m_thread.checkReadRsp(station_id, address);
    }
    bool checkWriteRsp(const QByteArray& response, quint8 station_id, quint32 address) {
        setResponse(response);
        return m_thread.checkWriteRsp(station_id, address);
    }
    /** @} */

    int readRspUntilLF() { return m_thread.readRspUntilLF(); }
    void setResponse(const QByteArray& response) {
        m_thread.resetRspBuf();
        m_thread.m_rsp_len = response.size();
        for (int i = 0; i < response.size(); ++i)
            m_thread.m_rsp_buf[std::size_t(i)] = response.at(i);
    }

private:
    PollingThread& m_thread;
};

#endif
